// The graph view's context menu: a node's own commands from the host, or the canvas's tidy and
// direction items; and the view's messages, which are only its scroll bars'.
#include <cmath>

#include "graphnodes/FXGraphViewNode.h"
#include "graphview/FXGraphView.h"
#include "graphview/UIThreadCallbackDupe.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/EffectMenuItems.h"
#include "host/Event.h"
#include "host/FXEditor.h"
#include "host/MenuData.h"
#include "host/MenuItem.h"
#include "host/MenuItemIndex.h"
#include "host/Resources.h"
#include "host/UIString.h"
#include "host/Vob.h"

using VidRouting::Orientations::BottomToTop;
using VidRouting::Orientations::LeftToRight;

namespace {

constexpr unsigned kMenuTitle = 10608;
constexpr unsigned kTidyLabel = 10928;
constexpr unsigned kOrientationLabel = 11778;
constexpr unsigned kLeftToRightLabel = 11779;
constexpr unsigned kBottomToTopLabel = 11780;
// Every group of the host's node commands: switching, removing, parameters, resetting,
// renaming, and the commands that go to the panel.
constexpr unsigned kNodeItemMask = 799;

} // namespace

void FXGraphView::reviewMenu(const Event* event) {
    clearMenu();
    setMenuTitle(UIString(kMenuTitle));
    if (event) {
        if (FXGraphViewNode* node = findNodeAt(event->pos().x, event->pos().y)) {
            if (auto fx = Zk::dynamicCast<EffectInstance_opu4h5a4j>(node->node()))
                setMenuTitle(UIString(fx->getName(), UIString::NoResource));
            else if (edit_)
                setMenuTitle(UIString(edit_->getChanDisplayName(node->getId(), 1), UIString::NoResource));
            const EditGraphIterator it = FXEditor::getIteratorFor(edit_, node->node().get(),
                                                                  vob() ? vob()->getCurrentTime(1) : 0.0, 9);
            setMenuItems(EffectMenuItems::getItemsForComponent(vob(), it, kNodeItemMask));
        }
    }
    if (!menuItems().empty())
        return;
    using Dupe = UIThreadCallbackDupe<NotifyMsg>;
    addMenuItem(
        MenuItem(UIString(kTidyLabel),
                 WidgetCallback(Zk::Ptr<iCallbackBase<int, NotifyMsg>>(Dupe::make(
                     this, static_cast<int (FXGraphView::*)(const NotifyMsg&)>(&FXGraphView::tidy))))));
    const std::vector<UIString> choices{UIString(kLeftToRightLabel), UIString(kBottomToTopLabel)};
    addMenuItem(MenuItem(UIString(kOrientationLabel),
                         WidgetCallback(Zk::Ptr<iCallbackBase<int, NotifyMsg>>(
                             Dupe::make(this, &FXGraphView::changeOrientation))),
                         choices, MenuItemIndex(orientation_ != LeftToRight ? 1 : 0)));
}

int FXGraphView::tidy(const NotifyMsg&) {
    tidy();
    return 0;
}

int FXGraphView::changeOrientation(const NotifyMsg& msg) {
    WString chosen;
    if (auto* change = dynamic_cast<MenuData::Change*>(msg.object().get()))
        chosen = change->getText();
    // The choice goes by its text: anything but the first choice means bottom to top.
    const bool equal = chosen == resourceStrW(kLeftToRightLabel);
    setOrientation(equal ? LeftToRight : BottomToTop, true);
    return 0;
}

int FXGraphView::handleMessageEvent(const LightweightString<char>& msg, Glob* from) {
    if (from && (from == horzScrollBar_ || from == vertScrollBar_)) {
        handleScrollbarMsg(static_cast<ScrollBar*>(from), msg);
        return 1;
    }
    return StandardPanel::handleMessageEvent(msg, from);
}
