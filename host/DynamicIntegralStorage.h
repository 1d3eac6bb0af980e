// DynamicIntegralStorage: an integer of type Big stored in the width of Small while it fits,
// else as the largest Small followed by the value in the width of Big.
#pragma once

#include <limits>
#include <type_traits>

#include "host/DynamicIntegralStorageBase.h"
#include "host/PStream.h"
#include "host/StreamFile.h"

// A read that meets the end of the file leaves the value as it was.
template <class Small, class Big>
class DynamicIntegralStorage : public DynamicIntegralStorageBase {
    static_assert(std::is_unsigned_v<Small> && std::is_unsigned_v<Big> && sizeof(Small) < sizeof(Big));

public:
    static constexpr Big escape = std::numeric_limits<Small>::max();

    explicit DynamicIntegralStorage(Big v = 0) : value(v) {}

    void write(PStream& s) const override {
        if (value < escape) {
            put<Small>(s, static_cast<Small>(value));
        } else {
            put<Small>(s, static_cast<Small>(escape));
            put<Big>(s, value);
        }
    }

    void read(PStream& s) override {
        Small small = 0;
        if (!get<Small>(s, small))
            return;
        if (small < escape) {
            value = small;
            return;
        }
        Big big = 0;
        if (get<Big>(s, big))
            value = big;
    }

    Big value;

private:
    template <class T>
    static void put(PStream& s, T v) {
        if constexpr (sizeof(T) == 1)
            s.file->setCookedChar(static_cast<char>(v));
        else if constexpr (sizeof(T) == 2)
            s.file->setUnsignedShort(v);
        else
            s.file->setUnsignedLong(v);
    }
    template <class T>
    static bool get(PStream& s, T& v) {
        if constexpr (sizeof(T) == 1) {
            unsigned char c = 0;
            bool ok = s.file->getUnsignedChar(c);
            v = c;
            return ok;
        } else if constexpr (sizeof(T) == 2) {
            unsigned short x = 0;
            bool ok = s.file->getUnsignedShort(x);
            v = x;
            return ok;
        } else {
            unsigned x = 0;
            bool ok = s.file->getUnsignedLong(x);
            v = x;
            return ok;
        }
    }
};
