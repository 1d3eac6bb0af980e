// MenuData: what a menu choice carries to its callback.
#pragma once

#include "host/LightweightString.h"
#include "host/iObject.h"

namespace MenuData {

// The choice made in a list of choices: its text and its index.
class Change : public iObject {
public:
    Change(const WString& text, unsigned short index) : text_(text), index_(index) {}
    const WString& getText() const { return text_; }
    unsigned short getIndex() const { return index_; }

private:
    WString text_;
    unsigned short index_;
};

} // namespace MenuData
