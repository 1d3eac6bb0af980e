// Cel: the time line of one channel, a run of events from the edit's start. Each event is black,
// a source material, or an effect graph; gaps read as black.
#pragma once

#include <vector>

#include "host/Cookie.h"
#include "host/FXGraphNodeBase.h"

struct CelEvent {
    enum Kind { Black, Material, Graph };

    double start = 0.0;
    double end = 0.0;
    Kind kind = Black;
    Cookie strip;                  // what the event holds; an effect graph's cookie for Graph
    Zk::Ptr<FXGraphNodeBase> node; // the MaterialUsageNode or the graph's root node
};

class Cel : public iObject {
public:
    // The end of the last event; 0 for an empty channel.
    double get_end_time() const { return events_.empty() ? 0.0 : events_.back().end; }
    // The event whose half-open span [start, end) holds `time`, or -1.
    int eventIndexAt(double time) const;

    std::vector<CelEvent>& events() { return events_; }
    const std::vector<CelEvent>& events() const { return events_; }

private:
    std::vector<CelEvent> events_;
};
