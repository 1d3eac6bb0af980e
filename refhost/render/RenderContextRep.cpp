// Render contexts and the key that tells when a still is stale.
#include "host/RenderContextRep.h"

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <set>
#include <system_error>

#include "host/AliasedInputEffect.h"
#include "host/CurrentProject.h"
#include "host/Edit.h"
#include "host/ImageImportEffect.h"
#include "host/MaterialUsageNode.h"
#include "refhost/render/RenderModule.h"

namespace Render {

namespace {

// The file a still reads, with its time and size, so that a file written anew makes the still
// stale.
void appendFile(std::string& key, const String& name) {
    key += "f:";
    key += name.str();
    const RenderModuleEntry* module = RenderModule::entry();
    const std::string path = module ? module->resolveImage(name.str()) : std::string();
    std::error_code ec;
    if (!path.empty()) {
        const auto when = std::filesystem::last_write_time(path, ec);
        const auto bytes = std::filesystem::file_size(path, ec);
        if (!ec) {
            char buf[64];
            std::snprintf(buf, sizeof buf, "@%lld/%llu",
                          static_cast<long long>(when.time_since_epoch().count()),
                          static_cast<unsigned long long>(bytes));
            key += buf;
        }
    }
    key += ';';
}

// Everything below a node that its pixels depend on: each node reached (through links, channels
// and aliases) with its change count, in the order of the walk, so that a change anywhere below
// or a different wiring gives a different text.
class GraphStateWriter {
public:
    explicit GraphStateWriter(std::string& key) : key_(key) {}

    void walk(const EditGraphIterator& it, int level) {
        const Zk::Ptr<FXGraphNodeBase> node = it.getNode(-1);
        if (!node) {
            key_ += "-;";
            return;
        }
        char buf[96];
        std::snprintf(buf, sizeof buf, "[%u.%u.%u#%u c%d", node->getId().a(), node->getId().b(),
                      node->getId().c(), node->changeCount(), it.getChanIndex(-1));
        key_ += buf;
        // A node met again on its own path is a cycle, and one met before elsewhere is already
        // told in full: only its name is written again.
        if (onPath_.count(node.get()) || !told_.insert(node.get()).second || level > kMaxStillDepth) {
            key_ += "]";
            return;
        }
        onPath_.insert(node.get());
        key_ += node->tagTypeId().str();
        if (auto* fx = dynamic_cast<const EffectInstance_opu4h5a4j*>(node.get())) {
            key_ += fx->isEnabled() ? "+" : "-";
            if (fx->isTransition()) {
                const auto range = it.getRange(-1, CelEventPair::kEventRange);
                std::snprintf(buf, sizeof buf, "r%a,%a", range.lo, range.hi);
                key_ += buf;
            }
        }
        if (auto* m = dynamic_cast<const MaterialUsageNode*>(node.get())) {
            key_ += "m:" + m->source().str() + ":" + m->material().asString().str() + ";";
            appendFile(key_, m->file());
        } else if (auto* img = dynamic_cast<const ImageImportEffect*>(node.get())) {
            appendFile(key_, img->file());
        } else if (auto* alias = dynamic_cast<const AliasedInputEffect*>(node.get())) {
            EditGraphIterator target(it.getEditH(), 0, it.getTime(), EditGraphIterator::optSearchFromTop);
            if (target.search(alias->aliasOf(), EditGraphIterator::searchWholeEdit))
                walk(target, level + 1);
        }
        for (unsigned i = 0; i < node->getNumInputs(); ++i) {
            EditGraphIterator child = it;
            if (child.moveToInput(i)) {
                walk(child, level + 1);
            } else {
                key_ += "0";
            }
        }
        onPath_.erase(node.get());
        key_ += "]";
    }

private:
    std::string& key_;
    std::set<const FXGraphNodeBase*> onPath_;
    std::set<const FXGraphNodeBase*> told_;
};

} // namespace

RenderContextRep::RenderContextRep(const EditGraphIterator& it, const ShotVideoMetadata& metadata, int format,
                                   int proxyLevel, int stereoMode, bool forStill)
    : it_(it), metadata_(metadata), format_(format), proxyLevel_(proxyLevel), stereoMode_(stereoMode),
      forStill_(forStill) {
    if (Zk::CurrentProject::getViewLUTEnabled())
        viewLUT_ = Zk::CurrentProject::getViewLUT();

    char buf[256];
    const Edit* edit = it_.getEditH().get();
    // Times within a microsecond are one frame.
    std::snprintf(buf, sizeof buf, "e%p/%s/%u t%lld %dx%d a%a r%a d%08x u%08x f%d p%d s%d %d v",
                  static_cast<const void*>(edit), edit ? edit->cookie().asString().c_str() : "-",
                  edit ? edit->changeCount() : 0u, static_cast<long long>(std::llround(it_.getTime() * 1e6)),
                  metadata.width, metadata.height, metadata.aspect, metadata.frameRate, metadata.dataFormat,
                  metadata.formatUID, format, proxyLevel, stereoMode, forStill ? 1 : 0);
    key_ = buf;
    key_ += viewLUT_.str();
    key_ += '|';
    if (!it_.isValid())
        return;
    // The path from the root names the node and how it was reached.
    for (int i = 0; i <= it_.depth(); ++i) {
        const IdStamp id = it_.getNodeId(i);
        std::snprintf(buf, sizeof buf, "%u.%u.%u/", id.a(), id.b(), id.c());
        key_ += buf;
    }
    key_ += '|';
    GraphStateWriter(key_).walk(it_, 0);
}

} // namespace Render
