// TableWidget: a table of rows drawn through an iTableAdaptor, with a cell cursor and row drag.
#pragma once

#include "host/Glob.h"
#include "host/iTableAdaptor.h"

// Rows are lineHeight pixels from the top. A press on a cell makes it current and goes to the
// adaptor; a drag of a row by more than half a line onto another row asks the adaptor to swap
// them. With no rows the empty label is shown. A right click that the adaptor doesn't take
// shows the menu of the nearest panel round the table.
class TableWidget : public Glob {
public:
    enum eHighlight { HighlightCurrentRow = 0x1, HighlightHover = 0x2 };
    struct InitArgs : GlobCreationInfo {
        InitArgs(int w, int h, iTableAdaptor* a, int sel = 2, int rowH = 0)
            : GlobCreationInfo(w, h), adaptor(a), selectionMode(sel), rowHeight(rowH) {}
        iTableAdaptor* adaptor = nullptr;
        int selectionMode = 2;
        int rowHeight = 0;
    };

    explicit TableWidget(const InitArgs& args);
    const char* idstring() const override { return "TableWidget"; }

    void setLineHeight(int h);
    int getLineHeight() const { return lineHeight_; }
    void setHighlightFlags(unsigned f) { highlight_ = f; }
    void setEmptyLabel(const UIString& s) { emptyLabel_ = s; }
    const UIString& getEmptyLabel() const { return emptyLabel_; }
    // The cell under an event's position; a negative row when it is over no row.
    XY<int> getCellForMouseEvent(const Event& e) const;
    XY<int> getCurrentCell() const { return current_; }
    // The pixel box of a cell, y upward.
    Zk::Box<int> getCellBox(const XY<int>& cell) const;

    void drawBackground() override;
    bool handleMouseEvent(const Event& e) override;
    MouseCursorID contextCursor(const XY<int>& screenPos) override;

private:
    std::vector<int> columnWidths() const;
    // Makes the toolkit's table match the adaptor's rows and columns.
    void syncControl();
    bool showOwnerMenu(const Event& e);
    iTableAdaptor* adaptor_;
    int lineHeight_;
    unsigned highlight_ = HighlightCurrentRow;
    UIString emptyLabel_;
    XY<int> current_{-1, -1};
    int dragRow_ = -1;
};
