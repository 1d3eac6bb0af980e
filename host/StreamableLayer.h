// StreamableLayer<X>: the one layer algorithm of the stream format, shared by every streamable
// class through the members that StreamableMembers.h generates: writing a layer with its sizes
// written back in place, reading one with all its checks, names, building, cloning and assigning.
#pragma once

#include <algorithm>
#include <cstdint>
#include <type_traits>
#include <typeinfo>

#include "host/DynamicIntegralStorage.h"
#include "host/Log.h"
#include "host/PStream.h"
#include "host/PStreamObserver.h"
#include "host/StreamFile.h"
#include "host/Streamable.h"

// A type's plain name: its run-time name with every "struct " and "class " taken out.
String plainTypeName(const std::type_info& type);

template <class X>
struct StreamableLayer {
    using Base = typename X::STRM_Base;
    using eStatus = StreamableTraitsBase::eStatus;
    using PackStack = StreamableTraitsBase::PackStack;
    static constexpr bool isRoot = std::is_void_v<Base>;
    static constexpr unsigned noSize = 0xFFFFFFFFu;

    static String plainName() {
        static const String name = plainTypeName(typeid(X));
        return name;
    }

    static String subHierarchyName(bool a, bool shortNames) {
        String out;
        if constexpr (!isRoot)
            out = Base::subHierarchyName(a, shortNames);
        if (!out.empty())
            out += ".";
        out += shortNames ? X::shortLayerName() : X::layerName();
        return out;
    }

    static void buildHierarchyName(String& out, bool a, bool shortNames) {
        String name = shortNames ? X::shortLayerName() : X::layerName();
        out = out.empty() ? name : name + "." + out;
        if constexpr (!isRoot)
            StreamableLayer<Base>::buildHierarchyName(out, a, shortNames);
    }

    // --- packing -------------------------------------------------------------------------------

    static eStatus hierarchyPack(const X* obj, PStream& s) {
        PackStack stack;
        return X::STRM_layerPack(obj, s, &stack);
    }

    // Pushes this layer's writer; the root, whose writer ends at the front, begins the writing.
    static eStatus layerPack(const X* obj, PStream& s, PackStack* stack) {
        stack->push_front({&writeLayer, obj});
        if constexpr (isRoot) {
            auto front = stack->front();
            return front.writer(front.object, s, stack);
        } else {
            return Base::STRM_layerPack(obj, s, stack);
        }
    }

    static eStatus writeLayer(const Streamable* object, PStream& s, PackStack* stack) {
        const X* obj = static_cast<const X*>(object);
        stack->pop_front();
        StreamFile& f = *s.file;
        const unsigned start = f.position();
        obj->X::revisionMajor(1);
        obj->X::revisionMinor(0);
        writeHeader(obj, s, noSize, noSize);
        const unsigned bodyStart = f.position();
        obj->X::pack(s);
        const unsigned layerEnd = f.position();
        if (!stack->empty()) {
            auto front = stack->front();
            eStatus st = front.writer(front.object, s, stack);
            if (!StreamableTraitsBase::goesOn(st))
                return st;
        }
        const unsigned chunkEnd = f.position();
        f.position(start);
        writeHeader(obj, s, layerEnd - bodyStart, chunkEnd - bodyStart);
        f.position(chunkEnd);
        return s.inError() ? StreamableTraitsBase::statusFailed : StreamableTraitsBase::statusPacked;
    }

    // The short name, made once: every object of a stream writes and checks it.
    static const String& shortName() {
        static const String name = X::shortLayerName();
        return name;
    }

