// Stacking of the trees of several roots.
#include "graphview/RootStacker.h"

#include "graphview/TreeTidier.h"
#include "host/FXEditor.h"
#include "nodeui/NodeUIPosSource.h"

namespace RootStacker {

std::vector<Zk::Box<double>> tidyRoots(const EditPtr& edit, double time, const std::vector<IdStamp>& roots,
                                       XY<double> origin, NodeUIPosSource* source) {
    std::vector<Zk::Box<double>> extents;
    extents.reserve(roots.size());
    for (const IdStamp& root : roots) {
        EditGraphIterator it = FXEditor::getIteratorFor(edit, root, time, 9);
        TreeTidier tidier(source, kSpacing, kSpacing);
        tidier.run(it, origin.x, origin.y);
        Zk::Box<double> box = tidier.getExtents();
        extents.push_back(box);
        if (source->getOrientation() == VidRouting::Orientations::LeftToRight)
            origin = XY<double>(box.x1, box.y1 - kRootGapDown);
        else if (source->getOrientation() == VidRouting::Orientations::BottomToTop)
            origin = XY<double>(box.x2 + kRootGapAcross, box.y1);
    }
    return extents;
}

std::vector<IdStamp> videoRoots(const EditPtr& edit, double time) {
    std::vector<IdStamp> out;
    out.reserve(50);
    findAllRootNodeChans(edit, time, out, kVideoChan);
    FXEditor::findOrphanedComponents(edit, time, out);
    return out;
}

} // namespace RootStacker
