// Pop-outs of shots: what lies at a place of an edit, and the floating window of its log entry.
#include "host/FloatingLogMetadataPanel.h"

#include <vector>

#include "host/CelEventPair.h"
#include "host/Edit.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/GlobManager.h"
#include "host/PopOutInfo.h"
#include "host/StandardPanel.h"
#include "host/TextBox.h"
#include "host/UifStd.h"
#include "host/Vob.h"
#include "host/VobClient.h"
#include "host/VobManager.h"

PopOutInfo getPopOutShotInfo(const EditPtr& edit, int chan, double time) {
    PopOutInfo info;
    info.shot = Cookie(PopOutInfo::kNoShot, IdStamp(0, 0, 1));
    info.edit = edit;
    info.chan = chan;
    if (!edit) {
        info.error = "There is no edit to take a shot from.";
        return info;
    }
    if (chan < 0 || chan >= edit->numChans()) {
        info.error = "There is no track at that place.";
        return info;
    }
    CelEventPair pair(edit, chan, time);
    if (!pair.valid() || pair.isBlack())
        return info; // black: nothing to pop out, and nothing worth saying
    info.shot = pair.stripCookie();
    info.time = time - pair.editTime();
    return info;
}

namespace {

struct ShotPlace {
    EditPtr edit;
    int chan = -1;
    CelEvent event;
};

bool findShot(const Cookie& shot, ShotPlace& out) {
    for (const EditPtr& edit : VobManager::instance().edits())
        for (int c = 0; c < edit->numChans(); ++c)
            for (const CelEvent& e : edit->chan(c).cel->events())
                if (e.kind != CelEvent::Black && e.strip == shot) {
                    out = ShotPlace{edit, c, e};
                    return true;
                }
    return false;
}

// One line per fact; the lines are made again when the edit changes.
class LogMetadataWindow : public StandardPanel, public VobClient {
public:
    LogMetadataWindow(const StandardPanel::InitArgs& args, const Cookie& shot, Vob* vob)
        : StandardPanel(args), VobClient(shot, vob, kNormalPriority, kManaged), shot_(shot) {
        setMovable(true);
        setResizable(true);
        setTitle(UIString(L"Shot"), UifStd::getTitleFont());
        addStandardWidgets(CloseButton);
        refresh();
    }
    const char* idstring() const override { return "FloatingLogMetadataPanel"; }

    void handleModifications(const EditModifications& mods, const VobModification& vobMod) override {
        refresh();
        VobClient::handleModifications(mods, vobMod);
    }
    const std::vector<WString>& lines() const { return lines_; }

private:
    void refresh() {
        lines_.clear();
        ShotPlace place;
        if (findShot(shot_, place)) {
            const EditMaterial* m = place.edit->findMaterial(shot_);
            WString name = m ? m->name : place.event.node ? place.event.node->getName() : WString();
            lines_.push_back(WString(L"Name: ") + (name.empty() ? WString(L"(unnamed)") : name));
            lines_.push_back(WString(L"Kind: ") +
                             (place.event.kind == CelEvent::Material ? L"source material" : L"effect graph"));
            if (m)
                lines_.push_back(WString(L"Source: ") + toWide(m->source == "image" ? m->file : m->source));
            lines_.push_back(WString(L"Track: ") + place.edit->getChanDisplayName(place.chan));
            lines_.push_back(
                toWide(stringFormat("Span: %.3f s to %.3f s", place.event.start, place.event.end)));
            lines_.push_back(WString(L"Cookie: ") + toWide(shot_.asString()));
        } else {
            lines_.push_back(WString(L"The shot is no longer in an open edit."));
        }
        for (TextBox*& box : boxes_)
            removeWidget(box, true);
        boxes_.clear();
        const int row = UifStd::getRowHeight(), gap = UifStd::getWidgetGap();
        for (size_t i = 0; i < lines_.size(); ++i) {
            auto* box = new TextBox(
                TextBox::InitArgs(UIString(lines_[i], UIString::NoResource), false, width() - 2 * gap, row));
            addChild(box, UserTopLeft(gap, gap + static_cast<int>(i) * (row + gap)));
            boxes_.push_back(box);
        }
        update();
    }

    Cookie shot_;
    std::vector<WString> lines_;
    std::vector<TextBox*> boxes_;
};

} // namespace

VobClient* FloatingLogMetadataPanel::create(const Cookie& shot, const XY<int>& pos) {
    ShotPlace place;
    if (!shot.valid() || !findShot(shot, place))
        return nullptr;
    Zk::Ptr<Vob> vob = VobManager::instance().vobFor(place.edit, String("log:") + shot.asString());
    const int row = UifStd::getRowHeight(), gap = UifStd::getWidgetGap();
    StandardPanel::InitArgs args(
        22 * row, 6 * (row + gap) + gap + StandardPanel::calcSize(2, 0, StandardPanel::getDefaultBorder()));
    auto* window = new LogMetadataWindow(args, shot, vob.get());
    Glob::setupRootPos(window->canvas(), pos);
    GlobManager::instance().realize(window);
    return window;
}
