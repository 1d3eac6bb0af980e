// FXGraphTool: the floating panel around one effect graph view, with its toolbar and commands.
#pragma once

#include "host/DLList.h"
#include "host/DLListRec.h"
#include "host/EditGraphIterator.h"
#include "host/StandardPanel.h"
#include "host/VobClient.h"

class Checkbox;
class DDVideoEffectsList;
class DropDownMenuButton;
class FXGraphView;
class ImageButton;
class PushButton;
class Vob;

// One panel serves one Vob at most. It holds the graph view at the top right of its user area,
// an optional list of video templates at the top left, and along the bottom a strip of: the
// automatic positioning checkbox, the tidy button and the direction menu from the left; redo and
// undo from the right. A button in the title row shows or hides the template list, the panel
// growing or shrinking by the list so that the view keeps its size. Commands arrive as text
// messages (handleMessageEvent); the saved form is dump/load. A panel floating on its own keeps
// its size, zoom and position in the preferences; a docked one (a child widget) leaves them.
class FXGraphTool : public StandardPanel, public VobClient, public DLListRec {
public:
    struct InitArgs : StandardPanel::InitArgs {
        InitArgs() = default;
        InitArgs(int w, int h, Vob* v, const Border& b = Border(0, 0, 15))
            : StandardPanel::InitArgs(w, h, b), vob(v) {}
        Vob* vob = nullptr;
    };
    // What a pop-out opens: a tile viewer of the shot, or its log entry.
    enum PopOutItem { PopOutTile = 0, PopOutMetadata = 1 };

    static constexpr const char* kZoomPref = "Video Routing : Zoom";
    static constexpr const char* kTemplatesPref = "Video Routing : Templates";
    static constexpr const char* kAutoPositionPref = "Automatic FX positioning";
    static constexpr const char* kSizePref = "Effect graph tool size";
    static constexpr const char* kPositionPref = "Video Routing : Position";

    explicit FXGraphTool(const InitArgs& args);
    // Restores a panel from its saved record; w and h are the saved size (0: the preferred one).
    FXGraphTool(const configb& config, int w, int h);
    ~FXGraphTool() override;
    // A panel is one widget tree on one Vob; it is never copied.
    FXGraphTool(const FXGraphTool&) = delete;
    FXGraphTool& operator=(const FXGraphTool&) = delete;

    // --- entry points of the host
    static Glob* make(GlobCreationInfo* info);
    static const char* getUITypeString() { return "FXGraphTool"; }
    static XY<int> calcSize();
    static XY<double> getNodeSize(Glob* glob);
    // Opens the panel on the play machine's Vob, or closes it (see createPanelFor).
    static void show();
    // Closes the Vob's panel if it has one (the close is carried out by the window manager
    // later), else opens one on the shot under the Vob's playhead.
    static void createPanelFor(Vob* vob);
    // Shows the Vob's panel on the shot at the position: the playhead moves into that shot when
    // it lies outside it, and an open panel is raised rather than made again.
    static void createPanelFor(Vob* vob, EditGraphIterator& it);
    static const DLList& allPanels() { return allPanels_; }
    static double startZoom() { return startZoom_; }
    static void setStartZoom(double z) { startZoom_ = z; }
    static double savedCentreX() { return savedCentreX_; }
    static double savedCentreY() { return savedCentreY_; }

    // --- widget
    const char* idstring() const override { return "FXGraphTool"; }
    const char* idString() const override { return "FXGraphTool"; }
    void resize(double w, double h) override;
    void load(const configb& c) override;
    void dump(configb& c) override;
    Zk::Box<int> getUserArea() const override;
    int handleMessageEvent(const LightweightString<char>& msg, Glob* sender) override;
    int handleZoom(int direction) override;
    void handleTimerEvent() override;
    void handleModifications(const EditModifications& mods, const VobModification& vobMod) override;

    // --- parts, for the host's scripts and for tests
    FXGraphView* view() const { return view_; }
    DDVideoEffectsList* templatesList() const { return templatesList_; }
    PushButton* tidyButton() const { return tidyButton_; }
    ImageButton* undoButton() const { return undoButton_; }
    ImageButton* redoButton() const { return redoButton_; }
    DropDownMenuButton* orientationMenu() const { return orientationMenu_; }
    Checkbox* autoPositionCheckbox() const { return autoPositionCheckbox_; }
    ImageButton* toggleTemplatesButton() const { return toggleTemplatesButton_; }
    bool showTemplates() const { return showTemplates_; }
    bool autoPosition() const;
    XY<int> calcMainViewSize() const;
    void drawMainArea();

private:
    static FXGraphTool* findPanelFor(Vob* vob);
    static VobClient* popOutItem(EditGraphIterator& it, PopOutItem kind);
    static VobClient* popOutItem(EditPtr edit, int channel, double time, PopOutItem kind);

    void init();
    void postInit();
    void initTemplatesListUI();
    bool updateTitleStr();
    void updateTidyButton();
    void setAutoPosition(bool on);
    void toggleTemplates();
    void handleNodeCommand(const LightweightString<char>& command, EditGraphIterator& it);
    void openEffectPanel(EditGraphIterator& it);
    void openTemplatePane(EditGraphIterator& it);
    void writePositionPreference();

    FXGraphView* view_ = nullptr;
    DDVideoEffectsList* templatesList_ = nullptr;
    PushButton* tidyButton_ = nullptr;
    ImageButton* undoButton_ = nullptr;
    ImageButton* redoButton_ = nullptr;
    DropDownMenuButton* orientationMenu_ = nullptr;
    Checkbox* autoPositionCheckbox_ = nullptr;
    ImageButton* toggleTemplatesButton_ = nullptr;
    bool showTemplates_ = true;
    // Made without a size: the preferred size is taken once the minimum size is set.
    bool unsized_ = false;

    static DLList allPanels_;
    static double startZoom_;
    static double savedCentreX_;
    static double savedCentreY_;
};
