// FXGraphTool: construction, layout, geometry and the preferences of the panel.
#include "panels/FXGraphTool.h"

#include <cmath>

#include "graphview/FXGraphView.h"
#include "host/Checkbox.h"
#include "host/DropDownMenuButton.h"
#include "host/Edit.h"
#include "host/EditorPreferences.h"
#include "host/ImageButton.h"
#include "host/PersistableXY.h"
#include "host/PushButton.h"
#include "host/Resources.h"
#include "host/StateSaver.h"
#include "host/TextBox.h"
#include "host/UifStd.h"
#include "host/UpdateDeferrer.h"
#include "host/Vob.h"
#include "panels/DDVideoEffectsList.h"

namespace {

constexpr unsigned kCheckboxLabel = 10869;
constexpr unsigned kRedoHelp = 11111;
constexpr unsigned kUndoHelp = 11129;
constexpr unsigned kTidyLabel = 11402;
constexpr unsigned kTitlePrefix = 11587;
constexpr unsigned kLeftToRight = 11779;
constexpr unsigned kBottomToTop = 11780;
constexpr int kMinWidth = 470;
constexpr int kMinHeight = 290;

DLList makePanelList() {
    DLList list;
    list.ownsRecords(false); // the window manager owns the panels
    return list;
}

} // namespace

DLList FXGraphTool::allPanels_ = makePanelList();
double FXGraphTool::startZoom_ = 1.0;
double FXGraphTool::savedCentreX_ = 0.0;
double FXGraphTool::savedCentreY_ = 0.0;

FXGraphTool::FXGraphTool(const InitArgs& args)
    : StandardPanel(args),
      VobClient(args.vob ? args.vob->cookie() : Cookie(), args.vob, kHighPriority, kManaged) {
    Glib::StateSaver saver;
    unsized_ = getDimensions() == XY<int>(0, 0);
    startZoom_ = prefs().getPreference(kZoomPref, 0.75);
    init();
    postInit();
}

FXGraphTool::FXGraphTool(const configb& config, int w, int h)
    : StandardPanel(StandardPanel::InitArgs(w, h, Border(0, 0, 15))) {
    Glib::StateSaver saver;
    unsized_ = getDimensions() == XY<int>(0, 0);
    init();
    load(config);
    postInit();
}

FXGraphTool::~FXGraphTool() {
    if (!isChildGlob()) {
        prefs().setPreference(kSizePref, PersistableXY::toString(XY<int>(width(), height())));
        if (view_)
            prefs().setPreference(kZoomPref, view_->getViewZoomValue());
    }
    allPanels_.remove(this);
}

Glob* FXGraphTool::make(GlobCreationInfo* info) {
    if (!info)
        return nullptr;
    return new FXGraphTool(info->config, info->width, info->height);
}

void FXGraphTool::init() {
    showTemplates_ = prefs().getPreference(kTemplatesPref, true);
    setBorder(StandardPanel::getDefaultBorder());
    setResizable(true);
    setMovable(true);
    setPersistable(true);
    setTitle(UIString(), UifStd::getTitleFont(), Redraw);
    addStandardWidgets(CloseButton | MenuButton);
    setMinSize(kMinWidth, kMinHeight);
    allPanels_.append(this);
}

void FXGraphTool::postInit() {
    showTemplates_ = prefs().getPreference(kTemplatesPref, true);
    if (unsized_ || getDimensions() == XY<int>(0, 0)) {
        const XY<int> size = calcSize();
        Glob::resize(size.x, size.y);
        unsized_ = false;
    }
    updateTitleStr();
    initTemplatesListUI();

    const std::vector<UIString> orientations{UIString(kLeftToRight), UIString(kBottomToTop)};
    const int checkboxWidth =
        Checkbox::calcWidth(UIString(kCheckboxLabel), Checkbox::getDefaultAppearance(), FontDesc());
    const bool automatic = prefs().getPreference(kAutoPositionPref, false);
    const int gap = UifStd::getWidgetGap();
    const int row = UifStd::getRowHeight();
    const int b = getBorder().getSize();
    const Palette palette = getPalette();
    auto withLook = [&](auto args) {
        args.canvas = canvas();
        args.palette = palette;
        return args;
    };

    // The title row's button: a square as high as the row's standard buttons, set in the row the
    // way they are.
    const int side = row;
    const int inset = (titleRowHeight() - side) / 2 + getBorder().getSize();
    toggleTemplatesButton_ = static_cast<ImageButton*>(
        addChild(new ImageButton(withLook(ImageButton::InitArgs(
                     getIconPath("GallNav.png"), WidgetCallback("ToggleTemplates", this), side, side))),
                 TopLeft(gap, inset), WidgetSurround()));
    Checkbox::InitArgs check(UIString(kCheckboxLabel), automatic, checkboxWidth, row);
    autoPositionCheckbox_ =
        static_cast<Checkbox*>(addChild(new Checkbox(withLook(check)), BottomLeft(b, b), WidgetSurround()));
    tidyButton_ = static_cast<PushButton*>(
        addChild(new PushButton(withLook(Button::InitArgs(
                     UIString(kTidyLabel), WidgetCallback("TidyNodes", this), 0, PushButton::calcHeight()))),
                 RightOf(gap, nullptr, 0), WidgetSurround()));
    orientationMenu_ = static_cast<DropDownMenuButton*>(
        addChild(new DropDownMenuButton(withLook(DropDownMenuButton::InitArgs(
                     orientations, WidgetCallback(DropDownMenuButton::dropDownMenuButtonMsg, this), 0, row))),
                 RightOf(gap, nullptr, 0), WidgetSurround()));
    const XY<int> viewSize = calcMainViewSize();
    FXGraphView::InitArgs viewArgs(viewSize.x, viewSize.y, vob(), 1);
    view_ = static_cast<FXGraphView*>(
        addChild(new FXGraphView(withLook(viewArgs)), UserTopRight(0, 0), WidgetSurround()));
    redoButton_ =
        static_cast<ImageButton*>(addChild(new ImageButton(withLook(ImageButton::InitArgs(
                                               getIconPath("redo.png"), WidgetCallback("redoBtn", this)))),
                                           BottomRight(b, b), WidgetSurround()));
    undoButton_ =
        static_cast<ImageButton*>(addChild(new ImageButton(withLook(ImageButton::InitArgs(
                                               getIconPath("undo.png"), WidgetCallback("undoBtn", this)))),
                                           LeftOf(gap, nullptr, 0), WidgetSurround()));

    TextBox* title = getTitleWidget();
    if (title && removeWidget(title, false))
        addWidgetRelative(title, toggleTemplatesButton_, gap, 2, WidgetSurround(), 0);
    undoButton_->setContextString(UIString(kUndoHelp), UIString());
    redoButton_->setContextString(UIString(kRedoHelp), UIString());

    view_->setViewZoom(startZoom_);
    if (view_->getOrientation() == VidRouting::Orientations::BottomToTop)
        orientationMenu_->setSelectedItem(MenuItemIndex(1));
    view_->manualPosMode().setVal(!automatic);
    tidyButton_->setActive(view_->getManualPosMode(), NoRedraw);
    resize(width(), height());
}

