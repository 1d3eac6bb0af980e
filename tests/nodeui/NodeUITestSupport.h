// Helpers for the node UI record tests: edits with nodes, and clients that remember what they
// were told.
#pragma once

#include <string>
#include <vector>

#include "host/Edit.h"
#include "host/FXGraphNodeBase.h"
#include "nodeui/NodeUIManagerClient.h"
#include "nodeui/NodeUIRecBase.h"
#include "nodeui/NodeUIRecClient.h"
#include "values/ValClient.h"

// A live edit with the cookie E1.0.<n> and graph nodes 10.0.1 ... 10.0.<nodes>.
inline EditPtr makeEdit(uint32_t n, uint32_t nodes) {
    EditPtr edit(new Edit);
    edit->setCookie(Cookie(Cookie::EditKind, IdStamp(1, 0, n)));
    for (uint32_t i = 1; i <= nodes; ++i)
        edit->addNode(Zk::Ptr<FXGraphNodeBase>(new FXGraphNodeBase(IdStamp(10, 0, i))));
    return edit;
}

inline IdStamp node(uint32_t i) {
    return IdStamp(10, 0, i);
}

struct ManagerEvents : NodeUIManagerClient {
    struct Event {
        std::string what;
        NodeUIRecBase* rec;
        IdStamp idAtTheTime;
    };
    void newNodeRecNotify(NodeUIRecBase* rec) override { events.push_back({"added", rec, rec->getNodeId()}); }
    void nodeRecDeletedNotify(NodeUIRecBase* rec) override {
        // The record is still alive: reading it here is the point of the order.
        events.push_back({"deleted", rec, rec->getNodeId()});
    }
    void generalUpdateNotify(LightweightString<char> text) override {
        events.push_back({"general:" + text.str(), nullptr, IdStamp()});
    }
    std::vector<Event> events;
};

struct RecUpdates : NodeUIRecClient {
    void recUpdateNotify() override { ++count; }
    int count = 0;
};

// A plain client of one double server, counting changes.
struct ServerWatch : ValClient<double> {
    void valChanged(const ValServerEvent<double>& e) override { values.push_back(e.value); }
    std::vector<double> values;
};
