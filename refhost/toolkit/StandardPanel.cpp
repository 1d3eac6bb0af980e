// StandardPanel: border, title row with its standard widgets, and the user area.
#include "host/StandardPanel.h"

#include "host/Canvas.h"
#include "host/GlibDraw.h"
#include "host/GlobManager.h"
#include "host/ImageButton.h"
#include "host/Resources.h"
#include "host/TextBox.h"
#include "host/UifStd.h"

StandardPanel::StandardPanel(const InitArgs& args) : MenuGlob(args), border_(args.border) {
    TextBox::InitArgs ta(UIString(), false, 0, UifStd::getRowHeight());
    ta.font = UifStd::getTitleFont();
    ta.palette = getPalette();
    title_ = new TextBox(ta);
    int inset = border_.getSize() + UifStd::getWidgetGap();
    addChild(title_, TopLeft(inset, (titleRowHeight() - title_->height()) / 2 + border_.getSize()));
}

int StandardPanel::calcSize(int spacing, int, const Border& border) {
    int pad = spacing <= 0 ? 1 : spacing == 1 ? UifStd::getWidgetGap() / 2 : UifStd::getWidgetGap();
    return border.getSize() + UifStd::getRowHeight() + 2 * pad;
}

int StandardPanel::titleRowHeight() const {
    if (!titleShown_)
        return 0;
    return calcSize(2, 0, border_) - border_.getSize();
}

void StandardPanel::setTitleShown(bool shown) {
    titleShown_ = shown;
    if (title_)
        title_->setVisible(shown);
    update();
}

void StandardPanel::setBorder(const Border& b) {
    border_ = b;
    update();
}

void StandardPanel::setTitle(const UIString& title, const FontDesc& font, eRedrawFlag redraw) {
    if (!(font == FontDesc()))
        title_->setFont(font);
    title_->setText(title.resolve());
    XY<int> n = title_->naturalSize();
    title_->resize(n.x, title_->height());
    if (redraw == Redraw)
        update();
}

WString StandardPanel::getTitleText() const {
    return title_ ? title_->getText() : WString();
}

void StandardPanel::addStandardWidgets(int flags) {
    int b = border_.getSize() + UifStd::getWidgetGap();
    int side = UifStd::getRowHeight();
    int top = (titleRowHeight() - side) / 2 + border_.getSize();
    if ((flags & CloseButton) && !closeButton_) {
        ImageButton::InitArgs a(getIconPath("close.png"), WidgetCallback(closeMsg, this), side, side);
        a.label = UIString(L"x");
        closeButton_ = new ImageButton(a);
        addChild(closeButton_, TopRight(b, top));
        closeButton_->setContextString(UIString(L"Close"), UIString());
    }
    if ((flags & MenuButton) && !menuButton_) {
        ImageButton::InitArgs a(getIconPath("menu.png"), WidgetCallback(menuMsg, this), side, side);
        a.label = UIString(L"=");
        menuButton_ = new ImageButton(a);
        if (closeButton_)
            addChild(menuButton_, LeftOf(UifStd::getWidgetGap(), closeButton_, 0));
        else
            addChild(menuButton_, TopRight(b, top));
    }
}

Zk::Box<int> StandardPanel::getUserArea() const {
    Zk::Box<int> b;
    int s = border_.getSize();
    b.x1 = (border_.getSides() & 1) ? s : 0;
    b.x2 = width() - ((border_.getSides() & 2) ? s : 0);
    b.y1 = (border_.getSides() & 4) ? s : 0;
    b.y2 = height() - ((border_.getSides() & 8) ? s : 0) - titleRowHeight();
    return b;
}

int StandardPanel::handleMessageEvent(const LightweightString<char>& msg, Glob* sender) {
    if (sender && sender == closeButton_ && msg == closeMsg) {
        GlobManager::instance().requestDeletion(this);
        return 1;
    }
    if (sender && sender == menuButton_ && msg == menuMsg)
        return popUpMenu(nullptr) ? 1 : 0;
    return parent() ? parent()->handleMessageEvent(msg, sender) : 0;
}

void StandardPanel::drawBackground() {
    CanvasRenderer& r = canvas()->renderer();
    Zk::Box<int> all;
    all.x2 = width();
    all.y2 = height();
    Glib::drawRect(r, getPalette().window(0), all);
    Zk::Box<int> title = all;
    title.y1 = height() - border_.getSize() - titleRowHeight();
    title.y2 = height() - border_.getSize();
    Glib::drawRect(r, getPalette().window(-1), title);
    if (border_.getSize() > 0)
        Glib::drawFrame(r, getPalette().window(border_.getType() == 1 ? 2 : -3), all, border_.getSize());
}