void FXGraphTool::initTemplatesListUI() {
    if (!showTemplates_) {
        templatesList_ = nullptr;
        return;
    }
    DDVideoEffectsList::InitArgs args(vob(), 1, 0, static_cast<unsigned short>(13 * UifStd::getRowHeight()),
                                      static_cast<unsigned short>(std::max(getUserArea().height(), 1)));
    args.canvas = canvas();
    args.palette = getPalette();
    templatesList_ = static_cast<DDVideoEffectsList*>(
        addChild(new DDVideoEffectsList(args), UserTopLeft(0, 0), WidgetSurround()));
}

Zk::Box<int> FXGraphTool::getUserArea() const {
    Zk::Box<int> ua = StandardPanel::getUserArea();
    ua.y1 += UifStd::getRowHeight() + UifStd::getWidgetGap();
    return ua;
}

XY<int> FXGraphTool::calcMainViewSize() const {
    const Zk::Box<int> ua = getUserArea();
    int w = ua.width();
    if (showTemplates_ && templatesList_)
        w -= getBorder().getSize() + templatesList_->width();
    return XY<int>(std::max(w, 1), std::max(ua.height(), 1));
}

void FXGraphTool::resize(double w, double h) {
    StandardPanel::resize(w, h);
    const Zk::Box<int> ua = getUserArea();
    if (view_) {
        const XY<int> size = calcMainViewSize();
        view_->setDimensions(size);
        view_->setPos(ua.x2 - view_->width(), ua.y2 - view_->height());
    }
    if (showTemplates_ && templatesList_) {
        templatesList_->setHeight(std::max(ua.height(), 1));
        templatesList_->setPos(ua.x1, ua.y2 - templatesList_->height());
    }
    if (!isChildGlob())
        writePositionPreference();
}

void FXGraphTool::writePositionPreference() {
    prefs().setPreference(kPositionPref, getPosition());
}

XY<int> FXGraphTool::calcSize() {
    const int row = UifStd::getRowHeight();
    return prefs().getPreference(kSizePref, XY<int>(36 * row, 25 * row));
}

XY<double> FXGraphTool::getNodeSize(Glob* glob) {
    auto* tool = dynamic_cast<FXGraphTool*>(glob);
    if (!tool || !tool->view_)
        return XY<double>(0.0, 0.0);
    const int h = static_cast<int>(tool->view_->physicalScale() * 0.125);
    const int w = static_cast<int>(h * 1.25);
    return XY<double>(w, h);
}

bool FXGraphTool::updateTitleStr() {
    EditPtr edit = getEdit();
    if (!edit)
        return true;
    const WString title = paddedResourceStrW(kTitlePrefix, WString(), WString(L" : "), 0) + edit->name();
    if (title == getTitleText())
        return false;
    setTitle(UIString(title, UIString::NoResource), UifStd::getTitleFont(), Redraw);
    return true;
}

bool FXGraphTool::autoPosition() const {
    return view_ && !view_->getManualPosMode();
}

void FXGraphTool::updateTidyButton() {
    if (view_ && tidyButton_ && tidyButton_->isActive() != view_->getManualPosMode())
        tidyButton_->setActive(view_->getManualPosMode(), Redraw);
}

void FXGraphTool::setAutoPosition(bool on) {
    Glib::UpdateDeferrer deferrer(canvas());
    if (view_ && on != autoPosition()) {
        view_->manualPosMode().setVal(!on);
        view_->recalcNodeList(true);
    }
    updateTidyButton();
    if (autoPositionCheckbox_ && autoPositionCheckbox_->getValue() != on)
        autoPositionCheckbox_->setValue(on);
    prefs().setPreference(kAutoPositionPref, on);
}

int FXGraphTool::handleZoom(int direction) {
    if (!view_)
        return 0;
    double z = view_->getViewZoomValue();
    z = direction < 0 ? z * 3 * 0.25 : z * 4 / 3;
    view_->setViewZoom(z);
    view_->update();
    return 1;
}

void FXGraphTool::handleTimerEvent() {
    if (view_)
        view_->handleTimerEvent();
}

void FXGraphTool::drawMainArea() {
    Glib::UpdateDeferrer deferrer(canvas());
    if (view_)
        view_->draw();
}
