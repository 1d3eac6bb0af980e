// nodedesk-layout: prints the laid-out positions of an edit's video graph at a time, as JSON.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include "graphview/RootStacker.h"
#include "host/AliasedInputEffect.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/FXEditor.h"
#include "host/ImageImportEffect.h"
#include "host/MaterialUsageNode.h"
#include "refhost/edit/AnyEditFile.h"
#include "refhost/edit/EditPosSource.h"
#include "refhost/json/Json.h"

namespace {

const char kUsage[] = "usage: nodedesk-layout EDIT [--time T] [--orientation LeftToRight|BottomToTop]";

int fail(const std::string& message) {
    std::fprintf(stderr, "nodedesk-layout: %s\n", message.c_str());
    return 2;
}

const char* kindOf(FXGraphNodeBase* n) {
    if (dynamic_cast<MaterialUsageNode*>(n))
        return "material";
    if (dynamic_cast<ImageImportEffect*>(n))
        return "image";
    if (dynamic_cast<AliasedInputEffect*>(n))
        return "alias";
    return "effect";
}

json::Value box(const Zk::Box<double>& b) {
    json::Value o = json::Value::object();
    o.set("minX", json::Value::number(b.x1));
    o.set("minY", json::Value::number(b.y1));
    o.set("maxX", json::Value::number(b.x2));
    o.set("maxY", json::Value::number(b.y2));
    return o;
}

} // namespace

int main(int argc, char** argv) {
    std::string path;
    double time = NAN;
    std::string orientation = "BottomToTop";
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        if (a == "--help" || a == "-h") {
            std::puts(kUsage);
            return 0;
        }
        if (a == "--time" || a == "--orientation") {
            if (i + 1 >= argc)
                return fail(a + " needs a value; " + kUsage);
            std::string v = argv[++i];
            if (a == "--time") {
                char* end = nullptr;
                time = std::strtod(v.c_str(), &end);
                if (v.empty() || *end != '\0' || !std::isfinite(time))
                    return fail("--time takes a number of seconds, not '" + v + "'");
            } else {
                if (v != "LeftToRight" && v != "BottomToTop")
                    return fail("--orientation takes LeftToRight or BottomToTop, not '" + v + "'");
                orientation = v;
            }
        } else if (!a.empty() && a[0] == '-') {
            return fail("unknown flag '" + a + "'; " + kUsage);
        } else if (path.empty()) {
            path = a;
        } else {
            return fail(std::string("one edit at a time; ") + kUsage);
        }
    }
    if (path.empty())
        return fail(kUsage);

    std::string error;
    EditPtr edit = AnyEditFile::open(path, error);
    if (!edit)
        return fail(error);
    if (std::isnan(time))
        time = edit->getStartTime();

    EditPosSource source(edit, orientationFromString(String(orientation)));
    std::vector<IdStamp> roots = RootStacker::videoRoots(edit, time);
    std::vector<Zk::Box<double>> extents =
        RootStacker::tidyRoots(edit, time, roots, XY<double>(0, 0), &source);

    json::Value out = json::Value::object();
    out.set("edit", json::Value::string(path));
    out.set("time", json::Value::number(time));
    out.set("orientation", json::Value::string(orientation));
    json::Value trees = json::Value::array();
    json::Value nodes = json::Value::array();
    for (size_t r = 0; r < roots.size(); ++r) {
        json::Value& t = trees.push(json::Value::object());
        t.set("root", json::Value::string(roots[r].asString().str()));
        t.set("extents", box(extents[r]));
        // The nodes of this tree, each listed under the first tree that reaches it.
        EditGraphIterator it = FXEditor::getIteratorFor(edit, roots[r], time, 9);
        Vector<Zk::Ptr<FXGraphNodeBase>> members;
        it.findAllComponents(members);
        for (const auto& n : members) {
            NodeUIPosRec* rec = source.getPosRecForNode(n->getId());
            if (!rec || rec->visitMark_ != 0)
                continue;
            rec->visitMark_ = 1;
            json::Value& o = nodes.push(json::Value::object());
            o.set("id", json::Value::string(n->getId().asString().str()));
            o.set("kind", json::Value::string(kindOf(n.get())));
            if (!n->tagTypeId().empty())
                o.set("tag", json::Value::string(n->tagTypeId().str()));
            o.set("name", json::Value::string(toUtf8(n->getName()).str()));
            o.set("root", json::Value::string(roots[r].asString().str()));
            o.set("x", json::Value::number(rec->x()));
            o.set("y", json::Value::number(rec->y()));
        }
    }
    out.set("trees", std::move(trees));
    out.set("nodes", std::move(nodes));
    std::cout << json::write(out);
    return 0;
}
