// The generated members of every streamable class. A class X with base layer B puts
// STRM_DECLARE_LAYER(X, B) in its body and STRM_DEFINE_LAYER(X, "short name") in its .cpp (which
// includes host/StreamableLayer.h); the root class uses STRM_DECLARE_ROOT_LAYER(X). X then supplies only
// its private pack(PStream&) const and unpack(PStream&), and the constructors X(BuilderType) and
// X(BuilderType, const X&). Everything else, the layer algorithm included, is in
// StreamableLayer<X>.
#pragma once

#include "host/LightweightString.h"
#include "host/StreamableTraitsBase.h"
#include "host/ZkPtr.h"

class PStream;
class Streamable;
class StreamClassRegistrar;
template <class X>
struct StreamableLayer;

#define STRM_DECLARE_LAYER_AS(X, BASE, OVERRIDE)                                                             \
public:                                                                                                      \
    using STRM_Base = BASE;                                                                                  \
    unsigned char revisionMajor() const {                                                                    \
        return revisionMajor_;                                                                               \
    }                                                                                                        \
    unsigned char revisionMinor() const {                                                                    \
        return revisionMinor_;                                                                               \
    }                                                                                                        \
    static String layerName();                                                                               \
    static String shortLayerName();                                                                          \
    static String subHierarchyName(bool a, bool shortNames);                                                 \
    virtual String hierarchyName(bool a, bool shortNames) const OVERRIDE;                                    \
    static Zk::Ptr<Streamable> STRM_L_##X##_builder(PStream& s);                                             \
    virtual StreamableTraitsBase::eStatus STRM_hierarchyPack(PStream& s) const OVERRIDE;                     \
    virtual StreamableTraitsBase::eStatus STRM_hierarchyUnpack(PStream& s) OVERRIDE;                         \
    static StreamableTraitsBase::eStatus STRM_layerPack(const X* obj, PStream& s,                            \
                                                        StreamableTraitsBase::PackStack* stack);             \
    static StreamableTraitsBase::eStatus STRM_layerUnpack(X* obj, PStream& s);                               \
    virtual Zk::Ptr<Streamable> clone(BuilderType how) const OVERRIDE;                                       \
    virtual void assign(const Streamable* other) OVERRIDE;                                                   \
                                                                                                             \
protected:                                                                                                   \
    void STRM_L_##X##_buildHierarchyName(String& out, bool a, bool shortNames) const;                        \
                                                                                                             \
private:                                                                                                     \
    void revisionMajor(unsigned char v) const {                                                              \
        revisionMajor_ = v;                                                                                  \
    }                                                                                                        \
    void revisionMinor(unsigned char v) const {                                                              \
        revisionMinor_ = v;                                                                                  \
    }                                                                                                        \
    friend struct StreamableLayer<X>;                                                                        \
    static StreamClassRegistrar STRM_L_##X##_registrar_;                                                     \
    mutable unsigned char revisionMajor_ = 1;                                                                \
    mutable unsigned char revisionMinor_ = 0

#define STRM_DECLARE_LAYER(X, BASE) STRM_DECLARE_LAYER_AS(X, BASE, override)
#define STRM_DECLARE_ROOT_LAYER(X) STRM_DECLARE_LAYER_AS(X, void, )

#define STRM_DEFINE_LAYER(X, SHORT)                                                                          \
    String X::layerName() {                                                                                  \
        return StreamableLayer<X>::plainName();                                                              \
    }                                                                                                        \
    String X::shortLayerName() {                                                                             \
        return String(SHORT);                                                                                \
    }                                                                                                        \
    String X::subHierarchyName(bool a, bool shortNames) {                                                    \
        return StreamableLayer<X>::subHierarchyName(a, shortNames);                                          \
    }                                                                                                        \
    String X::hierarchyName(bool a, bool shortNames) const {                                                 \
        String out;                                                                                          \
        STRM_L_##X##_buildHierarchyName(out, a, shortNames);                                                 \
        return out;                                                                                          \
    }                                                                                                        \
    void X::STRM_L_##X##_buildHierarchyName(String& out, bool a, bool shortNames) const {                    \
        StreamableLayer<X>::buildHierarchyName(out, a, shortNames);                                          \
    }                                                                                                        \
    Zk::Ptr<Streamable> X::STRM_L_##X##_builder(PStream& s) {                                                \
        return StreamableLayer<X>::build(s);                                                                 \
    }                                                                                                        \
    StreamableTraitsBase::eStatus X::STRM_hierarchyPack(PStream& s) const {                                  \
        return StreamableLayer<X>::hierarchyPack(this, s);                                                   \
    }                                                                                                        \
    StreamableTraitsBase::eStatus X::STRM_hierarchyUnpack(PStream& s) {                                      \
        return StreamableLayer<X>::hierarchyUnpack(this, s);                                                 \
    }                                                                                                        \
    StreamableTraitsBase::eStatus X::STRM_layerPack(const X* obj, PStream& s,                                \
                                                    StreamableTraitsBase::PackStack* stack) {                \
        return StreamableLayer<X>::layerPack(obj, s, stack);                                                 \
    }                                                                                                        \
    StreamableTraitsBase::eStatus X::STRM_layerUnpack(X* obj, PStream& s) {                                  \
        return StreamableLayer<X>::layerUnpack(obj, s);                                                      \
    }                                                                                                        \
    Zk::Ptr<Streamable> X::clone(BuilderType how) const {                                                    \
        return StreamableLayer<X>::clone(this, how);                                                         \
    }                                                                                                        \
    void X::assign(const Streamable* other) {                                                                \
        StreamableLayer<X>::assign(this, other);                                                             \
    }                                                                                                        \
    StreamClassRegistrar X::STRM_L_##X##_registrar_(                                                         \
        X::subHierarchyName(false, false), X::subHierarchyName(false, true), &X::STRM_L_##X##_builder)
