// Zk::InternalRefCount and Zk::Ptr: intrusive shared ownership. The last release destroys the
// object through its virtual destructor.
#pragma once

#include <atomic>
#include <cstddef>
#include <type_traits>
#include <utility>

namespace Zk {

// The reference count lives in the object. A count of 0 means no Ptr holds it yet.
class InternalRefCount {
public:
    InternalRefCount() = default;
    InternalRefCount(const InternalRefCount&) : refs_(0) {}
    InternalRefCount& operator=(const InternalRefCount&) { return *this; }
    virtual ~InternalRefCount() = default;

    void addRef() const { refs_.fetch_add(1, std::memory_order_relaxed); }
    // Drops one reference; destroys the object when it was the last.
    void release() const {
        if (refs_.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }
    int refCount() const { return refs_.load(std::memory_order_relaxed); }

private:
    mutable std::atomic<int> refs_{0};
};

struct DtorTraits {};
struct InternalRefCountTraits {};

// A handle (the counted base) and the object word. Copying adds a reference.
template <class T, class D = DtorTraits, class R = InternalRefCountTraits>
class Ptr {
public:
    Ptr() = default;
    Ptr(std::nullptr_t) {}
    Ptr(T* p) { reset(p); }
    Ptr(const Ptr& o) { reset(o.obj_); }
    Ptr(Ptr&& o) noexcept : handle_(o.handle_), obj_(o.obj_) {
        o.handle_ = nullptr;
        o.obj_ = nullptr;
    }
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Ptr(const Ptr<U, D, R>& o) {
        reset(o.get());
    }
    ~Ptr() { drop(); }

    Ptr& operator=(const Ptr& o) {
        if (this != &o)
            reset(o.obj_);
        return *this;
    }
    Ptr& operator=(Ptr&& o) noexcept {
        if (this != &o) {
            drop();
            handle_ = o.handle_;
            obj_ = o.obj_;
            o.handle_ = nullptr;
            o.obj_ = nullptr;
        }
        return *this;
    }
    Ptr& operator=(T* p) {
        reset(p);
        return *this;
    }

    void reset(T* p = nullptr) {
        const InternalRefCount* h = p ? static_cast<const InternalRefCount*>(p) : nullptr;
        if (h)
            h->addRef();
        drop();
        handle_ = h;
        obj_ = p;
    }

    T* get() const { return obj_; }
    T* operator->() const { return obj_; }
    T& operator*() const { return *obj_; }
    explicit operator bool() const { return obj_ != nullptr; }
    bool operator==(const Ptr& o) const { return obj_ == o.obj_; }
    bool operator==(std::nullptr_t) const { return obj_ == nullptr; }
    bool operator==(const T* p) const { return obj_ == p; }

private:
    void drop() {
        const InternalRefCount* h = handle_;
        handle_ = nullptr;
        obj_ = nullptr;
        if (h)
            h->release();
    }

    const InternalRefCount* handle_ = nullptr;
    T* obj_ = nullptr;
};

// A checked down-cast that shares ownership; null when the object is not a U.
template <class U, class T>
Ptr<U> dynamicCast(const Ptr<T>& p) {
    return Ptr<U>(dynamic_cast<U*>(p.get()));
}

template <class T, class... Args>
Ptr<T> make(Args&&... args) {
    return Ptr<T>(new T(std::forward<Args>(args)...));
}

} // namespace Zk
