// EffectsBrowser: the list of effect templates by category, from which templates are dragged.
#pragma once

#include <functional>
#include <vector>

#include "host/DragDropItem.h"
#include "host/EffectCategory.h"
#include "host/StandardPanel.h"
#include "host/VobClient.h"
#include "host/WidgetCallback.h"

class Vob;

// Rows run from the top: a heading per category (a click folds it or opens it again) and a row
// per template, with the category's icon and the template's name. Pressing on a template and
// moving beyond the click tolerance starts a drag of an EffectTemplateDragItem through the drag
// starter when one is set, else through the host's drag manager, the release dropping it; a click on a
// template selects it and fires the `chosen` callback with the template's name as the message. The wheel
// scrolls. The categories come from getCategories the first time rows are needed after construction or after
// refresh, so that a derived list's choice holds.
class EffectsBrowser : public StandardPanel, public VobClient {
public:
    struct InitArgs : StandardPanel::InitArgs {
        InitArgs(Vob* v, int type, unsigned f, unsigned short w, unsigned short h)
            : StandardPanel::InitArgs(w, h, Border(0, 0, 15)), vob(v), viewType(type), flags(f) {}
        Vob* vob = nullptr;
        // 1 a plain list of names with icons; other values are kept for other looks.
        int viewType = 1;
        unsigned flags = 0;
        WidgetCallback chosen;
    };
    // Hands a drag over to the host's drag-and-drop manager; true if it took it.
    using DragStarter = std::function<bool(const Zk::Ptr<DragDropItem>& item, Glob* source)>;

    explicit EffectsBrowser(const InitArgs& args);
    const char* idstring() const override { return "EffectsBrowser"; }

    // Fills result with the categories to show; the base shows every category of the catalogue.
    virtual void getCategories(std::vector<EffectCategory>& result);
    void refresh();
    const std::vector<EffectCategory>& categories();

    struct Row {
        int category = -1;
        int templ = -1; // -1 for a heading
    };
    const std::vector<Row>& rows();
    WString rowText(int row);
    // The row under a point of the widget, or -1.
    int rowAt(const XY<int>& pos);
    // The first template row whose text is name, -1 when none is.
    int rowOf(const WString& name);
    // The middle of a row, in the widget's pixels, as the list is scrolled now.
    XY<int> rowCentre(int row) const;
    int selectedRow() const { return selected_; }
    int pressedRow() const { return pressed_; }
    bool isFolded(int category) const;
    // The drag item of a template row; null for a heading or a row out of range.
    Zk::Ptr<DragDropItem> makeDragItem(int row);
    int scrollOffset() const { return scroll_; }

    static void setDragStarter(DragStarter starter);

    bool handleMouseEvent(const Event& e) override;
    int handleZoom(int direction) override;
    void drawBackground() override;

private:
    void ensureRows();
    void rebuildRows();

    int viewType_;
    WidgetCallback chosen_;
    bool loaded_ = false;
    std::vector<EffectCategory> categories_;
    std::vector<bool> folded_;
    std::vector<Row> rows_;
    int selected_ = -1;
    int pressed_ = -1;
    bool dragging_ = false;
    bool managed_ = false; // the drag goes through the drag manager
    int scroll_ = 0;
};
