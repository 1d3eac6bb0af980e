// EffectMenuItems: the commands of one component of an effect graph, as menu items.
#pragma once

#include <vector>

#include "host/EditGraphIterator.h"
#include "host/MenuItem.h"

class EventHandler;
class Vob;

// The iterator stands on the component. The flags choose groups of items: 0x1 switching on and
// off, 0x2 removing, 0x4 the parameter window, 0x8 resetting the parameters, 0x10 the graph's
// own commands (cycling inputs, templates onto the node, removing a transition), 0x100 renaming
// back to the default name, 0x200 renders and pop-outs (render afresh, import the render, the
// shot's viewer and log entry); 799 asks for everything. Every command is an undoable step of
// the Vob's edit. A source clip has only what applies to it.
//
// On a video node of a Vob that an effect graph tool serves (the Vob's client named
// "FXGraphTool"), every item but switching on and off is a text message to that tool, which
// carries it out: "fxutr<command> <position>" with the commands remove_utr, params, cycle_inputs,
// tile, remove_xfade and import_render, "render_effect <position>", and "popOut<tile|log>
// <position>", the position being the text form of the iterator's state (of the iterator itself
// for render_effect). Without such a tool, and on audio, the items act directly.
class EffectMenuItems {
public:
    enum eItems : unsigned {
        kEnable = 0x1,
        kRemove = 0x2,
        kParameters = 0x4,
        kReset = 0x8,
        kGraph = 0x10,
        kDefaultName = 0x100,
        kRenders = 0x200,
    };
    // The client name of the tool that takes the messages.
    static constexpr const char* kToolName = "FXGraphTool";
    static std::vector<MenuItem> getItemsForComponent(Vob* vob, const EditGraphIterator& at, unsigned flags);

private:
    static std::vector<MenuItem> toolItems(Vob* vob, const EditGraphIterator& at, unsigned flags,
                                           EventHandler* tool);
};
