// StreamableTraitsBase: the statuses of the layered stream operations and the stack of layer
// writers that packing an object runs through.
#pragma once

#include <list>

class PStream;
class Streamable;

class StreamableTraitsBase {
public:
    // A chain of layers goes on only after statusPacked or statusUnpacked.
    enum eStatus {
        statusOk = 0,
        statusPacked = 2,     // a layer and those nested in it were written, with no error
        statusUnpacked = 3,   // a layer was read, or had an empty body
        statusFailed = 6,     // the stream is in error
        statusWrongLayer = 7, // the header names another layer
        statusEndOfFile = 8,  // the file ended inside the header
    };

    struct PackFunctionStackEntry;
    using PackStack = std::list<PackFunctionStackEntry>;
    using LayerWriter = eStatus (*)(const Streamable* object, PStream& s, PackStack* stack);

    // One layer still to be written: its writer and the object. The stack is used at its front.
    struct PackFunctionStackEntry {
        LayerWriter writer;
        const Streamable* object;
    };

    static bool goesOn(eStatus s) { return s == statusPacked || s == statusUnpacked; }
};
