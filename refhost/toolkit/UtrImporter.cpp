// The importer of rendered effects: an effect's picture becomes an imported image in its place.
#include "host/UtrImporter.h"

#include <QDir>
#include <QImage>

#include "host/Edit.h"
#include "host/EditGraphIterator.h"
#include "host/EditorPreferences.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/GlobManager.h"
#include "host/ImageImportEffect.h"
#include "host/PushButton.h"
#include "host/StandardPanel.h"
#include "host/TextBox.h"
#include "host/UifStd.h"
#include "host/VidRenderUtils.h"
#include "host/Vob.h"
#include "host/VobManager.h"
#include "refhost/notify/FunctionCallback.h"

namespace {

// Writes the picture as a PNG file in the configuration folder's "renders" folder.
String savePicture(const Zk::Image::Surface& still, const IdStamp& id) {
    const QString dir = QString::fromUtf8(EditorPreferences::configDir().c_str()) + "/renders";
    if (!QDir().mkpath(dir))
        return String();
    QImage image(still.width(), still.height(), QImage::Format_ARGB32);
    for (int y = 0; y < still.height(); ++y)
        for (int x = 0; x < still.width(); ++x)
            image.setPixel(x, y, still.pixel(x, y));
    const QString path = dir + "/" + QString::fromUtf8(id.asString().c_str()) + ".png";
    return image.save(path, "PNG") ? String(path.toUtf8().toStdString()) : String();
}

} // namespace

bool UtrImporter::importRender(Vob* vob, const EditGraphIterator& at) {
    EditPtr edit = at.getCurrentPosEdit();
    Zk::Ptr<FXGraphNodeBase> node = at.getNode(-1);
    if (!vob || !edit || !Zk::dynamicCast<EffectInstance_opu4h5a4j>(node))
        return false;
    ShotVideoMetadata md = edit->getVideoMetadata();
    Render::RenderContextRep context(at, md, 0, 0, 1, true);
    Zk::Ptr<Zk::Image::Surface> still = Render::VidRenderUtils::renderStill(context, true);
    if (!still || still->empty())
        return false;
    const String file = savePicture(*still, node->getId());
    if (file.empty())
        return false;

    EasyBackup step(edit);
    auto image = Zk::make<ImageImportEffect>(edit->newId());
    image->setName(node->getName().empty() ? WString(L"Rendered effect") : node->getName() + L" (rendered)");
    image->setChanType(node->chanType());
    image->setFile(file);
    edit->addNode(image);
    for (const auto& [id, n] : edit->nodes())
        for (auto& in : n->inputs())
            if (in.node == node) {
                in.node = image;
                n->noteChanged();
            }
    for (int c = 0; c < edit->numChans(); ++c)
        for (auto& ev : edit->chan(c).cel->events())
            if (ev.node == node) {
                ev.node = image;
                ev.kind = CelEvent::Graph;
                ev.strip = Cookie(Cookie::EffectGraphKind, image->getId());
            }
    EditModifications mods{EditModification(kModEffectApplied, 0)};
    mods.add(EditModification(5));
    edit->addModification(mods, true);
    return true;
}

Glob* UtrImporter::createImporter(Vob* vob, EditGraphIterator& it, const Palette& palette) {
    Zk::Ptr<FXGraphNodeBase> node = it.getNode(-1);
    if (!vob || !it.isValid() || !Zk::dynamicCast<EffectInstance_opu4h5a4j>(node))
        return nullptr;
    const int row = UifStd::getRowHeight(), gap = UifStd::getWidgetGap();
    StandardPanel::InitArgs args(
        24 * row, 4 * (row + gap) + StandardPanel::calcSize(2, 0, StandardPanel::getDefaultBorder()));
    args.palette = palette;
    auto* panel = new StandardPanel(args);
    panel->setMovable(true);
    panel->setTitle(UIString(L"Import render"), UifStd::getTitleFont());
    panel->addStandardWidgets(StandardPanel::CloseButton);
    const auto range = it.getRange(-1, CelEventPair::kEventRange);
    WString name = node->getName().empty() ? toWide(node->tagTypeId()) : node->getName();
    panel->addChild(new TextBox(TextBox::InitArgs(UIString(WString(L"Effect: ") + name, UIString::NoResource),
                                                  false, 22 * row, row)),
                    Glob::UserTopLeft(gap, gap));
    panel->addChild(new TextBox(TextBox::InitArgs(
                        UIString(toWide(stringFormat("Rendered at %.3f s, event %.3f s to %.3f s",
                                                     it.getTime(), range.lo, range.hi)),
                                 UIString::NoResource),
                        false, 22 * row, row)),
                    Glob::UserTopLeft(gap, 2 * gap + row));
    const String state = it.getState().asString();
    Button::InitArgs button(UIString(L"Import"),
                            WidgetCallback(refhost::makeCallback([vob, state, panel](const NotifyMsg&) {
                                if (!importRender(vob, EditGraphIterator(state)))
                                    return 0;
                                GlobManager::instance().requestDeletion(panel);
                                return 1;
                            })));
    panel->addChild(new PushButton(button), Glob::BottomRight(gap, gap));
    Glob::setupRootPos(panel->canvas(), glib_getPosForWindow(panel->width(), panel->height()));
    GlobManager::instance().realize(panel);
    return panel;
}
