// TransitStatus: the transport's state: how fast the playhead runs. A speed of 1024 is normal
// play forward; negative speeds run backward.
#pragma once

class TransitStatus {
public:
    static TransitStatus& manager();
    int speed() const { return speed_; }
    void setSpeed(int s) { speed_ = s; }
    // Told when connections are edited while the transport runs, so that it re-reads the graph.
    void graphChanged() { ++graphChanges_; }
    unsigned graphChanges() const { return graphChanges_; }

private:
    int speed_ = 0;
    unsigned graphChanges_ = 0;
};
