// CriticalSection: the host's lock for data shared between threads.
#pragma once

#include <mutex>

// A lock that the thread holding it may enter again: each enter() needs one leave(). A notifier
// holds one across a whole dispatch, so a callback may set the value that is being dispatched,
// or register and release clients, on the same thread without deadlock. Not copyable: a copy of
// an object that owns a section gets a section of its own.
class CriticalSection {
public:
    CriticalSection();
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;
    ~CriticalSection();

    void enter();
    void leave();

    // Holds the section for the lifetime of a scope, so that an unwinding scope still leaves it.
    class Scope {
    public:
        explicit Scope(CriticalSection& cs) : cs_(cs) { cs_.enter(); }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope() { cs_.leave(); }

    private:
        CriticalSection& cs_;
    };

private:
    std::recursive_mutex mutex_;
};
