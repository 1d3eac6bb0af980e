// WelcomeView: a quiet canvas with the program's name.
#include "app/workbench/WelcomeView.h"

#include "host/Canvas.h"
#include "host/GlibDraw.h"
#include "host/GlibFonts.h"
#include "host/UifStd.h"

void WelcomeView::drawBackground() {
    CanvasRenderer& r = canvas()->renderer();
    Zk::Box<int> all;
    all.x2 = width();
    all.y2 = height();
    Glib::drawRect(r, getPalette().window(-2), all);
    int gap = UifStd::getWidgetGap();
    Zk::Box<int> card{all.x1 + 4 * gap, all.y1 + 4 * gap, all.x2 - 4 * gap, all.y2 - 4 * gap};
    Glib::drawRoundedRect(r, getPalette().window(2), getPalette().window(-1), card, 8, 0, 1);
    Glib::TextDescription t;
    t.text = L"nodedesk workbench";
    t.font = Glib::loadFont(getDefaultFontName(0), 2 * getDefaultFontSize(), 1);
    t.anchor = XY<int>(width() / 2, height() / 2);
    t.alignment = 2;
    t.colour = fromColour(getPalette().text(0));
    r.renderPrimitive(t);
    r.addModifiedArea(all);
}
