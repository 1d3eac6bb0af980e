// RootStacker: lays out several roots in turn, each tree with its own TreeTidier, stacking the
// trees by their extents: in LeftToRight each next root goes below the tree above, at its left
// edge; in BottomToTop the trees stand side by side.
#pragma once

#include <vector>

#include "host/EditPtr.h"
#include "host/IdStamp.h"
#include "host/XY.h"
#include "host/ZkBox.h"

class NodeUIPosSource;

namespace RootStacker {

inline constexpr double kSpacing = 0.1875;       // node to parent, input to input
inline constexpr double kRootGapDown = 0.125;    // between trees stacked downward (LeftToRight)
inline constexpr double kRootGapAcross = 0.1875; // between trees side by side (BottomToTop)

// Lays out each root at `time` from `origin`, in order; returns each tree's extents. A root that
// yields nothing keeps its extents at the point it was given, so the next origin still moves by
// one gap. Positions are written without notification.
std::vector<Zk::Box<double>> tidyRoots(const EditPtr& edit, double time, const std::vector<IdStamp>& roots,
                                       XY<double> origin, NodeUIPosSource* source);

// The roots of the video graph at `time`: the channels that hold a root, then the tops of
// orphaned components.
std::vector<IdStamp> videoRoots(const EditPtr& edit, double time);

} // namespace RootStacker
