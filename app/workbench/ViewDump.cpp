// The graph view's state as JSON.
#include "app/workbench/ViewDump.h"

#include <rapidjson/ostreamwrapper.h>
#include <rapidjson/prettywriter.h>

#include <cerrno>
#include <cstring>
#include <fstream>

#include "graphnodes/FXGraphViewAliasNode.h"
#include "graphnodes/FXGraphViewColourMatteNode.h"
#include "graphnodes/FXGraphViewImageNode.h"
#include "graphnodes/FXGraphViewMatNode.h"
#include "graphnodes/FXGraphViewThumbNode.h"
#include "graphview/FXGraphView.h"
#include "host/Edit.h"
#include "nodeui/Orientation.h"

namespace {

using Writer = rapidjson::PrettyWriter<rapidjson::OStreamWrapper>;

void text(Writer& w, const char* key, const std::string& value) {
    w.Key(key);
    w.String(value.c_str(), static_cast<rapidjson::SizeType>(value.size()));
}

void number(Writer& w, const char* key, double value) {
    w.Key(key);
    w.Double(value);
}

void box(Writer& w, const char* key, double x1, double y1, double x2, double y2) {
    w.Key(key);
    w.StartArray();
    for (double v : {x1, y1, x2, y2})
        w.Double(v);
    w.EndArray();
}

std::string utf8(const WString& s) {
    return std::string(toUtf8(s).c_str());
}

void writeNode(Writer& w, const FXGraphViewNode& n) {
    w.StartObject();
    text(w, "id", n.pos_.getNodeId().asString().c_str());
    text(w, "class", viewNodeClassName(n));
    text(w, "name", utf8(n.getName()));
    number(w, "x", n.x());
    number(w, "y", n.y());
    w.Key("root");
    w.Int(n.pos_.visitMark_);
    box(w, "box", n.getLeft(), n.getBottom(), n.getRight(), n.getTop());
    box(w, "pixels", n.box_.x1, n.box_.y1, n.box_.x2, n.box_.y2);
    w.Key("highlighted");
    w.Bool(n.highlighted_);
    w.Key("onScreen");
    w.Bool(n.onScreen_);
    w.Key("thumbnail");
    w.Bool(n.hasThumbnail());
    w.Key("inputs");
    w.StartArray();
    for (int i = 0; i < n.numInputs(); ++i) {
        if (const FXGraphViewNode* far = n.getInputNode(i)) {
            const std::string id = far->pos_.getNodeId().asString().c_str();
            w.String(id.c_str(), static_cast<rapidjson::SizeType>(id.size()));
        } else {
            w.Null();
        }
    }
    w.EndArray();
    w.EndObject();
}

void writeView(Writer& w, const FXGraphView& v) {
    w.StartObject();
    text(w, "edit", v.getEditH() ? utf8(v.getEditH()->name()) : std::string());
    text(w, "primaryChannel", v.primaryChan().asString().c_str());
    number(w, "time", v.getEditTime());
    text(w, "orientation", orientationToString(v.getOrientation()).c_str());
    w.Key("manual");
    w.Bool(v.getManualPosMode());
    number(w, "zoom", v.getViewZoomValue());
    w.Key("centre");
    w.StartArray();
    w.Double(v.getViewCX());
    w.Double(v.getViewCY());
    w.EndArray();
    number(w, "physicalScale", v.physicalScale());
    const Zk::Box<int> win = v.getWindowPos();
    box(w, "window", win.x1, win.y1, win.x2, win.y2);
    number(w, "morphologyStart", v.morphologyStart());
    number(w, "morphologyEnd", v.morphologyEnd());
    w.Key("connectionDrag");
    w.Bool(static_cast<bool>(v.draggingIFNode()));
    w.Key("nodeDrag");
    w.Bool(static_cast<bool>(v.draggingNode()));
    w.Key("nodes");
    w.StartArray();
    for (const auto& n : v.nodes())
        writeNode(w, *n);
    w.EndArray();
    w.EndObject();
}

} // namespace

const char* viewNodeClassName(const FXGraphViewNode& n) {
    if (dynamic_cast<const FXGraphViewMatNode*>(&n))
        return "FXGraphViewMatNode";
    if (dynamic_cast<const FXGraphViewThumbNode*>(&n))
        return "FXGraphViewThumbNode";
    if (dynamic_cast<const FXGraphViewImageNode*>(&n))
        return "FXGraphViewImageNode";
    if (dynamic_cast<const FXGraphViewColourMatteNode*>(&n))
        return "FXGraphViewColourMatteNode";
    if (dynamic_cast<const FXGraphViewAliasNode*>(&n))
        return "FXGraphViewAliasNode";
    return "FXGraphViewNode";
}

bool writeViewDump(const FXGraphView* const* views, int count, const std::string& path, std::string& error) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) {
        error = "can't write " + path + ": " + std::strerror(errno);
        return false;
    }
    rapidjson::OStreamWrapper stream(out);
    Writer w(stream);
    w.SetIndent(' ', 2);
    w.StartObject();
    w.Key("views");
    w.StartArray();
    for (int i = 0; i < count; ++i)
        writeView(w, *views[i]);
    w.EndArray();
    w.EndObject();
    out << '\n';
    out.flush();
    if (!out) {
        error = "can't write " + path;
        return false;
    }
    return true;
}
