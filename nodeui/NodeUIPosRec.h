// NodeUIPosRec: one node's position in graph space, and the scratch mark of the tree walks.
// The layout reads x() and y() and moves the record with setPos.
#pragma once

class NodeUIPosRec {
public:
    NodeUIPosRec() = default;
    virtual ~NodeUIPosRec() = default;

    double x() const { return x_; }
    double y() const { return y_; }
    // Does nothing if both values equal the present ones; else stores both. With `notify`
    // false nothing is sent to the record's clients.
    void setPos(double x, double y, bool notify) {
        (void)notify;
        if (x == x_ && y == y_)
            return;
        x_ = x;
        y_ = y;
    }

    int visitMark_ = 0;

private:
    double x_ = 0.0;
    double y_ = 0.0;
};
