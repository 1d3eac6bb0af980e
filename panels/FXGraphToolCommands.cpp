// FXGraphTool: the commands that reach the panel as text messages, and following its edit.
#include <string_view>

#include "graphview/FXGraphView.h"
#include "host/Checkbox.h"
#include "host/CompoundEffectPanel.h"
#include "host/DropDownMenuButton.h"
#include "host/Edit.h"
#include "host/EditViewer.h"
#include "host/EditorPreferences.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/EffectTemplatePanel.h"
#include "host/Event.h"
#include "host/FXEditor.h"
#include "host/GlobManager.h"
#include "host/ImageButton.h"
#include "host/StateSaver.h"
#include "host/TextBox.h"
#include "host/TransitStatus.h"
#include "host/TransitionsEditor.h"
#include "host/UpdateDeferrer.h"
#include "host/UserMessages.h"
#include "host/UtrImporter.h"
#include "host/VidRenderUtils.h"
#include "host/Vob.h"
#include "host/VobManager.h"
#include "panels/DDVideoEffectsList.h"
#include "panels/FXGraphTool.h"

namespace {

constexpr unsigned kNotRecordMachine = 11285;

bool startsWith(const LightweightString<char>& msg, std::string_view prefix) {
    return !msg.empty() && msg.view().substr(0, prefix.size()) == prefix;
}

// A node message: the prefix, the command word up to the first blank, then the position text.
// Without a blank the word is the rest of the message and the position text the whole message.
struct NodeMessage {
    LightweightString<char> word;
    LightweightString<char> position;
};

NodeMessage parseNodeMessage(const LightweightString<char>& msg, std::size_t prefixLength) {
    const std::string_view text = msg.view();
    const std::size_t blank = text.find(' ');
    const long i = blank == std::string_view::npos ? -1 : static_cast<long>(blank);
    NodeMessage m;
    const std::size_t wordEnd = i < 0 ? text.size() : static_cast<std::size_t>(i);
    m.word = LightweightString<char>(text.substr(std::min(prefixLength, text.size()),
                                                 wordEnd > prefixLength ? wordEnd - prefixLength : 0));
    m.position = LightweightString<char>(text.substr(static_cast<std::size_t>(i + 1)));
    return m;
}

} // namespace

int FXGraphTool::handleMessageEvent(const LightweightString<char>& msg, Glob* sender) {
    static constexpr std::string_view kAutoPos = "AutoPos ";
    static constexpr std::string_view kNode = "fxutr";
    static constexpr std::string_view kUnrender = "render_effect";
    static constexpr std::string_view kPopOut = "popOut";
    static constexpr std::string_view kCheckbox = "Checkbox ";

    if (msg == "TidyNodes") {
        if (view_)
            view_->tidy();
        return 1;
    }
    if (startsWith(msg, kAutoPos)) {
        setAutoPosition(msg.view().substr(kAutoPos.size()) == "On");
        return 1;
    }
    if (msg == "ToggleTemplates") {
        toggleTemplates();
        return 0; // acts, and still answers 0
    }
    if (startsWith(msg, kNode)) {
        NodeMessage m = parseNodeMessage(msg, kNode.size());
        EditGraphIterator it = FXEditor::getIteratorFor(EditGraphIteratorState(m.position));
        if (it.isValid())
            handleNodeCommand(m.word, it);
        return 1;
    }
    if (startsWith(msg, kUnrender)) {
        NodeMessage m = parseNodeMessage(msg, kUnrender.size());
        EditGraphIterator it(m.position);
        if (it.isValid() && vob()) {
            vob()->makeBackup();
            CelEventPair pair(it.getEditH(), it.getChanIndex(-1), it.getTime());
            Render::VidRenderUtils::unRender(pair, true);
        }
        return 1;
    }
    if (startsWith(msg, kPopOut)) {
        NodeMessage m = parseNodeMessage(msg, kPopOut.size());
        EditGraphIterator it = FXEditor::getIteratorFor(EditGraphIteratorState(m.position));
        popOutItem(it, m.word == "tile" ? PopOutTile : PopOutMetadata);
        return 1;
    }
    if (msg == DropDownMenuButton::dropDownMenuButtonMsg) {
        if (view_ && orientationMenu_)
            view_->setOrientation(orientationMenu_->getSelectedItem().index != 0
                                      ? VidRouting::Orientations::BottomToTop
                                      : VidRouting::Orientations::LeftToRight,
                                  true);
        return 1;
    }
    if (startsWith(msg, kCheckbox)) {
        if (autoPositionCheckbox_)
            setAutoPosition(autoPositionCheckbox_->getValue());
        return 1;
    }
    if (sender && sender == undoButton_) {
        if (vob())
            vob()->undoRequest();
        return 1;
    }
    if (sender && sender == redoButton_) {
        if (vob())
            vob()->redoRequest();
        return 1;
    }
    // The title row's close and menu buttons keep what they do on every panel.
    if (msg == StandardPanel::closeMsg || msg == StandardPanel::menuMsg)
        return StandardPanel::handleMessageEvent(msg, sender);
    return 0;
}

