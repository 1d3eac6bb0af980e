// FXGraphTool: panels coming and going, one per Vob, their saved form, and pop-outs.
#include "graphview/FXGraphView.h"
#include "host/CelEventPair.h"
#include "host/Edit.h"
#include "host/EditViewer.h"
#include "host/EditorPreferences.h"
#include "host/Event.h"
#include "host/FloatingLogMetadataPanel.h"
#include "host/GlobManager.h"
#include "host/PopOutInfo.h"
#include "host/StateSaver.h"
#include "host/UserMessages.h"
#include "host/Vob.h"
#include "host/VobManager.h"
#include "panels/FXGraphTool.h"

void FXGraphTool::dump(configb& c) {
    Glob::dump(c);
    Vob* v = vob();
    c.set("EDIT_COOKIE", v ? v->cookie() : Cookie());
    c.set("GROUPID", v ? v->group() : String());
    c.set("CURRENT_TIME", v ? v->getCurrentTime(1) : 0.0);
    c.set("VIEW_CX", view_ ? view_->getViewCX() : 0.0);
    c.set("VIEW_CY", view_ ? view_->getViewCY() : 0.0);
    c.set("VIEW_ZOOM", view_ ? view_->getViewZoomValue() : startZoom_);
    c.set("AUTO_POSITION", autoPosition() ? 1 : 0);
}

// The saved centre is kept in savedCentreX_ and savedCentreY_ and not applied, and
// "AUTO_POSITION" is not read: the view starts from its own centre and the preference decides.
void FXGraphTool::load(const configb& c) {
    Cookie cookie;
    double time = 0.0, cx = 0.0, cy = 0.0;
    c.in("EDIT_COOKIE", cookie);
    c.in("CURRENT_TIME", time);
    unsigned oldGroup = 0;
    if (c.in("VOB_GROUP_ID", oldGroup) == 0) {
        if (!VobManager::instance().open(this, static_cast<int>(oldGroup)) &&
            VobManager::instance().create(this, cookie, static_cast<int>(oldGroup)) && vob())
            vob()->storeCurrentTime(time);
    } else {
        String group;
        c.in("GROUPID", group);
        if (!VobManager::instance().open(this, group) && VobManager::instance().create(this, cookie, group) &&
            vob())
            vob()->storeCurrentTime(time);
    }
    c.in("VIEW_ZOOM", startZoom_);
    c.in("VIEW_CX", cx);
    c.in("VIEW_CY", cy);
    savedCentreX_ = cx;
    savedCentreY_ = cy;
    if (unsized_ || getDimensions() == XY<int>(0, 0)) {
        const XY<int> size = calcSize();
        Glob::resize(size.x, size.y);
        unsized_ = false;
    }
}

FXGraphTool* FXGraphTool::findPanelFor(Vob* vob) {
    for (DLListRec* r = allPanels_.first(); r; r = r->next()) {
        auto* panel = dynamic_cast<FXGraphTool*>(r);
        if (panel && panel->vob() == vob)
            return panel;
    }
    return nullptr;
}

void FXGraphTool::show() {
    if (Vob* v = Vob::getPlayMachine())
        createPanelFor(v);
}

void FXGraphTool::createPanelFor(Vob* vob) {
    if (!vob)
        return;
    if (FXGraphTool* panel = findPanelFor(vob)) {
        GlobManager::instance().requestDeletion(panel);
        return;
    }
    EditGraphIterator it(vob->edit(), 0, vob->getCurrentTime(1), 0);
    createPanelFor(vob, it);
}

void FXGraphTool::createPanelFor(Vob* vob, EditGraphIterator& it) {
    if (!vob || !it.isValid())
        return;
    it.moveBackToCompoundEffect();
    CelEventPair pair(vob->edit(), it.getChanIndex(-1), it.getTime());
    const double now = vob->getCurrentTime(1);
    if (pair.valid() && (now < pair.editTime() || now > pair.endEditTime()))
        vob->setCurrentTime(pair.editTime());
    if (FXGraphTool* panel = findPanelFor(vob)) {
        panel->popToTop(false);
        return;
    }
    const XY<int> saved = prefs().getPreference(kPositionPref, XY<int>(-1234, -1234));
    const WidgetPosition position = saved != XY<int>(-1234, -1234) ? BottomLeft(saved) : Centre(0, 0, 2);
    InitArgs args(0, 0, vob, Border(0, 0, 15));
    const XY<int> size = calcSize();
    args.width = size.x;
    args.height = size.y;
    Drawable::disableRedraws();
    {
        Glib::StateSaver saver;
        const XY<int> place =
            position.kind() == WidgetPosition::CentreKind
                ? glib_getPosForWindow(args.width, args.height)
                : GlobManager::instance().getSafePosForGlob(
                      args.canvas, size, GlobManager::instance().getPosForGlob(args, position));
        Glob::setupRootPos(args.canvas, place);
        GlobManager::instance().realize(new FXGraphTool(args));
    }
    Drawable::enableRedraws();
}

VobClient* FXGraphTool::popOutItem(EditGraphIterator& it, PopOutItem kind) {
    if (!it.isValid())
        return nullptr;
    return popOutItem(it.getCurrentPosEdit(), it.getChanIndex(-2), it.getTime(), kind);
}

VobClient* FXGraphTool::popOutItem(EditPtr edit, int channel, double time, PopOutItem kind) {
    const PopOutInfo info = getPopOutShotInfo(edit, channel, time);
    if (info.shot.kind() == PopOutInfo::kNoShot) {
        if (!info.error.empty())
            makeMessage(UIString(toWide(info.error), UIString::NoResource));
        return nullptr;
    }
    const XY<int> mouse = glib_getMousePos();
    if (kind != PopOutTile)
        return FloatingLogMetadataPanel::create(info.shot, mouse);
    Glob* viewer = makeEditViewer("tilev", info.shot, XY<int>(mouse.x - 50, mouse.y - 50), info.time, "");
    set_it(viewer);
    return nullptr;
}
