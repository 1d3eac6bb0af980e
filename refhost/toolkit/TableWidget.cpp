// TableWidget on QTableWidget: rows drawn on the canvas through the adaptor and shown in the
// table's cells; cell cursor, clicks and row drags.
#include "host/TableWidget.h"

#include <QHeaderView>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <algorithm>

#include "host/Canvas.h"
#include "host/GlibDraw.h"
#include "host/GlibFonts.h"
#include "host/MenuGlob.h"
#include "host/UifStd.h"
#include "refhost/toolkit/CanvasSurface.h"
#include "refhost/toolkit/GlobImpl.h"

namespace {

// Paints a cell of the Qt table with the pixels the adaptor drew for it on the canvas, so that
// the adaptor's drawing is what the table shows.
class CanvasCellDelegate : public QStyledItemDelegate {
public:
    CanvasCellDelegate(TableWidget& table, QObject* parent) : QStyledItemDelegate(parent), table_(table) {}
    void paint(QPainter* p, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        Zk::Box<int> b = table_.getCellBox(XY<int>(index.column(), index.row()));
        QRect from(b.x1, table_.height() - b.y2, b.width(), b.y2 - b.y1);
        table_.canvas()->renderer().finishPainting();
        p->drawImage(option.rect, table_.canvas()->surface().image, from);
    }

private:
    TableWidget& table_;
};

} // namespace

TableWidget::TableWidget(const InitArgs& args)
    : Glob(args), adaptor_(args.adaptor),
      lineHeight_(args.rowHeight > 0 ? args.rowHeight : UifStd::getRowHeight()) {
    auto* table = new QTableWidget(impl().widget);
    impl().control = table;
    table->horizontalHeader()->hide();
    table->verticalHeader()->hide();
    table->setFrameShape(QFrame::NoFrame);
    table->setShowGrid(false);
    table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionMode(QAbstractItemView::NoSelection);
    table->setFocusPolicy(Qt::NoFocus);
    table->setItemDelegate(new CanvasCellDelegate(*this, table));
    // Presses, drags and releases go to the widget beneath, which hands them to the table's
    // own gesture handling.
    table->setAttribute(Qt::WA_TransparentForMouseEvents);
    QPalette qp = table->palette();
    qp.setColor(QPalette::Base, toolkit::toQColor(getPalette().window(-1)));
    table->setPalette(qp);
    table->hide();
    impl().fitControl();
}

void TableWidget::syncControl() {
    auto* table = static_cast<QTableWidget*>(impl().control);
    const int rows = adaptor_ ? adaptor_->getNumRows() : 0;
    const std::vector<int> widths = columnWidths();
    const int cols = static_cast<int>(widths.size());
    if (table->rowCount() != rows)
        table->setRowCount(rows);
    if (table->columnCount() != cols)
        table->setColumnCount(cols);
    for (int c = 0; c < cols; ++c)
        if (table->columnWidth(c) != widths[static_cast<std::size_t>(c)])
            table->setColumnWidth(c, widths[static_cast<std::size_t>(c)]);
    for (int r = 0; r < rows; ++r) {
        if (table->rowHeight(r) != lineHeight_)
            table->setRowHeight(r, lineHeight_);
        for (int c = 0; c < cols; ++c) {
            QString text = toolkit::toQString(adaptor_->getFieldText(XY<int>(c, r)));
            QTableWidgetItem* item = table->item(r, c);
            if (!item)
                table->setItem(r, c, new QTableWidgetItem(text));
            else if (item->text() != text)
                item->setText(text);
        }
    }
    // With no rows the empty label on the canvas shows through.
    table->setVisible(rows > 0);
    table->viewport()->update();
}

void TableWidget::setLineHeight(int h) {
    lineHeight_ = std::max(1, h);
    update();
}

std::vector<int> TableWidget::columnWidths() const {
    std::vector<TableColumnDescription> cols =
        adaptor_ ? adaptor_->getColumns() : std::vector<TableColumnDescription>();
    std::vector<int> w(cols.size(), 0);
    int fixed = 0, stretch = 0;
    for (std::size_t i = 0; i < cols.size(); ++i) {
        if (cols[i].widthKind == 1)
            ++stretch;
        else
            fixed += (w[i] = std::max(0, cols[i].width));
    }
    int left = std::max(0, width() - fixed);
    for (std::size_t i = 0; i < cols.size(); ++i)
        if (cols[i].widthKind == 1)
            w[i] = left / std::max(1, stretch);
    return w;
}

Zk::Box<int> TableWidget::getCellBox(const XY<int>& cell) const {
    std::vector<int> w = columnWidths();
    Zk::Box<int> b;
    for (int i = 0; i < cell.x && i < static_cast<int>(w.size()); ++i)
        b.x1 += w[static_cast<std::size_t>(i)];
    b.x2 =
        b.x1 + (cell.x >= 0 && cell.x < static_cast<int>(w.size()) ? w[static_cast<std::size_t>(cell.x)] : 0);
    b.y2 = height() - cell.y * lineHeight_;
    b.y1 = b.y2 - lineHeight_;
    return b;
}

