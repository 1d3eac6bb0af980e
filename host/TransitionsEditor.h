// TransitionsEditor: adds and removes transitions on the channels of a Vob's edit.
#pragma once

class Vob;

// Removing a video transition puts a cut in its place: the event the transition held splits at
// its middle into the outgoing side, then the incoming side (input 0, then input 1 of the
// transition; black where an input is open). The change is one undoable step of the Vob's edit,
// announced as a change of structure.
class TransitionsEditor {
public:
    explicit TransitionsEditor(Vob* vob) : vob_(vob) {}
    // False, changing nothing, when the event of that video channel at that time holds no
    // transition at its root.
    bool removeVideoTransition(int chan, double time);

private:
    Vob* vob_;
};
