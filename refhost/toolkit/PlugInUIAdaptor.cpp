// Plug-in effects' user interface: a window of one field per parameter.
#include "host/PlugInUIAdaptorFactory.h"

#include <cstdlib>
#include <string>
#include <vector>

#include "host/AudioPlugIns.h"
#include "host/GlobManager.h"
#include "host/StandardPanel.h"
#include "host/TextBox.h"
#include "host/UifStd.h"
#include "host/VobManager.h"
#include "refhost/edit/OwningEdit.h"
#include "refhost/notify/FunctionCallback.h"

bool isAudioPlugin(const String& tagTypeId) {
    return tagTypeId.view().substr(0, 12) == "AudioPlugIn:";
}

namespace {

// A parameter's new value, typed by the user, becomes one undoable change of the effect's edit.
int setParameter(const Zk::Ptr<EffectInstance_opu4h5a4j>& fx, const std::string& name, const String& text) {
    char* end = nullptr;
    double v = std::strtod(text.c_str(), &end);
    if (!fx || end == text.c_str())
        return 0;
    EditPtr edit = refhost::owningEdit(fx.get());
    if (!edit)
        return 0;
    EasyBackup step(edit);
    fx->setParam(name, v);
    edit->addModification(EditModifications(EditModification(4)), true);
    return 1;
}

class ParameterAdaptor : public iPlugInUIAdaptor {
public:
    ParameterAdaptor(const Zk::Ptr<EffectInstance_opu4h5a4j>& fx, const String& context)
        : fx_(fx), context_(context) {}

    void setup() override {
        names_.clear();
        for (const auto& [name, value] : fx_->params())
            names_.push_back(name);
    }
    int numParameters() const override { return static_cast<int>(names_.size()); }

    Glob* openWindow() override {
        const int row = UifStd::getRowHeight();
        const int gap = UifStd::getWidgetGap();
        const int rows = std::max<int>(1, static_cast<int>(names_.size()));
        auto* panel = new StandardPanel(StandardPanel::InitArgs(260, rows * (row + gap) + 3 * row));
        panel->setMovable(true);
        panel->setTitle(UIString(fx_->getName().empty() ? toWide(fx_->tagTypeId()) : fx_->getName()));
        panel->addStandardWidgets(StandardPanel::CloseButton);
        if (names_.empty())
            panel->addChild(new TextBox(TextBox::InitArgs(UIString(L"No parameters"), false, 240, row)),
                            Glob::UserTopLeft(gap, gap));
        for (size_t i = 0; i < names_.size(); ++i) {
            const int y = gap + static_cast<int>(i) * (row + gap);
            std::string name = names_[i];
            panel->addChild(new TextBox(TextBox::InitArgs(UIString(toWide(String(name))), false, 110, row)),
                            Glob::UserTopLeft(gap, y));
            TextBox::InitArgs value(UIString(toWide(stringFormat("%g", fx_->param(name)))), true, 120, row);
            Zk::Ptr<EffectInstance_opu4h5a4j> fx = fx_;
            value.callback = WidgetCallback(refhost::makeCallback(
                [fx, name](const NotifyMsg& m) { return setParameter(fx, name, m.text()); }));
            panel->addChild(new TextBox(value), Glob::UserTopLeft(120 + 2 * gap, y));
        }
        Glob::setupRootPos(panel->canvas(), glib_getPosForWindow(panel->width(), panel->height()));
        GlobManager::instance().realize(panel);
        return panel;
    }

private:
    Zk::Ptr<EffectInstance_opu4h5a4j> fx_;
    String context_;
    std::vector<std::string> names_;
};

} // namespace

PlugInUIAdaptorFactory& PlugInUIAdaptorFactory::instance() {
    static PlugInUIAdaptorFactory f;
    return f;
}

Zk::Ptr<iPlugInUIAdaptor>
PlugInUIAdaptorFactory::createAdaptorFor(const Zk::Ptr<EffectInstance_opu4h5a4j>& effect,
                                         const String& context) {
    if (!effect)
        return nullptr;
    ++made_;
    return Zk::Ptr<iPlugInUIAdaptor>(new ParameterAdaptor(effect, context));
}