XY<int> TableWidget::getCellForMouseEvent(const Event& e) const {
    int rows = adaptor_ ? adaptor_->getNumRows() : 0;
    int fromTop = height() - 1 - e.pos().y;
    int row = fromTop < 0 ? -1 : fromTop / lineHeight_;
    if (row >= rows)
        row = -1;
    std::vector<int> w = columnWidths();
    int col = -1;
    for (int i = 0, x = 0; i < static_cast<int>(w.size()); x += w[static_cast<std::size_t>(i)], ++i)
        if (e.pos().x >= x && e.pos().x < x + w[static_cast<std::size_t>(i)])
            col = i;
    return XY<int>(col, row);
}

void TableWidget::drawBackground() {
    CanvasRenderer& r = canvas()->renderer();
    Zk::Box<int> all;
    all.x2 = width();
    all.y2 = height();
    Glib::drawRect(r, getPalette().window(-1), all);
    int rows = adaptor_ ? adaptor_->getNumRows() : 0;
    FontDesc font = Glib::getDefaultFont();
    auto text = [&](const WString& s, const Zk::Box<int>& box, const Colour& c) {
        Glib::TextDescription t;
        t.text = Glib::fitTextToWidth(s, font, box.width() - 2 * UifStd::getIndentWidth());
        t.anchor = XY<int>(box.x1 + UifStd::getIndentWidth(), box.y1 + getFontYOffset(box.height(), font));
        t.font = font;
        t.colour = fromColour(c);
        r.renderPrimitive(t);
        r.addModifiedArea(box);
    };
    syncControl();
    if (rows == 0) {
        Zk::Box<int> top = all;
        top.y1 = all.y2 - lineHeight_;
        text(emptyLabel_.resolve(), top, getPalette().text(1));
        return;
    }
    std::size_t cols = columnWidths().size();
    for (int row = 0; row < rows; ++row) {
        for (std::size_t c = 0; c < cols; ++c) {
            XY<int> cell(static_cast<int>(c), row);
            iTableAdaptor::CellContext ctx;
            ctx.cell = cell;
            ctx.box = getCellBox(cell);
            ctx.renderer = &r;
            ctx.palette = getPalette();
            ctx.current = (highlight_ & HighlightCurrentRow) && current_.y == row;
            adaptor_->getFieldColours(cell, ctx.palette);
            if (ctx.current)
                Glib::drawRect(r, ctx.palette.window(2), ctx.box);
            if (!adaptor_->drawField(ctx))
                text(adaptor_->getFieldText(cell), ctx.box, ctx.palette.text(0));
        }
    }
}

bool TableWidget::handleMouseEvent(const Event& e) {
    if (!adaptor_)
        return false;
    XY<int> cell = getCellForMouseEvent(e);
    if (mouse_left_event(e) && mouse_down_event(e)) {
        dragRow_ = cell.y;
        if (cell.y >= 0 && !(current_ == cell)) {
            current_ = cell;
            update();
        }
    }
    if (mouse_left_event(e) && mouse_move_event(e) && dragRow_ >= 0) {
        int fromTop = height() - 1 - e.pos().y;
        int over = fromTop / lineHeight_;
        int within = fromTop - over * lineHeight_;
        // The dragged row changes place once the pointer is half a line into its neighbour.
        if (over != dragRow_ && cell.y >= 0 && within >= lineHeight_ / 2 - lineHeight_ / 2 &&
            std::abs(fromTop - (dragRow_ * lineHeight_ + lineHeight_ / 2)) > lineHeight_ / 2) {
            int target = over > dragRow_ ? dragRow_ + 1 : dragRow_ - 1;
            if (adaptor_->requestSwapRows(dragRow_, target)) {
                dragRow_ = target;
                current_.y = target;
                update();
            }
            return true;
        }
    }
    bool used = cell.y >= 0 && adaptor_->handleMouseEvent(cell, e);
    if (mouse_up_event(e))
        dragRow_ = -1;
    if (!used && mouse_right_event(e) && mouse_up_event(e))
        used = showOwnerMenu(e);
    return used;
}

bool TableWidget::showOwnerMenu(const Event& e) {
    // The table has no menu of its own: the nearest panel round it shows its menu, with the
    // event moved into that panel's frame.
    for (Glob* g = parent(); g; g = g->parent()) {
        auto* owner = dynamic_cast<MenuGlob*>(g);
        if (!owner)
            continue;
        XY<int> here = getPosition(), there = owner->getPosition();
        XY<int> d(here.x - there.x, here.y - there.y);
        Event moved(e.action(), e.button(), XY<int>(e.pos().x + d.x, e.pos().y + d.y),
                    XY<int>(e.pressPos().x + d.x, e.pressPos().y + d.y), e.modifiers());
        return owner->processRightMouseClicks(moved);
    }
    return false;
}

MouseCursorID TableWidget::contextCursor(const XY<int>& screenPos) {
    XY<int> local = screenXYToGlobXY(screenPos);
    Event probe(Event::Move, Event::NoButton, local, local);
    XY<int> cell = getCellForMouseEvent(probe);
    return adaptor_ && cell.y >= 0 ? adaptor_->getCellCursor(cell) : CursorArrow;
}
