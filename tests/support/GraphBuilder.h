// GraphBuilder: builds small edits in code for tests: channels, effects, materials, links.
#pragma once

#include "host/Edit.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/MaterialUsageNode.h"

class GraphBuilder {
public:
    GraphBuilder() : edit(new Edit()) { edit->setTimes(0, 100); }

    int channel(const wchar_t* name, EditChanType type = kVideoChan) {
        EditChannel c;
        c.id = IdStamp(100, 0, static_cast<uint32_t>(edit->numChans() + 1));
        c.type = type;
        c.name = name;
        return edit->addChannel(c);
    }
    IdStamp chanId(int chan) const { return edit->chan(chan).id; }

    // An effect with `inputs` slots, each with an internal track of its own.
    Zk::Ptr<EffectInstance_opu4h5a4j> effect(uint32_t n, unsigned inputs, const char* tag = "PixShader:Test") {
        auto fx = Zk::make<EffectInstance_opu4h5a4j>(IdStamp(1, 0, n));
        fx->setTagTypeId(tag);
        fx->setNumInputs(inputs);
        for (unsigned i = 0; i < inputs; ++i)
            fx->input(i).track = edit->newTrackId();
        edit->addNode(fx);
        return fx;
    }
    Zk::Ptr<MaterialUsageNode> material(uint32_t n) {
        auto m = Zk::make<MaterialUsageNode>(IdStamp(1, 0, n), Cookie(Cookie::MaterialKind, IdStamp(3, 0, 1)));
        edit->addNode(m);
        return m;
    }
    static void link(const Zk::Ptr<EffectInstance_opu4h5a4j>& parent, unsigned input,
                     const Zk::Ptr<FXGraphNodeBase>& child) {
        parent->input(input).node = child;
    }
    void feed(const Zk::Ptr<EffectInstance_opu4h5a4j>& parent, unsigned input, int chan) {
        parent->input(input).track = chanId(chan);
    }
    void graphEvent(int chan, double start, double end, const Zk::Ptr<FXGraphNodeBase>& root) {
        CelEvent e;
        e.start = start;
        e.end = end;
        e.kind = CelEvent::Graph;
        e.strip = Cookie(Cookie::EffectGraphKind, root->getId());
        e.node = root;
        edit->chan(chan).cel->events().push_back(e);
    }
    void materialEvent(int chan, double start, double end, const Zk::Ptr<MaterialUsageNode>& m) {
        CelEvent e;
        e.start = start;
        e.end = end;
        e.kind = CelEvent::Material;
        e.strip = m->material();
        e.node = m;
        edit->chan(chan).cel->events().push_back(e);
    }
    void blackEvent(int chan, double start, double end) {
        CelEvent e;
        e.start = start;
        e.end = end;
        edit->chan(chan).cel->events().push_back(e);
    }

    EditPtr edit;
};
