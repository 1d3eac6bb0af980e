// TemplateList: the effect templates of one channel type as a list to drag from, docked beside
// the graph. A press on a row and a move beyond the click tolerance start a drag of that
// template through the host's drag and drop manager; the release drops it where the pointer is,
// replacing what it lands on when the control key is held.
#pragma once

#include <vector>

#include "host/EffectTemplate.h"
#include "host/Glob.h"

class TemplateList : public Glob {
public:
    TemplateList(const GlobCreationInfo& info, EditChanType type);
    const char* idstring() const override { return "TemplateList"; }

    const std::vector<Zk::Ptr<EffectTemplate>>& templates() const { return templates_; }
    // The row of the template of that name, -1 when it isn't listed.
    int rowOf(const WString& name) const;
    // The middle of a row, in the list's pixels.
    XY<int> rowCentre(int row) const;
    int rowAt(const XY<int>& pos) const;
    int pressedRow() const { return pressed_; }

    bool handleMouseEvent(const Event& e) override;
    void drawBackground() override;

private:
    int rowHeight() const;
    std::vector<Zk::Ptr<EffectTemplate>> templates_;
    int pressed_ = -1;
    bool dragging_ = false;
};