    // The header in one write: the short name with its length, the revisions, the sizes.
    static void writeHeader(const X* obj, PStream& s, unsigned layerSize, unsigned chunkSize) {
        const String& name = shortName();
        char header[64];
        if (name.size() > sizeof header - 14) {
            s << name;
            s.file->setCookedChar(static_cast<char>(obj->X::revisionMajor()));
            s.file->setCookedChar(static_cast<char>(obj->X::revisionMinor()));
            s.file->setUnsignedLong(layerSize);
            s.file->setUnsignedLong(chunkSize);
            return;
        }
        auto putLong = [](char* at, uint32_t v) {
            for (int i = 0; i < 4; ++i)
                at[i] = static_cast<char>(v >> (8 * i));
        };
        const uint32_t n = static_cast<uint32_t>(name.size());
        putLong(header, n);
        std::copy(name.c_str(), name.c_str() + n, header + 4);
        header[4 + n] = static_cast<char>(obj->X::revisionMajor());
        header[5 + n] = static_cast<char>(obj->X::revisionMinor());
        putLong(header + 6 + n, layerSize);
        putLong(header + 10 + n, chunkSize);
        s.file->setBytes(header, 14 + n);
    }

    // --- unpacking -----------------------------------------------------------------------------

    static eStatus hierarchyUnpack(X* obj, PStream& s) {
        if (s.observer)
            s.observer->objectBegin(obj->hierarchyName(false, false), s.file->position());
        eStatus st = X::STRM_layerUnpack(obj, s);
        if (s.observer)
            s.observer->objectEnd(st, s.file->position());
        return st;
    }

    static eStatus layerUnpack(X* obj, PStream& s) {
        if constexpr (!isRoot) {
            eStatus st = Base::STRM_layerUnpack(obj, s);
            if (!StreamableTraitsBase::goesOn(st))
                return st;
        }
        return readLayer(obj, s);
    }

    // As reading a string: a name that is this layer's own shares the text made once, so that
    // no text is made per object.
    static void readName(PStream& s, String& out) {
        StreamFile& f = *s.file;
        unsigned n = 0;
        if (!f.getUnsignedLong(n))
            return;
        const String& own = shortName();
        if (n == own.size() && f.remaining() >= n &&
            std::equal(own.c_str(), own.c_str() + n, f.bytes().data() + f.position())) {
            out = own;
            f.position(f.position() + n);
            return;
        }
        std::string text;
        if (f.getBytes(text, n))
            out = String(std::move(text));
    }

