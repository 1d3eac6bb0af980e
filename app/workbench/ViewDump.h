// ViewDump: what a graph view holds, written as JSON for people and tools that check a layout
// without reading pixels. Numbers are written in their shortest form that reads back to the same
// double.
#pragma once

#include <string>

class FXGraphView;

// The view's class name of a view node: FXGraphViewNode, FXGraphViewMatNode, ...
class FXGraphViewNode;
const char* viewNodeClassName(const FXGraphViewNode& node);

// Writes the dump of the views to `path`; false with a one-line reason when it can't be written.
bool writeViewDump(const FXGraphView* const* views, int count, const std::string& path, std::string& error);
