// ValServerEvent: what a value server tells its clients.
#pragma once

// A copy of the server's value at the moment of sending, what happened to it, and a code handed
// through from the sender (every sender in this library passes 4).
template <class T>
struct ValServerEvent {
    enum Kind { kChanged = 0, kAboutToChange = 1, kDestroyed = 2 };

    T value;
    int kind;
    int detail;
};
