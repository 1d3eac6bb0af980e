// Helpers of the timeline import tests: where the sample timelines are, and a flat description
// of an edit, nested edits included, for comparing two edits whole.
#pragma once

#include <filesystem>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "host/AliasedInputEffect.h"
#include "host/CompoundEffect.h"
#include "host/Edit.h"
#include "host/ImageImportEffect.h"
#include "host/MaterialUsageNode.h"

namespace otiotest {

// The timelines written by other programs, beside the project's folders.
inline std::string sampleDir() {
    for (const char* rel : {"/../shared/otio", "/../../shared/otio"}) {
        std::filesystem::path p = std::filesystem::path(NODEDESK_SOURCE_DIR + std::string(rel));
        if (std::filesystem::is_directory(p))
            return std::filesystem::canonical(p).string();
    }
    return std::string();
}

inline std::vector<std::string> sampleFiles() {
    std::vector<std::string> out;
    std::string dir = sampleDir();
    if (dir.empty())
        return out;
    for (const auto& e : std::filesystem::directory_iterator(dir))
        if (e.path().extension() == ".otio")
            out.push_back(e.path().string());
    std::sort(out.begin(), out.end());
    return out;
}

inline std::string malformed(const std::string& name) {
    return std::string(NODEDESK_SOURCE_DIR) + "/tests/data/malformed/otio/" + name;
}

// Calls `f` on the edit and on every edit nested in its compound effects, depth first.
inline void forEachEdit(const Edit& edit, const std::function<void(const Edit&)>& f) {
    f(edit);
    for (const auto& [id, node] : edit.nodes())
        if (auto* c = dynamic_cast<const CompoundEffect*>(node.get()); c && c->innerEdit())
            forEachEdit(*c->innerEdit(), f);
}

inline void describeInto(const Edit& edit, std::ostringstream& s, int depth) {
    std::string pad(static_cast<size_t>(depth) * 2, ' ');
    s << pad << "edit " << toUtf8(edit.name()).str() << ' ' << edit.cookie().asString().str() << ' '
      << edit.getStartTime() << ".." << edit.getEndTime() << '\n';
    for (const auto& m : edit.materials())
        s << pad << "material " << m.cookie.asString().str() << ' ' << toUtf8(m.name).str() << ' '
          << m.source.str() << ' ' << m.file.str() << '\n';
    for (int i = 0; i < edit.numChans(); ++i) {
        const EditChannel& c = edit.chan(i);
        s << pad << "chan " << c.id.asString().str() << ' ' << c.type << ' ' << toUtf8(c.name).str() << '\n';
        for (const auto& e : c.cel->events())
            s << pad << "  " << e.start << ".." << e.end << " kind " << e.kind << ' '
              << e.strip.asString().str() << ' ' << (e.node ? e.node->getId().asString().str() : "-") << '\n';
    }
    for (const auto& [id, n] : edit.nodes()) {
        s << pad << "node " << id.asString().str() << ' ' << n->tagTypeId().str() << ' '
          << toUtf8(n->getName()).str() << " type " << n->chanType();
        if (auto* fx = dynamic_cast<const EffectInstance_opu4h5a4j*>(n.get())) {
            s << (fx->isEnabled() ? " on" : " off");
            for (const auto& [k, v] : fx->params())
                s << ' ' << k << '=' << v;
        }
        if (auto* m = dynamic_cast<const MaterialUsageNode*>(n.get()))
            s << " material " << m->material().asString().str() << ' ' << m->source().str();
        for (const auto& in : n->inputs())
            s << " [" << (in.node ? in.node->getId().asString().str() : "-") << ' '
              << in.track.asString().str() << (in.ghost ? " ghost" : "") << ']';
        s << '\n';
        if (auto* c = dynamic_cast<const CompoundEffect*>(n.get())) {
            s << pad << " offset " << c->timeOffset() << '\n';
            if (c->innerEdit())
                describeInto(*c->innerEdit(), s, depth + 1);
        }
    }
}

inline std::string describe(const Edit& edit) {
    std::ostringstream s;
    s.precision(17);
    describeInto(edit, s, 0);
    return s.str();
}

} // namespace otiotest