void FXGraphTool::toggleTemplates() {
    Drawable::disableRedraws();
    showTemplates_ = !showTemplates_;
    prefs().setPreference(kTemplatesPref, showTemplates_);
    // A floating panel grows and shrinks by the list, so that the view keeps its size; a docked
    // one keeps the size its parent gave it, and the view gives or takes the list's width.
    const int b = isChildGlob() ? 0 : getBorder().getSize();
    const auto listWidth = [&] { return isChildGlob() || !templatesList_ ? 0 : templatesList_->width(); };
    if (showTemplates_) {
        initTemplatesListUI();
        resize(width() + listWidth() + b, height());
    } else if (templatesList_) {
        DDVideoEffectsList* list = templatesList_;
        removeWidget(list, false);
        resize(width() - b - listWidth(), height());
        delete templatesList_;
        templatesList_ = nullptr;
    }
    resize(width(), height());
    makeCanvasCurrent();
    update();
    Drawable::enableRedraws();
    // The view moved and changed size. Its connections are drawn between the node boxes as last
    // drawn, so a first drawing would leave them where the view stood before; the second is true.
    drawMainArea();
    drawMainArea();
}

void FXGraphTool::handleNodeCommand(const LightweightString<char>& command, EditGraphIterator& it) {
    Vob* panelVob = vob();
    if (command == "remove_xfade") {
        TransitionsEditor(panelVob).removeVideoTransition(it.getChanIndex(-1), it.getTime());
    } else if (command == "tile") {
        openTemplatePane(it);
    } else if (command == "remove_utr") {
        if (panelVob && panelVob == Vob::getRecordMachine()) {
            // A recording machine's transport re-reads the graph, as after a wiring change.
            if (panelVob->isRecording())
                TransitStatus::manager().graphChanged();
            EasyBackup step(getEdit());
            FXEditor::destroyNode(it, true);
        } else {
            makeMessage(UIString(kNotRecordMachine));
        }
    } else if (command == "cycle_inputs") {
        EditPtr edit = getEdit();
        EasyBackup step(edit);
        if (auto fx = Zk::dynamicCast<EffectInstance_opu4h5a4j>(it.getNode(-1))) {
            FXEditor(edit).cycleInputs(it, false);
            if (edit)
                edit->addModification(EditModifications(EditModification(5)), true);
        }
    } else if (command == "import_render") {
        UtrImporter::createImporter(panelVob, it, getPalette());
    } else {
        openEffectPanel(it);
    }
}

void FXGraphTool::openEffectPanel(EditGraphIterator& it) {
    EditPtr edit = it.getCurrentPosEdit();
    if (edit && edit == getEdit()) {
        CompoundEffectPanel::create(vob(), it, "params");
        return;
    }
    if (!edit)
        return;
    Vob* other = VobManager::instance().getVobWithCookie(edit->cookie());
    if (!other) {
        const XY<int> mouse = glib_getMousePos();
        Glob::setupRootPos(canvas(), XY<int>(mouse.x - 50, mouse.y - 50));
        const auto range = it.getRange(-1, static_cast<CelEventPair::eRangeType>(0));
        const double t = range.lo + it.getCompoundAlpha() * (range.hi - range.lo);
        Glob* viewer = makeEditViewer("tilev", edit->cookie(), XY<int>(0, 0), t, "");
        if (!viewer)
            return;
        set_it(viewer);
        auto* client = dynamic_cast<VobClient*>(viewer);
        other = client ? client->vob() : nullptr;
        if (!other)
            return;
    }
    CompoundEffectPanel::create(other, it, "params");
}

void FXGraphTool::openTemplatePane(EditGraphIterator& it) {
    const WidgetPosition place = BottomLeft(glib_getMousePos());
    EffectTemplatePanel::InitArgs args(it, Cookie());
    args.border = Border(0, 0, 15);
    const XY<int> size = EffectTemplatePanel::calcSize(Cookie());
    args.width = size.x;
    args.height = size.y;
    Drawable::disableRedraws();
    {
        Glib::StateSaver saver;
        const XY<int> pos = GlobManager::instance().getSafePosForGlob(
            canvas(), size, GlobManager::instance().getPosForGlob(args, place));
        Glob::setupRootPos(canvas(), pos);
        GlobManager::instance().realize(new EffectTemplatePanel(args));
    }
    Drawable::enableRedraws();
}

void FXGraphTool::handleModifications(const EditModifications& mods, const VobModification& vobMod) {
    if (mods.includes(3, 0) || (vobMod.flags & 2)) {
        if (updateTitleStr()) {
            Glib::UpdateDeferrer deferrer(canvas());
            if (TextBox* title = getTitleWidget())
                title->draw();
            if (toggleTemplatesButton_)
                toggleTemplatesButton_->draw();
        }
    }
    VobClient::handleModifications(mods, vobMod);
}
