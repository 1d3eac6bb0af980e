// nodedesk-layout: prints the laid-out positions of an edit's video graph at a time, as JSON.
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "graphview/RootStacker.h"
#include "host/AliasedInputEffect.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/FXEditor.h"
#include "host/ImageImportEffect.h"
#include "host/MaterialUsageNode.h"
#include "refhost/core/TextQuote.h"
#include "refhost/edit/AnyEditFile.h"
#include "refhost/edit/EditFile.h"
#include "refhost/edit/EditPosSource.h"

namespace {

const char kUsage[] = "usage: nodedesk-layout EDIT [--time T] [--orientation LeftToRight|BottomToTop] "
                      "[--format json|dot]";

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

// Output in blocks: a large edit's text is never held whole.
class Out {
public:
    ~Out() { flush(); }
    Out& operator<<(std::string_view text) {
        buf_.append(text);
        if (buf_.size() > (1u << 16))
            flush();
        return *this;
    }
    Out& number(double v) {
        char b[32];
        auto r = std::to_chars(b, b + sizeof b, v);
        return *this << std::string_view(b, static_cast<size_t>(r.ptr - b));
    }
    Out& quoted(std::string_view text) {
        appendQuoted(buf_, text, "\\u%04x");
        if (buf_.size() > (1u << 16))
            flush();
        return *this;
    }
    // An id as "a.b.c", in quotes.
    Out& id(const IdStamp& id) {
        char b[40];
        char* p = b;
        *p++ = '"';
        // Each part takes at most 10 digits.
        p = std::to_chars(p, p + 10, id.a()).ptr;
        *p++ = '.';
        p = std::to_chars(p, p + 10, id.b()).ptr;
        *p++ = '.';
        p = std::to_chars(p, p + 10, id.c()).ptr;
        *p++ = '"';
        return *this << std::string_view(b, static_cast<size_t>(p - b));
    }
    void flush() {
        std::fwrite(buf_.data(), 1, buf_.size(), stdout);
        buf_.clear();
    }

private:
    std::string buf_;
};

// Ends the program once everything is written. Outside the sanitizers the edit and its records
// are not taken apart one by one: the system takes the memory back whole, which on a large edit
// saves a tenth of a second. Under them everything is let go as usual, so that leaks are found.
int finish(Out& out) {
    out.flush();
#if defined(__SANITIZE_ADDRESS__)
    return 0;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
    return 0;
#endif
#endif
    std::fflush(stdout);
    std::_Exit(0);
}

// Node names as UTF-8. Nodes read from one file share the text of a name that repeats, so each
// shared text is converted once; only so many are kept, for edits whose names all differ.
class Names {
public:
    std::string_view of(const WString& name) {
        auto it = known_.find(name.c_str());
        if (it != known_.end())
            return it->second;
        last_ = toUtf8(name).str();
        if (known_.size() < kMaxKept)
            return known_.emplace(name.c_str(), last_).first->second;
        return last_;
    }

private:
    static constexpr size_t kMaxKept = 1024;
    std::unordered_map<const wchar_t*, std::string> known_;
    std::string last_;
};

struct Placed {
    FXGraphNodeBase* node;
    size_t root;
    double x, y;
};

} // namespace

