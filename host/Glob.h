// Glob: a widget of the host: a rectangle in its parent with y upward, a canvas, and events.
#pragma once

#include <memory>
#include <vector>

#include "host/CanvasClient.h"
#include "host/Drawable.h"
#include "host/Event.h"
#include "host/EventHandler.h"
#include "host/FontUser.h"
#include "host/GlobCreationInfo.h"
#include "host/TabOrderManager.h"
#include "host/UIString.h"
#include "host/WidgetPosition.h"
#include "host/WidgetSurround.h"
#include "host/ZkBox.h"
#include "host/rect.h"

class Canvas;
struct GlobImpl;

// A widget owns its children and deletes them with itself. Positions are the bottom-left corner
// in the parent's frame with y upward; a child placed against the top or right edge of its parent
// stays against that edge when the parent is resized. A widget without a parent is a root: its
// position is on the screen, and GlobManager shows and owns it.
class Glob : public rect,
             public CanvasClient,
             public EventHandler,
             public Drawable,
             public Glib::FontUser,
             public TabOrderManager {
public:
    enum eRedrawFlag { NoRedraw = 0, Redraw = 1 };
    // Why a drop is asked about: a plain drop adds, a drop with the control key held asks to
    // replace what it lands on.
    enum eDropReason { DropInsert = 0, DropReplace = 1 };
    // Interest bits: TimerInterest brings handleTimerEvent at the host's period;
    // MouseMoveInterest brings moves without a button held.
    enum eInterest { MouseMoveInterest = 0x1, TimerInterest = 0x1000 };

    explicit Glob(const GlobCreationInfo& info);
    // A copy is a new widget of the same size and palette, with no parent and no children.
    Glob(const Glob& o);
    Glob& operator=(const Glob&) { return *this; }
    ~Glob() override;

    virtual const char* idstring() const { return "Glob"; }

    // --- the tree
    Glob* parent() const { return parent_; }
    static Glob* getRootParent(Glob* g);
    bool isChildGlob() const { return parent_ != nullptr; }
    const std::vector<Glob*>& children() const { return children_; }
    // Takes child over and places it; returns it.
    Glob* addChild(Glob* child, const WidgetPosition& pos, const WidgetSurround& surround = WidgetSurround());
    // Places child beside ref (null: the widget added last): relativity 0 above, 1 below,
    // 2 right of, 3 left of, gap pixels away, aligned as WidgetPosition tells.
    Glob* addWidgetRelative(Glob* child, const Glob* ref, int gap, int relativity,
                            const WidgetSurround& surround = WidgetSurround(), int alignment = 0);
    // Takes child out of this widget; destroy also deletes it and nulls the pointer. False if
    // child isn't a child of this widget.
    template <class G>
    bool removeWidget(G*& child, bool destroy) {
        Glob* g = child;
        if (!detachChild(g, destroy))
            return false;
        if (destroy)
            child = nullptr;
        return true;
    }
    Glob* lastAdded() const { return lastAdded_; }

    // --- position makers
    static WidgetPosition TopLeft(int x, int y) { return {WidgetPosition::TopLeftKind, x, y}; }
    static WidgetPosition TopRight(int x, int y) { return {WidgetPosition::TopRightKind, x, y}; }
    static WidgetPosition BottomLeft(int x, int y) { return {WidgetPosition::BottomLeftKind, x, y}; }
    static WidgetPosition BottomLeft(const XY<int>& screen) {
        return {WidgetPosition::ScreenKind, screen.x, screen.y};
    }
    static WidgetPosition BottomRight(int x, int y) { return {WidgetPosition::BottomRightKind, x, y}; }
    static WidgetPosition UserTopLeft(int x, int y) { return {WidgetPosition::UserTopLeftKind, x, y}; }
    static WidgetPosition UserTopRight(int x, int y) { return {WidgetPosition::UserTopRightKind, x, y}; }
    static WidgetPosition UserBottomLeft(int x, int y) { return {WidgetPosition::UserBottomLeftKind, x, y}; }
    static WidgetPosition UserBottomRight(int x, int y) {
        return {WidgetPosition::UserBottomRightKind, x, y};
    }
    static WidgetPosition RightOf(int gap, const Glob* ref = nullptr, int alignment = 0) {
        return {WidgetPosition::RightOfKind, gap, 0, ref, alignment};
    }
    static WidgetPosition LeftOf(int gap, const Glob* ref = nullptr, int alignment = 0) {
        return {WidgetPosition::LeftOfKind, gap, 0, ref, alignment};
    }
    static WidgetPosition Centre(int x, int y, int alignment = 0) {
        return {WidgetPosition::CentreKind, x, y, nullptr, alignment};
    }
    // The bottom-left corner that pos gives a widget of size w x h in this widget.
    XY<int> resolvePosition(const WidgetPosition& pos, int w, int h) const;

    // --- geometry
    XY<int> getDimensions() const { return XY<int>(w_, h_); }
    void setDimensions(const XY<int>& d) { resize(d.x, d.y); }
    void setDimensions(int w, int h) { resize(w, h); }
    void setWidth(int w) { resize(w, h_); }
    void setHeight(int h) { resize(w_, h); }
    // Sets the size (rounded, at least the minimum size) and keeps the children anchored. A child
    // placed by a top or right position keeps that edge where it is: it grows down or left.
    virtual void resize(double w, double h);
    // Moves the widget within its parent (a root: on the screen).
    void setPos(int x, int y);
    // The bottom-left pixel of the widget on the screen, y upward.
    XY<int> getPosition() const;
    XY<int> screenXYToGlobXY(const XY<int>& screen) const;
    // The area inside which "User" positions place children; the whole widget here.
    virtual Zk::Box<int> getUserArea() const;
    void setMinSize(int w, int h);
    XY<int> getMinSize() const { return minSize_; }

    // --- state
    void setActive(bool active, eRedrawFlag redraw = Redraw);
    bool isActive() const { return active_; }
    void setVisible(bool visible);
    bool isVisible() const;
    // The help text shown for the widget.
    void setContextString(const UIString& text, const UIString& extra);
    const UIString& getContextString() const { return context_; }
    void setResizable(bool b) { resizable_ = b; }
    void setMovable(bool b) { movable_ = b; }
    void setPersistable(bool b) { persistable_ = b; }
    bool isResizable() const { return resizable_; }
    bool isMovable() const { return movable_; }
    bool isPersistable() const { return persistable_; }
    // Raises the root window; activate also gives it the keyboard focus.
    void popToTop(bool activate);
    // Floating windows get a drop shadow; a frame of the palette's darkest shade here.
    void addShadow() { shadow_ = true; }
    bool hasShadow() const { return shadow_; }

    // --- interests and events
    void setInterest(int bits);
    void clearInterest(int bits);
    int getInterests() const { return interests_; }
    // The pointer: true when the widget used the event.
    virtual bool handleMouseEvent(const Event& e) { return false; }
    // A wheel step, +1 away from the user, -1 towards.
    virtual int handleZoom(int direction) { return 0; }
    virtual void handleTimerEvent() {}
    // Delivers a pointer event as the window system would: handleMouseEvent, then the menu.
    bool dispatchMouseEvent(const Event& e);

    // --- canvas
    Canvas* canvas() const { return canvas_.get(); }
    // Makes this widget's canvas the one the Glib drawing helpers draw on.
    void makeCanvasCurrent();
    const Palette& getPalette() const { return palette_; }
    void setPalette(const Palette& p);
    void drawBackground() override;
    // Draws this widget and its children into a PNG picture. False if it can't be written.
    bool saveSnapshot(const String& path);

    // --- persistence: "TYPE", "X", "Y", "W", "H"
    virtual void dump(configb& c);
    virtual void load(const configb& c);

    GlobImpl& impl() const { return *impl_; }
    // Counts full repaints, for tests of the redraw bracket.
    int drawCount() const { return drawCount_; }
    bool isOutOfDate() const { return outOfDate_; }

protected:
    void drawNow() override;
    void markOutOfDate() override;
    // Called after the size changed, before children are re-anchored.
    virtual void sizeChanged() {}
    bool detachChild(Glob* child, bool destroy);

private:
    friend struct GlobImpl;
    void applyGeometry();
    void reanchorChildren(int oldW, int oldH);

    std::unique_ptr<GlobImpl> impl_;
    std::unique_ptr<Canvas> canvas_;
    Glob* parent_ = nullptr;
    std::vector<Glob*> children_;
    Glob* lastAdded_ = nullptr;
    Palette palette_;
    UIString context_;
    XY<int> minSize_;
    int interests_ = 0;
    int anchors_ = 0;
    int drawCount_ = 0;
    bool outOfDate_ = true;
    bool active_ = true;
    bool resizable_ = false;
    bool movable_ = false;
    bool persistable_ = false;
    bool shadow_ = false;

public:
    // Where the next root widget is realized: GlobManager takes it.
    static void setupRootPos(Canvas* canvas, const XY<int>& screenPos);
};

// Whether g points to a widget that exists now.
bool is_good_glob_ptr(const Glob* g);
