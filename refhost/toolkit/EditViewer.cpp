// Tile viewers of edits: the picture of an edit at its playhead in a floating window.
#include "host/EditViewer.h"

#include <algorithm>

#include "host/Canvas.h"
#include "host/CurrentProject.h"
#include "host/Edit.h"
#include "host/GlibDraw.h"
#include "host/GlobManager.h"
#include "host/ImageDescription.h"
#include "host/StandardPanel.h"
#include "host/UifStd.h"
#include "host/VidRenderUtils.h"
#include "host/Vob.h"
#include "host/VobClient.h"
#include "host/VobManager.h"

namespace {

// The viewer: its title names the edit, its user area shows the edit's picture at the playhead of
// its Vob, fitted with its shape kept; every published change redraws it.
class TileViewer : public StandardPanel, public VobClient {
public:
    TileViewer(const StandardPanel::InitArgs& args, const Cookie& cookie, Vob* vob, const String& variant)
        : StandardPanel(args), VobClient(cookie, vob, kNormalPriority, kManaged) {
        setResizable(true);
        setMovable(true);
        WString title = vob && vob->edit() ? vob->edit()->name() : WString(L"Viewer");
        if (!variant.empty())
            title += WString(L" (") + toWide(variant) + L")";
        setTitle(UIString(title, UIString::NoResource), UifStd::getTitleFont());
        addStandardWidgets(CloseButton);
    }
    const char* idstring() const override { return "TileViewer"; }

    void handleModifications(const EditModifications& mods, const VobModification& vobMod) override {
        update();
        VobClient::handleModifications(mods, vobMod);
    }

    void drawBackground() override {
        StandardPanel::drawBackground();
        Vob* v = vob();
        EditPtr edit = getEdit();
        const Zk::Box<int> ua = getUserArea();
        Glib::drawRect(canvas()->renderer(), Colour(0, 0, 0), ua);
        if (!v || !edit || ua.width() <= 0 || ua.height() <= 0)
            return;
        EditGraphIterator it(edit, 0, v->getCurrentTime(1), 10);
        if (!it.isValid())
            return;
        ShotVideoMetadata md = edit->getVideoMetadata();
        const double aspect = md.height > 0 ? double(md.width) / md.height : 16.0 / 9.0;
        int w = ua.width(), h = static_cast<int>(w / aspect);
        if (h > ua.height()) {
            h = ua.height();
            w = static_cast<int>(h * aspect);
        }
        md.width = std::max(w, 1);
        md.height = std::max(h, 1);
        Render::RenderContextRep context(it, md, Zk::CurrentProject::getIntermediateImageFormat(), 0, 1,
                                         true);
        Zk::Ptr<Zk::Image::Surface> still = Render::VidRenderUtils::renderStill(context, true);
        if (!still || still->empty())
            return;
        Glib::ImageDescription image;
        image.box.x1 = ua.x1 + (ua.width() - w) / 2;
        image.box.y1 = ua.y1 + (ua.height() - h) / 2;
        image.box.x2 = image.box.x1 + w;
        image.box.y2 = image.box.y1 + h;
        image.pixels = still->pixels();
        image.width = still->width();
        image.height = still->height();
        canvas()->renderer().renderPrimitive(image);
    }
};

} // namespace

Glob* makeEditViewer(const LightweightString<char>& kind, const Cookie& cookie, const XY<int>& pos,
                     double time, const LightweightString<char>& variant) {
    if (!cookie.valid())
        return nullptr;
    EditPtr edit = VobManager::instance().findEdit(cookie);
    if (!edit) {
        // A shot (a source or an effect graph) is viewed in the edit that holds it, from its start.
        for (const EditPtr& e : VobManager::instance().edits())
            for (int c = 0; !edit && c < e->numChans(); ++c)
                for (const CelEvent& ev : e->chan(c).cel->events())
                    if (ev.kind != CelEvent::Black && ev.strip == cookie) {
                        edit = e;
                        time += ev.start;
                        break;
                    }
        if (!edit)
            return nullptr;
    }
    // One Vob per viewed edit, in a group of its own, so that the viewer's playhead is its own.
    Zk::Ptr<Vob> vob = VobManager::instance().vobFor(edit, String("viewer:") + edit->cookie().asString());
    vob->storeCurrentTime(time);
    const int row = UifStd::getRowHeight();
    StandardPanel::InitArgs args(16 * row,
                                 9 * row + StandardPanel::calcSize(2, 0, StandardPanel::getDefaultBorder()));
    auto* viewer = new TileViewer(args, cookie, vob.get(), kind == "tilev" ? variant : kind + " " + variant);
    if (pos != XY<int>(0, 0))
        Glob::setupRootPos(viewer->canvas(), pos);
    GlobManager::instance().realize(viewer);
    return viewer;
}

void set_it(Glob* g) {
    if (is_good_glob_ptr(g))
        g->popToTop(true);
}
