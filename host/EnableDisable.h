// EnableDisable: a nesting count of disables.
#pragma once

// Enabled while the count is not above zero. Each disable() raises the count by one and each
// enable() lowers it by one, never below zero.
class EnableDisable {
public:
    void disable() { ++disables_; }
    void enable() {
        if (disables_ > 0)
            --disables_;
    }
    bool isEnabled() const { return disables_ <= 0; }
    int disableCount() const { return disables_; }

private:
    int disables_ = 0;
};
