// EffectTemplatePanel: a pane of templates to put onto one node of a graph.
#pragma once

#include "host/Cookie.h"
#include "host/EditGraphIterator.h"
#include "host/StandardPanel.h"

class EffectsBrowser;

// It lists the templates of the node's channel type. Choosing one (a click) applies it onto the
// node as one undoable step of the node's edit and closes the pane; a template may also be
// dragged out of it as from any template list.
class EffectTemplatePanel : public StandardPanel {
public:
    struct InitArgs : StandardPanel::InitArgs {
        InitArgs() = default;
        InitArgs(const EditGraphIterator& i, const Cookie& c)
            : StandardPanel::InitArgs(0, 0), it(i), cookie(c) {}
        EditGraphIterator it{0};
        Cookie cookie;
    };

    explicit EffectTemplatePanel(const InitArgs& args);
    const char* idstring() const override { return "EffectTemplatePanel"; }
    static XY<int> calcSize(const Cookie& cookie);

    EffectsBrowser* browser() const { return browser_; }
    // Applies the named template onto the pane's node; false if it isn't there or doesn't apply.
    bool apply(const WString& templateName);
    void resize(double w, double h) override;

private:
    EditGraphIterator it_;
    EffectsBrowser* browser_ = nullptr;
};
