// TextBox: one line of text, shown or edited.
#pragma once

#include "host/Glob.h"
#include "host/WidgetCallback.h"

// An editable box sends textChangedMsg (or fires its callback) with the text as data when the
// user finishes an edit.
class TextBox : public Glob {
public:
    static constexpr const char* textChangedMsg = "TextBoxChanged";
    struct InitArgs : GlobCreationInfo {
        InitArgs(const UIString& t, bool edit = false, int w = 0, int h = 0)
            : GlobCreationInfo(w, h), text(t), editable(edit) {}
        UIString text;
        bool editable = false;
        WidgetCallback callback;
        FontDesc font;
    };

    explicit TextBox(const InitArgs& args);
    const char* idstring() const override { return "TextBox"; }
    void setText(const WString& text);
    WString getText() const { return text_; }
    bool isEditable() const { return editable_; }
    void setFont(const FontDesc& f) override;
    // What an edit by the user does.
    void userEdited(const WString& text);
    // The natural size of the present text.
    XY<int> naturalSize() const;

private:
    WString text_;
    WidgetCallback callback_;
    bool editable_;
};
