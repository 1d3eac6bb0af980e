// AudioRoutingView: the effect chain of one audio track at the playhead, as a table.
#pragma once

#include "host/CelEventPair.h"
#include "host/CompoundEffectMonitor.h"
#include "host/StandardPanel.h"
#include "host/TableWidget.h"
#include "host/iTableAdaptor.h"

// The track's source is the bottom row and each effect stands above the one that feeds it, with
// an arrow between rows for the way the sound takes; row 0 is the effect whose output leaves the
// track. A click on an effect's row switches it on or off, dragging a row onto its neighbour
// swaps the two effects, and each row has the menu of its component. A crossfade shows as one
// row over the names of the two cels it joins, and can't be reordered. The view draws itself
// from the monitor, which it doesn't own; the monitor must outlive it.
class AudioRoutingView : public StandardPanel, public iTableAdaptor, public CompoundEffectMonitorClient {
public:
    static constexpr const char* kCrossfadeTag = "\\QOR\\AUD\\FX\\XF";

    struct InitArgs : StandardPanel::InitArgs {
        InitArgs() = default;
        InitArgs(int w, int h, const Border& b, CompoundEffectMonitor* m)
            : StandardPanel::InitArgs(w, h, b), monitor(m) {}
        CompoundEffectMonitor* monitor = nullptr;
    };

    explicit AudioRoutingView(const InitArgs& args);
    ~AudioRoutingView() override;
    AudioRoutingView(const AudioRoutingView&) = delete;
    AudioRoutingView& operator=(const AudioRoutingView&) = delete;
    const char* idstring() const override { return "AudioRoutingView"; }

    // --- the table's questions
    LightweightString<wchar_t> getFieldText(const XY<int>& cell) override;
    int getNumRows() override;
    std::vector<TableColumnDescription> getColumns() override;
    void getFieldColours(const XY<int>& cell, Palette& palette) override;
    MouseCursorID getCellCursor(const XY<int>& cell) override;
    bool drawField(const CellContext& ctx) override;
    using StandardPanel::handleMouseEvent;
    bool handleMouseEvent(const XY<int>& cell, const Event& e) override;
    bool requestSwapRows(int a, int b) override;

    void resize(double w, double h) override;
    void reviewMenu(const Event* e) override;
    void handleCompoundEffectChanges(const ChangeDescription& desc) override;

    void setTrack(const IdStamp& track);
    // Reads whether the place is a crossfade and the source's text again; true if either changed.
    bool updateSource();

    const IdStamp& getTrack() const { return trackId_; }
    const LightweightString<wchar_t>& getSourceText() const { return sourceText_; }
    bool isCrossfade() const { return isCrossfade_; }
    TableWidget* getTable() const { return tableWidget_; }

private:
    int numEffectRows() const;
    bool isMovable(int row) const;
    // What a row hands to the row above it: an effect's own id, or for the source row the track
    // that feeds the lowest effect.
    IdStamp inputIdOf(int row) const;
    WString nameOf(const CelEventPair& pair) const;
    double currentTime() const;
    void redrawTable();

    IdStamp trackId_;
    LightweightString<wchar_t> sourceText_;
    TableWidget* tableWidget_ = nullptr;
    CompoundEffectMonitor* monitor_ = nullptr;
    bool isCrossfade_ = false;
};
