// NotifyWithDisable: a string notifier with a count of disables that its senders honour.
#pragma once

#include "host/Notifier.h"

// disabled_ counts nested disables. The notifier never looks at it: each sender tests it before
// it sends, so a disabled notifier still delivers what is sent on it. getNotify() names the
// notifier that carries this object's messages and count; a subclass may hand out another one
// to share it.
class NotifyWithDisable : public Notifier {
public:
    NotifyWithDisable() = default;
    NotifyWithDisable(const NotifyWithDisable&) = default;
    NotifyWithDisable& operator=(const NotifyWithDisable&) = default;
    ~NotifyWithDisable() override;

    virtual NotifyWithDisable& getNotify() { return *this; }

    void disable() { ++disabled_; }
    // Never lowers the count below 0.
    void enable() {
        if (disabled_ > 0)
            --disabled_;
    }
    bool isDisabled() const { return disabled_ > 0; }

    int disabled_ = 0;
};
