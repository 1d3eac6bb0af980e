// NotifiableBase: the root of the clients of string messages.
#pragma once

// Lets a client of string messages be held and destroyed without knowing its kind.
class NotifiableBase {
public:
    virtual ~NotifiableBase() = default;
};
