// iTableAdaptor: what a table asks of its owner: rows, texts, colours, drawing and gestures.
#pragma once

#include <vector>

#include "host/Event.h"
#include "host/LightweightString.h"
#include "host/MouseCursorID.h"
#include "host/Palette.h"
#include "host/TableColumnDescription.h"
#include "host/XY.h"
#include "host/ZkBox.h"

class CanvasRenderer;

// A cell is (column, row); row 0 is the top row.
class iTableAdaptor {
public:
    // What drawField draws into: the cell, its pixel box on the table's canvas, its palette.
    struct CellContext {
        XY<int> cell;
        Zk::Box<int> box;
        CanvasRenderer* renderer = nullptr;
        Palette palette;
        bool current = false;
    };

    virtual ~iTableAdaptor() = default;
    virtual LightweightString<wchar_t> getFieldText(const XY<int>& cell) = 0;
    virtual int getNumRows() = 0;
    virtual std::vector<TableColumnDescription> getColumns() = 0;
    // Adjusts the palette the cell is drawn with; unchanged by default.
    virtual void getFieldColours(const XY<int>& cell, Palette& palette) {}
    virtual MouseCursorID getCellCursor(const XY<int>& cell) { return CursorArrow; }
    // Draws the cell itself; false leaves it to the table (its text in the palette's text colour).
    virtual bool drawField(const CellContext& ctx) { return false; }
    // A pointer event on a cell; true if it was used.
    virtual bool handleMouseEvent(const XY<int>& cell, const Event& e) { return false; }
    // The user dragged row a onto row b; true if the rows were swapped.
    virtual bool requestSwapRows(int a, int b) { return false; }
};
