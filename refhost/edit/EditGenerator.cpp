// Generated edits.
#include "refhost/edit/EditGenerator.h"

#include <random>
#include <set>
#include <sstream>
#include <vector>

#include "host/EffectInstance_opu4h5a4j.h"
#include "host/MaterialUsageNode.h"

namespace {

const char* const kTags[] = {"PixShader:Blur:gaussian.fx", "PixShader:Colour:correct.fx", "PixShader:Mix:over.fx",
                             "PixShader:Geometry:crop.fx", "PixShader:Mattes:flatcol.fx"};

} // namespace

EditPtr generateEdit(const GeneratorOptions& o) {
    EditPtr edit(new Edit());
    edit->setName(L"Generated");
    edit->setCookie(Cookie(Cookie::EditKind, IdStamp(9, 9, o.seed)));
    EditMaterial mat;
    mat.cookie = Cookie(Cookie::MaterialKind, IdStamp(9, 0, 1));
    mat.name = L"Generated source";
    edit->materials().push_back(mat);

    std::mt19937 rng(o.seed);
    const uint32_t n = o.nodes < 1 ? 1 : o.nodes;
    std::vector<Zk::Ptr<FXGraphNodeBase>> nodes;
    std::vector<std::pair<FXGraphNodeBase*, unsigned>> open; // input slots still to fill
    std::vector<uint32_t> leaves;                             // nodes fit to be shared

    auto makeEffect = [&](uint32_t i, unsigned inputs) {
        auto fx = Zk::make<EffectInstance_opu4h5a4j>(IdStamp(1, 0, i + 1));
        fx->setTagTypeId(kTags[i % 5]);
        fx->setName(L"Effect");
        fx->setNumInputs(inputs);
        for (unsigned k = 0; k < inputs; ++k) {
            fx->input(k).track = edit->newTrackId();
            open.emplace_back(fx.get(), k);
        }
        return Zk::Ptr<FXGraphNodeBase>(fx);
    };

    nodes.push_back(makeEffect(0, o.chain ? 1 : 1 + rng() % o.maxInputs));
    for (uint32_t i = 1; i < n; ++i) {
        // A random open slot takes the new node; in a chain the only slot does.
        size_t pick = o.chain ? 0 : rng() % open.size();
        auto [parent, input] = open[pick];
        open[pick] = open.back();
        open.pop_back();

        Zk::Ptr<FXGraphNodeBase> node;
        const uint32_t left = n - i - 1;
        const bool leaf = !o.chain && open.size() > left ? true : (!o.chain && open.size() > 1 && rng() % 3 == 0);
        if (leaf || left == 0) {
            auto m = Zk::make<MaterialUsageNode>(IdStamp(1, 0, i + 1), mat.cookie);
            m->setName(L"Source");
            node = m;
            leaves.push_back(i);
        } else {
            unsigned inputs = o.chain ? 1 : 1 + rng() % o.maxInputs;
            node = makeEffect(i, inputs);
        }
        parent->input(input).node = node;
        nodes.push_back(node);
    }
    // Fill what is still open: with a shared leaf where asked, else leave the slot open.
    std::uniform_real_distribution<double> coin(0.0, 1.0);
    for (auto& [parent, input] : open)
        if (!leaves.empty() && coin(rng) < o.sharedLinks)
            parent->input(input).node = nodes[leaves[rng() % leaves.size()]];
    // Extra links from effects with a free slot to existing leaves, the graphs' shared nodes.
    if (o.sharedLinks > 0 && !leaves.empty()) {
        for (auto& node : nodes) {
            if (node->getNumInputs() == 0 || coin(rng) >= o.sharedLinks)
                continue;
            auto& ins = node->inputs();
            FXGraphNodeBase::Input extra;
            extra.track = edit->newTrackId();
            extra.node = nodes[leaves[rng() % leaves.size()]];
            ins.push_back(extra);
        }
    }
    for (auto& node : nodes)
        edit->addNode(node);

    EditChannel ch;
    ch.id = IdStamp(2, 0, 1);
    ch.type = kVideoChan;
    ch.name = L"V1";
    ch.cel = Zk::make<Cel>();
    CelEvent ev;
    ev.start = 0;
    ev.end = 10;
    ev.kind = CelEvent::Graph;
    ev.strip = Cookie(Cookie::EffectGraphKind, nodes[0]->getId());
    ev.node = nodes[0];
    ch.cel->events().push_back(ev);
    edit->addChannel(std::move(ch));
    edit->setTimes(0, 10);
    return edit;
}

std::string graphToDot(const Edit& edit) {
    std::ostringstream out;
    out << "digraph g {\n";
    for (const auto& [id, node] : edit.nodes()) {
        out << "n" << id.c() << ";\n";
        for (const auto& in : node->inputs())
            if (in.node)
                out << "n" << in.node->getId().c() << " -> n" << id.c() << ";\n";
    }
    out << "}\n";
    return out.str();
}