    static eStatus readLayer(X* obj, PStream& s) {
        StreamFile& f = *s.file;
        PStreamObserver::LayerHeader h;
        h.start = f.position();
        int format = s.formatVersion;
        if (!f.eof())
            readName(s, h.shortName);

        if (format == 1) {
            DynamicIntegralStorage<unsigned char, unsigned short> major, minor;
            if (!f.eof())
                s >> major;
            if (!f.eof())
                s >> minor;
            if (major.value >= 256)
                return oversized(s, " Strm1.0 Object has oversized major rev (", h.shortName);
            if (minor.value > 255)
                return oversized(s, " Strm1.0 Object has oversized minor rev (", h.shortName);
            h.major = major.value;
            h.minor = minor.value;
        } else if (format == 2) {
            unsigned char major = 0, minor = 0;
            if (!f.eof())
                f.getUnsignedChar(major);
            if (!f.eof())
                f.getUnsignedChar(minor);
            h.major = major;
            h.minor = minor;
        } else {
            return unknownFormat(s);
        }

        // The root layer's revisions were read in the old format; its major revision is the
        // format of everything after them.
        if (h.shortName == "$" || h.shortName == "Streamable") {
            s.formatVersion = static_cast<int>(h.major);
            format = s.formatVersion;
        }

        h.layerSize = noSize;
        h.chunkSize = noSize;
        if (format == 1) {
            DynamicIntegralStorage<unsigned short, unsigned int> layerSize(noSize), chunkSize(noSize);
            if (!f.eof())
                s >> layerSize;
            if (!f.eof())
                s >> chunkSize;
            h.layerSize = layerSize.value;
            h.chunkSize = chunkSize.value;
        } else if (format == 2) {
            if (!f.eof())
                f.getUnsignedLong(h.layerSize);
            if (!f.eof())
                f.getUnsignedLong(h.chunkSize);
        } else {
            return unknownFormat(s);
        }

        h.bodyStart = f.position();
        h.format = format;
        if (s.observer)
            s.observer->layerHeader(h);
        if (f.eof() && (h.layerSize != 0 || h.chunkSize != 0)) {
            s.errors << "Unexpected end-of-file while unpacking " << obj->hierarchyName(false, false)
                     << ", layer " << X::layerName() << ".";
            return StreamableTraitsBase::statusEndOfFile;
        }
        // Positions are 32-bit: an end past the largest one wraps round. A header that still
        // holds the writer's placeholders thus ends one byte before its body, and its reading
        // is an overread.
        const unsigned layerEnd = h.bodyStart + h.layerSize;
        const unsigned chunkEnd = h.bodyStart + h.chunkSize;
        if (h.layerSize == 0)
            return StreamableTraitsBase::statusUnpacked;

        if (!s.inError() && !h.shortName.empty()) {
            if (h.shortName != shortName() && h.shortName != X::layerName()) {
                s.errors << "Expected short name '" << X::shortLayerName() << "' for layer " << X::layerName()
                         << ", got " << h.shortName << ".";
                f.position(chunkEnd);
                return StreamableTraitsBase::statusWrongLayer;
            }
            obj->X::revisionMajor(static_cast<unsigned char>(h.major));
            obj->X::revisionMinor(static_cast<unsigned char>(h.minor));
            obj->X::unpack(s);
            if (s.inError()) {
                f.position(chunkEnd);
                return StreamableTraitsBase::statusFailed;
            }
        }

        const unsigned pos = f.position();
        if (pos < layerEnd) {
            // Sizes come from the file and may be anything up to 2^32 - 1: printed unsigned.
            Log("Warning: Not all object data was read while unpacking object %s, layer %s v%d.%d, %u/%u "
                "bytes unread.\n",
                obj->hierarchyName(false, false).c_str(), X::layerName().c_str(), static_cast<int>(h.major),
                static_cast<int>(h.minor), layerEnd - pos, static_cast<unsigned>(h.layerSize));
        } else if (pos > layerEnd) {
            s.errors.appendf(
                "Error: Unpacker read beyond end of chunk while unpacking object %s, layer %s v%d.%d, "
                "%u bytes overread.\n",
                obj->hierarchyName(false, false).c_str(), X::layerName().c_str(), static_cast<int>(h.major),
                static_cast<int>(h.minor), pos - layerEnd);
            return StreamableTraitsBase::statusFailed;
        }
        f.position(layerEnd);
        return StreamableTraitsBase::statusUnpacked;
    }

    static eStatus oversized(PStream& s, const char* what, const String& shortName) {
        s.errors << what << shortName << "). ";
        return StreamableTraitsBase::statusFailed;
    }

    static eStatus unknownFormat(PStream& s) {
        s.errors << "Unrecognized version for Streamable base";
        return StreamableTraitsBase::statusFailed;
    }

    // --- building, cloning, assigning ----------------------------------------------------------

    // A new object read from the stream; null only when the reading failed outright (status 6).
    // Any other status gives the object as far as it was read.
    static Zk::Ptr<Streamable> build(PStream& s) {
        if constexpr (std::is_abstract_v<X>) {
            return nullptr;
        } else {
            Zk::Ptr<X> obj(new X(Streamable::buildForUnpack));
            if (obj->STRM_hierarchyUnpack(s) == StreamableTraitsBase::statusFailed)
                return nullptr;
            return Zk::Ptr<Streamable>(obj);
        }
    }

    static Zk::Ptr<Streamable> clone(const X* obj, Streamable::BuilderType how) {
        if constexpr (std::is_abstract_v<X>)
            return nullptr;
        else
            return Zk::Ptr<Streamable>(new X(Streamable::buildForClone, *obj));
    }

    static void assign(X* obj, const Streamable* other) {
        if (auto* o = dynamic_cast<const X*>(other))
            *obj = *o;
    }
};
