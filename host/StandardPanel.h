// StandardPanel: a panel with a border, a title row and a user area below it.
#pragma once

#include "host/Border.h"
#include "host/FontDesc.h"
#include "host/MenuGlob.h"

class TextBox;
class ImageButton;

// The title row runs along the top inside the border; getUserArea is the rest inside the
// border. Messages the panel doesn't take go on to its parent.
class StandardPanel : public MenuGlob {
public:
    struct InitArgs : GlobCreationInfo {
        InitArgs() = default;
        InitArgs(int w, int h, const Border& b = getDefaultBorder()) : GlobCreationInfo(w, h), border(b) {}
        Border border = getDefaultBorder();
    };
    // Standard widgets of the title row.
    enum eStandardWidgets { CloseButton = 0x1, MenuButton = 0x10 };
    static constexpr const char* closeMsg = "closePanel";
    static constexpr const char* menuMsg = "panelMenu";

    explicit StandardPanel(const InitArgs& args);
    const char* idstring() const override { return "StandardPanel"; }

    static Border getDefaultBorder() { return Border(0, 2, 15); }
    void setBorder(const Border& b);
    const Border& getBorder() const { return border_; }
    // The height of the title row for a spacing (0 tight, 1 normal, 2 roomy) and border.
    static int calcSize(int spacing, int appearance, const Border& border);
    // 0 while the title widget is hidden: the user area then reaches the top border.
    int titleRowHeight() const;
    // A panel without its title row gives the whole inside of its border to the user area.
    void setTitleShown(bool shown);
    bool isTitleShown() const { return titleShown_; }

    void setTitle(const UIString& title, const FontDesc& font = FontDesc(), eRedrawFlag redraw = Redraw);
    WString getTitleText() const;
    TextBox* getTitleWidget() const { return title_; }
    void addStandardWidgets(int flags);

    Zk::Box<int> getUserArea() const override;
    int handleMessageEvent(const LightweightString<char>& msg, Glob* sender) override;
    void drawBackground() override;

private:
    Border border_;
    bool titleShown_ = true;
    TextBox* title_ = nullptr;
    ImageButton* closeButton_ = nullptr;
    ImageButton* menuButton_ = nullptr;
};
