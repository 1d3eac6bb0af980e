// TreeTidierReference: the first tree tidier, kept beside TreeTidier as the yardstick its
// placements are compared with, node for node, and as the benchmarks' baseline. It writes every
// position through the records after each repair. Same use as TreeTidier: construct, run, read the
// extents.
#pragma once

#include "host/EditGraphIterator.h"
#include "host/ZkBox.h"

class NodeUIPosSource;

class TreeTidierReference {
public:
    TreeTidierReference(NodeUIPosSource* source, double depthSpacing, double siblingSpacing);

    // Lays out the tree under the iterator's node with the root at (x, y). False, with no
    // position changed and the extents left at the point, when the root is missing or has no
    // record.
    bool run(EditGraphIterator& iterator, double x, double y);
    // The extents of the node centres of the last run.
    Zk::Box<double, Zk::BottomUpTraits> getExtents() const;

    double depthSpacing;
    double siblingSpacing;
    double minX = 0.0;
    double minY = 0.0;
    double maxX = 0.0;
    double maxY = 0.0;
    double originX = 0.0;
    double originY = 0.0;
    NodeUIPosSource* source;
};
