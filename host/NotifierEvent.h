// NotifierEvent: a typed event that carries one value to the listeners of a notifier.
#pragma once

template <class T>
struct NotifierEvent {
    T value;
};
