// TreeTidier: lays out one tree of the effect graph by levels. Every node stands a fixed distance
// behind its parent, at its input's slot among the parent's tracks; one repair pass per level
// opens a gap where nodes of different parents collide. Used once: construct, run, read the
// extents.
#pragma once

#include "host/EditGraphIterator.h"
#include "host/ZkBox.h"

class NodeUIPosSource;

class TreeTidier {
public:
    TreeTidier(NodeUIPosSource* source, double depthSpacing, double siblingSpacing);

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
