// The table: its rows in the toolkit's table, clicks and row drags handed to the adaptor, and
// the empty label.
#include "host/TableWidget.h"

#include <gtest/gtest.h>

#include <QTableWidget>
#include <string>
#include <vector>

#include "host/ToolkitApp.h"
#include "refhost/toolkit/GlobImpl.h"

namespace {

struct Rows : iTableAdaptor {
    LightweightString<wchar_t> getFieldText(const XY<int>& cell) override {
        return cell.y >= 0 && cell.y < static_cast<int>(names.size())
                   ? WString(names[static_cast<size_t>(cell.y)].c_str())
                   : WString();
    }
    int getNumRows() override { return static_cast<int>(names.size()); }
    std::vector<TableColumnDescription> getColumns() override { return {TableColumnDescription()}; }
    bool handleMouseEvent(const XY<int>& cell, const Event& e) override {
        if (mouse_up_event(e))
            released.push_back(cell.y);
        return true;
    }
    bool requestSwapRows(int a, int b) override {
        std::swap(names[static_cast<size_t>(a)], names[static_cast<size_t>(b)]);
        return true;
    }
    std::vector<std::wstring> names{L"one", L"two", L"three"};
    std::vector<int> released;
};

XY<int> centre(TableWidget& t, int row) {
    Zk::Box<int> b = t.getCellBox(XY<int>(0, row));
    return XY<int>((b.x1 + b.x2) / 2, (b.y1 + b.y2) / 2);
}

TEST(TableWidget, ShowsItsRowsInTheToolkitsTable) {
    ensureToolkitApplication();
    Rows rows;
    TableWidget t(TableWidget::InitArgs(200, 150, &rows, 2, 30));
    t.draw();
    auto* q = dynamic_cast<QTableWidget*>(t.impl().control);
    ASSERT_TRUE(q);
    EXPECT_FALSE(q->isHidden());
    ASSERT_EQ(q->rowCount(), 3);
    EXPECT_EQ(q->rowHeight(1), 30);
    EXPECT_EQ(q->columnWidth(0), 200) << "one column stretched over the width";
    EXPECT_EQ(q->item(2, 0)->text().toStdString(), "three");

    rows.names.clear();
    t.draw();
    EXPECT_TRUE(q->isHidden()) << "the empty label shows instead";
    EXPECT_EQ(q->rowCount(), 0);
}

TEST(TableWidget, ClicksAndRowDragsReachTheAdaptor) {
    ensureToolkitApplication();
    Rows rows;
    TableWidget t(TableWidget::InitArgs(200, 150, &rows, 2, 30));
    XY<int> at = centre(t, 1);
    t.dispatchMouseEvent(Event(Event::Down, Event::Left, at, at));
    t.dispatchMouseEvent(Event(Event::Up, Event::Left, at, at));
    EXPECT_EQ(rows.released, std::vector<int>{1});
    EXPECT_EQ(t.getCellForMouseEvent(Event(Event::Move, Event::NoButton, XY<int>(10, 2), XY<int>(10, 2))).y,
              -1)
        << "below the last row";

    // Row 0 dragged down by a line lands on row 1; the table keeps it current there.
    XY<int> press = centre(t, 0), to = centre(t, 1);
    t.dispatchMouseEvent(Event(Event::Down, Event::Left, press, press));
    t.dispatchMouseEvent(Event(Event::Move, Event::Left, XY<int>(press.x, press.y - 10), press));
    EXPECT_EQ(rows.names[0], L"one") << "not yet half a line";
    t.dispatchMouseEvent(Event(Event::Move, Event::Left, to, press));
    t.dispatchMouseEvent(Event(Event::Up, Event::Left, to, press));
    EXPECT_EQ(rows.names, (std::vector<std::wstring>{L"two", L"one", L"three"}));
    EXPECT_EQ(t.getCurrentCell().y, 1);
}

} // namespace
