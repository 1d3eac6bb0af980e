// OtioReader: opens timeline interchange files (".otio", JSON) written by other editors as edits.
//
// How a timeline becomes an edit:
// - The timeline is the edit: its name, and its global start time as the edit's start. Times are
//   rational (value / rate) and become seconds; every time of the file is counted from the
//   global start time.
// - Each child of the timeline's top stack is a channel, in order: a track a channel of its kind
//   (Video or Audio; another kind is shown as video, with a warning) named after it, or "V1",
//   "A2"... when it has no name; any other item a channel holding that item alone. A track's
//   source range trims what it shows; a track that is switched off is empty.
// - A clip is a cel of a material of its own, named after the clip. Its active media reference
//   decides the material's picture: an image file (or the first frame of an image sequence) that
//   the render service can read is shown as it is; a movie file, missing media or an unknown
//   reference becomes a generated slate showing the clip's name; a generator gives the generated
//   picture its kind names (bars, ramp or gradient, grid, noise; any other kind a slate). Audio
//   clips play a tone. A clip that is switched off is black, as a gap is.
// - A gap is black.
// - A clip's effects become an effect chain over its material, in order, each effect feeding the
//   next. Effects whose names the template catalogue knows take its tags (blur, colour
//   correction, black and white, sepia, vignette, crop); time warps and freeze frames are
//   "Retime:" effects; any other effect is kept as "Effect:NAME" with its numeric parameters
//   (numeric members, and numbers in its metadata as dotted paths).
// - A transition is a cel between its neighbours, from its in offset before the cut to its out
//   offset after it, holding a dissolve (or a wipe, or "Transition:TYPE" for other types) whose
//   input 0 is the outgoing side and input 1 the incoming side; a side that is a gap or the
//   track's end is an open input, which shows black. The neighbours' cels give up the time the
//   transition takes.
// - A track's own effects are applied over each of its cels, transitions included.
// - A nested stack or track is a compound effect holding an edit of its own (built the same way,
//   from the nested item's own time 0), with one input per inner channel of the outer track's
//   kind; the nested item's effects apply over the compound effect. A clip whose media is
//   another ".otio" file is a compound effect of that file's timeline.
// - Markers are read and reported; the edit has no place for them.
// - An object of a schema not listed here is skipped with a warning naming it and its place.
//
// Ids come from each object's path in the file, so that importing the same file again gives the
// same ids and positions saved for its nodes stay attached to them.
//
// Refused, each with "FILE:LINE:COLUMN: what was expected": text that is no JSON, a rate that is
// not above 0, a negative duration, transitions that overlap each other or run past their
// neighbours, and ".otio" files that refer to each other in a ring.
#pragma once

#include <string>
#include <vector>

#include "host/Edit.h"

namespace OtioReader {

// What a read found beside the edit.
struct Report {
    struct Marker {
        std::string name;
        double time = 0.0; // the marked range's start, in the time of the edit holding the object
        double duration = 0.0;
    };
    std::vector<std::string> warnings;
    std::vector<Marker> markers;
};

// Reads a timeline from text into `into`; on failure `into` is untouched and `error` holds one
// line. `name` is the file's path: errors name it and relative media paths start from its
// folder.
bool loadFromText(const std::string& text, const std::string& name, Edit& into, std::string& error,
                  Report* report = nullptr);
bool load(const std::string& path, Edit& into, std::string& error, Report* report = nullptr);
// Opens a file as a new edit, or null with the error.
EditPtr open(const std::string& path, std::string& error, Report* report = nullptr);

} // namespace OtioReader