int main(int argc, char** argv) {
    std::string path;
    double time = NAN;
    std::string orientation = "BottomToTop";
    std::string format = "json";
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        if (a == "--help" || a == "-h") {
            std::puts(kUsage);
            return 0;
        }
        if (a == "--time" || a == "--orientation" || a == "--format") {
            if (i + 1 >= argc)
                return fail(a + " needs a value; " + kUsage);
            std::string v = argv[++i];
            if (a == "--time") {
                char* end = nullptr;
                time = std::strtod(v.c_str(), &end);
                if (v.empty() || *end != '\0' || !std::isfinite(time))
                    return fail("--time takes a number of seconds, not '" + v + "'");
            } else if (a == "--orientation") {
                if (v != "LeftToRight" && v != "BottomToTop")
                    return fail("--orientation takes LeftToRight or BottomToTop, not '" + v + "'");
                orientation = v;
            } else {
                if (v != "json" && v != "dot")
                    return fail("--format takes json or dot, not '" + v + "'");
                format = v;
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

    // The nodes of each tree, each listed under the first tree that reaches it.
    std::vector<Placed> placed;
    placed.reserve(source.records().size());
    for (size_t r = 0; r < roots.size(); ++r) {
        EditGraphIterator it = FXEditor::getIteratorFor(edit, roots[r], time, 9);
        Vector<Zk::Ptr<FXGraphNodeBase>> members;
        it.findAllComponents(members);
        for (const auto& n : members) {
            NodeUIPosRec* rec = source.getPosRecForNode(n->getId());
            if (!rec || rec->visitMark_ != 0)
                continue;
            rec->visitMark_ = 1;
            placed.push_back({n.get(), r, rec->x(), rec->y()});
        }
    }

    // What each input takes at `time`: a linked node, or the graph of the channel on its track.
    std::map<IdStamp, int, IdStampLess> chanIndex;
    for (int c = 0; c < edit->numChans(); ++c)
        chanIndex.emplace(edit->chan(c).id, c);
    auto inputOf = [&](const FXGraphNodeBase::Input& in) -> FXGraphNodeBase* {
        if (in.node)
            return in.node.get();
        auto c = in.track.valid() ? chanIndex.find(in.track) : chanIndex.end();
        if (c == chanIndex.end())
            return nullptr;
        const int ev = edit->eventAt(c->second, time);
        return ev < 0 ? nullptr : edit->chan(c->second).cel->events()[static_cast<size_t>(ev)].node.get();
    };

    Out out;
    Names names;
    if (format == "dot") {
        // Positions in points, pinned, so that a Graphviz tool draws the layout as it stands.
        out << "digraph layout {\n  node [shape=box];\n";
        for (const Placed& p : placed) {
            out << "  ";
            out.id(p.node->getId()) << " [label=";
            out.quoted(names.of(p.node->getName()));
            out << ", pos=\"";
            out.number(p.x * 72.0) << ",";
            out.number(p.y * 72.0) << "!\"];\n";
        }
        for (const Placed& p : placed)
            for (const auto& in : p.node->inputs())
                if (FXGraphNodeBase* from = inputOf(in)) {
                    out << "  ";
                    out.id(from->getId()) << " -> ";
                    out.id(p.node->getId()) << ";\n";
                }
        out << "}\n";
        return finish(out);
    }

    out << "{\n  \"edit\": ";
    out.quoted(path);
    out << ",\n  \"time\": ";
    out.number(time);
    out << ",\n  \"orientation\": ";
    out.quoted(orientation);
    out << ",\n  \"trees\": [";
    for (size_t r = 0; r < roots.size(); ++r) {
        const Zk::Box<double>& b = extents[r];
        out << (r ? ",\n    " : "\n    ") << "{\"root\": ";
        out.id(roots[r]);
        out << ", \"extents\": {\"minX\": ";
        out.number(b.x1) << ", \"minY\": ";
        out.number(b.y1) << ", \"maxX\": ";
        out.number(b.x2) << ", \"maxY\": ";
        out.number(b.y2) << "}}";
    }
    out << (roots.empty() ? "],\n  \"nodes\": [" : "\n  ],\n  \"nodes\": [");
    for (size_t i = 0; i < placed.size(); ++i) {
        const Placed& p = placed[i];
        out << (i ? ",\n    " : "\n    ") << "{\"id\": ";
        out.id(p.node->getId());
        out << ", \"kind\": ";
        out.quoted(kindOf(p.node));
        if (!p.node->tagTypeId().empty()) {
            out << ", \"tag\": ";
            out.quoted(p.node->tagTypeId().view());
        }
        out << ", \"name\": ";
        out.quoted(names.of(p.node->getName()));
        out << ", \"root\": ";
        out.id(roots[p.root]);
        out << ", \"x\": ";
        out.number(p.x) << ", \"y\": ";
        out.number(p.y) << ", \"inputs\": [";
        // The node each input takes at this time, or null for an open input.
        for (size_t k = 0; k < p.node->inputs().size(); ++k) {
            out << (k ? ", " : "");
            if (FXGraphNodeBase* from = inputOf(p.node->inputs()[k]))
                out.id(from->getId());
            else
                out << "null";
        }
        out << "]}";
    }
    out << (placed.empty() ? "]\n}\n" : "\n  ]\n}\n");
    return finish(out);
}
