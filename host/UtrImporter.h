// UtrImporter: turns an effect of a graph into a picture of what it renders.
#pragma once

class Glob;
class Palette;
class Vob;
class EditGraphIterator;

// The importer is a small window on the effect at the position: it names the effect and the
// span of its event, and its Import button renders the effect at the position's time, keeps the
// picture as a file in the configuration folder, and puts an imported image in the effect's
// place in the graph (one undoable step). The effect itself stays in the edit, unlinked.
class UtrImporter {
public:
    // The window, or null for a position that is not on an effect.
    static Glob* createImporter(Vob* vob, EditGraphIterator& it, const Palette& palette);
    // What the Import button does; false when nothing could be rendered or placed.
    static bool importRender(Vob* vob, const EditGraphIterator& it);
};
