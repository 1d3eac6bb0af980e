// The template pane of one node: a template list of the node's type, and applying the choice.
#include "host/EffectTemplatePanel.h"

#include <algorithm>

#include "host/Edit.h"
#include "host/EffectTemplateManager.h"
#include "host/EffectsBrowser.h"
#include "host/FXEditor.h"
#include "host/GlobManager.h"
#include "host/TemplateMatcher.h"
#include "host/UifStd.h"
#include "host/Vob.h"
#include "host/VobManager.h"
#include "refhost/notify/FunctionCallback.h"

namespace {

// Templates of one channel type, for the node's pane.
class TypeMatcher : public TemplateMatcher {
public:
    explicit TypeMatcher(EditChanType t) : type_(t) {}
    bool match(const EffectTemplateSummary& s) const override {
        return s.trackType == type_ && TemplateMatcher::match(s);
    }

private:
    EditChanType type_;
};

class NodeTemplateList : public EffectsBrowser {
public:
    NodeTemplateList(const InitArgs& args, EditChanType type) : EffectsBrowser(args), type_(type) {}
    void getCategories(std::vector<EffectCategory>& result) override {
        EffectTemplateManager::instance().getCategories(result, TypeMatcher(type_), true);
    }

private:
    EditChanType type_;
};

} // namespace

EffectTemplatePanel::EffectTemplatePanel(const InitArgs& args) : StandardPanel(args), it_(args.it) {
    setMovable(true);
    setResizable(true);
    Zk::Ptr<FXGraphNodeBase> node = it_.getNode(-1);
    WString name = node ? node->getName() : WString();
    setTitle(UIString(WString(L"Templates for ") + (name.empty() ? WString(L"the node") : name),
                      UIString::NoResource),
             UifStd::getTitleFont());
    addStandardWidgets(CloseButton);
    const Zk::Box<int> ua = getUserArea();
    EditPtr edit = it_.getCurrentPosEdit();
    Vob* vob = edit ? VobManager::instance().getVobWithCookie(edit->cookie()) : nullptr;
    EffectsBrowser::InitArgs list(vob, 1, 0, static_cast<unsigned short>(std::max(ua.width(), 1)),
                                  static_cast<unsigned short>(std::max(ua.height(), 1)));
    list.palette = getPalette();
    list.chosen = WidgetCallback(refhost::makeCallback([this](const NotifyMsg& m) {
        if (!apply(toWide(m.text())))
            return 0;
        GlobManager::instance().requestDeletion(this);
        return 1;
    }));
    browser_ = static_cast<EffectsBrowser*>(
        addChild(new NodeTemplateList(list, node ? node->chanType() : kVideoChan), UserTopLeft(0, 0)));
}

XY<int> EffectTemplatePanel::calcSize(const Cookie&) {
    const int row = UifStd::getRowHeight();
    return XY<int>(14 * row, 20 * row);
}

bool EffectTemplatePanel::apply(const WString& templateName) {
    Zk::Ptr<EffectTemplate> tmpl = EffectTemplateManager::instance().find(templateName);
    Zk::Ptr<FXGraphNodeBase> node = it_.getNode(-1);
    EditPtr edit = it_.getCurrentPosEdit();
    if (!tmpl || !node || !edit || !edit->findNode(node->getId()))
        return false;
    EasyBackup step(edit);
    return FXEditor(edit).applyEffectsTemplateToNode(tmpl, node).ok;
}

void EffectTemplatePanel::resize(double w, double h) {
    StandardPanel::resize(w, h);
    if (browser_) {
        const Zk::Box<int> ua = getUserArea();
        browser_->setDimensions(ua.width(), ua.height());
    }
}
