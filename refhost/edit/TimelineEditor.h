// TimelineEditor: the reference host's own edits of the time line and of effect settings, as a
// person makes them in an editor: moving a cut, laying a clip over a span, lifting a cel,
// changing a parameter, a name or an effect's switch, undo and redo.
#pragma once

#include <string>

#include "host/Cookie.h"
#include "host/EditPtr.h"
#include "host/EditTypes.h"
#include "host/IdStamp.h"
#include "host/LightweightString.h"

class Vob;

// Each operation is one undo step of the Vob's edit and publishes, once the step closes, the
// change an editor announces for it:
//   moveCut, addCel    structure (1), with the Vob flag 0x8 "cuts changed"
//   removeCel          structure (1), plus nodes removed (7) when a graph went with it, and 0x8
//   removeEffect       nodes removed (7)
//   setParam, rename   effect graph detail 4 (names and parameters)
//   setEnabled         effect graph detail 11 (shows on the node only)
//   renameChannel      names (16)
//   undo, redo         restored (9), published by the Vob
// A refused operation changes nothing, takes no undo step and publishes nothing.
class TimelineEditor {
public:
    explicit TimelineEditor(Vob* vob);

    // The times between which the cut at `cutTime` on channel `chan` may lie: the start of the
    // event before it (or the end of the content before a gap) and the end of the event that
    // starts there, both excluded. False when no event of the channel starts there.
    bool cutLimits(int chan, double cutTime, NumRange<double>& limits) const;
    // Moves the cut at `cutTime` to `newTime`. Where the event before ends at the cut, both
    // events follow it (a roll); after a gap only the later event's start moves (a trim).
    // Refused when newTime lies outside cutLimits or equals the cut.
    bool moveCut(int chan, double cutTime, double newTime);

    // Lays the edit's material over [start, end) of the channel, cutting and trimming what lies
    // under it; the edit grows to hold it. Refused for an unknown material, a span that isn't
    // forward, or a channel of another type than video.
    bool addCel(int chan, double start, double end, const Cookie& material);
    // Lifts the event: its span turns black. An effect graph that only this event used leaves
    // the edit with it. Refused for a black event.
    bool removeCel(int chan, int eventIndex);

    // Destroys an effect node; what fed its first input takes its place.
    bool removeEffect(const IdStamp& node);
    bool setParam(const IdStamp& node, const std::string& name, double value);
    bool setEnabled(const IdStamp& node, bool enabled);
    bool rename(const IdStamp& node, const WString& name);
    bool renameChannel(int chan, const WString& name);

    bool undo();
    bool redo();

    Vob* vob() const { return vob_; }

private:
    EditPtr edit() const;

    Vob* vob_;
};
