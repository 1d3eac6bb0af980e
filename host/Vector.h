// Vector: the host's growable array with virtual operations. The block holds default-constructed
// elements up to the capacity; growth doubles from the old capacity, or from 4.
#pragma once

#include <cstdint>
#include <utility>

template <class T>
class Vector {
public:
    Vector() = default;
    Vector(const Vector& o) { copyFrom(o); }
    Vector& operator=(const Vector& o) {
        if (this != &o) {
            clear();
            copyFrom(o);
        }
        return *this;
    }
    virtual ~Vector() { delete[] block_; }

    // `v` may be one of this vector's own elements: it is copied before the block can move.
    virtual unsigned append(const T& v) {
        T copy(v);
        unsigned at = count_;
        resize(count_ + 1);
        block_[at] = std::move(copy);
        return at;
    }
    virtual unsigned add(const T& v) { return append(v); }
    virtual bool find(const T& v, unsigned& index) const {
        for (unsigned i = 0; i < count_; ++i) {
            if (block_[i] == v) {
                index = i;
                return true;
            }
        }
        index = count_;
        return false;
    }
    virtual bool addUnique(const T& v, unsigned& index) {
        if (find(v, index))
            return false;
        insertAt(v, index);
        return true;
    }
    virtual void insertAt(const T& v, unsigned index) {
        T copy(v);
        if (index > count_)
            index = count_;
        resize(count_ + 1);
        for (unsigned i = count_ - 1; i > index; --i)
            block_[i] = std::move(block_[i - 1]);
        block_[index] = std::move(copy);
    }
    virtual bool removeAt(unsigned index) {
        if (index >= count_)
            return false;
        for (unsigned i = index; i + 1 < count_; ++i)
            block_[i] = std::move(block_[i + 1]);
        block_[count_ - 1] = T();
        --count_;
        return true;
    }
    virtual bool removeRange(unsigned from, unsigned to) {
        if (to > count_)
            to = count_;
        if (from >= to)
            return true;
        unsigned n = to - from;
        for (unsigned i = from; i + n < count_; ++i)
            block_[i] = std::move(block_[i + n]);
        for (unsigned i = count_ - n; i < count_; ++i)
            block_[i] = T();
        count_ -= n;
        return true;
    }
    virtual bool remove(const T& v) {
        unsigned index;
        if (!find(v, index))
            return false;
        return removeAt(index);
    }
    virtual void clear() {
        delete[] block_;
        block_ = nullptr;
        count_ = 0;
        capacity_ = 0;
    }
    virtual void takeFrom(Vector& o) {
        if (&o == this)
            return;
        delete[] block_;
        block_ = o.block_;
        count_ = o.count_;
        capacity_ = o.capacity_;
        o.block_ = nullptr;
        o.count_ = 0;
        o.capacity_ = 0;
    }

    // Sets the count, growing the block by the doubling rule; size 0 frees the block.
    void resize(unsigned n) {
        if (n == 0) {
            clear();
            return;
        }
        if (n > capacity_) {
            uint32_t cap = capacity_ ? capacity_ : 4;
            while (cap < n)
                cap *= 2;
            T* nb = new T[cap];
            for (unsigned i = 0; i < count_; ++i)
                nb[i] = std::move(block_[i]);
            delete[] block_;
            block_ = nb;
            capacity_ = cap;
        }
        count_ = n;
    }

    unsigned size() const { return count_; }
    unsigned capacity() const { return capacity_; }
    bool empty() const { return count_ == 0; }
    T& operator[](unsigned i) { return block_[i]; }
    const T& operator[](unsigned i) const { return block_[i]; }
    T* begin() { return block_; }
    T* end() { return block_ + count_; }
    const T* begin() const { return block_; }
    const T* end() const { return block_ + count_; }

private:
    void copyFrom(const Vector& o) {
        if (o.count_ == 0)
            return;
        resize(o.count_);
        for (unsigned i = 0; i < o.count_; ++i)
            block_[i] = o.block_[i];
    }

    T* block_ = nullptr;
    uint32_t count_ = 0;
    uint32_t capacity_ = 0;
};
