// EffectTemplate: a named, ready-made effect graph of one channel type. Its components are
// prototype nodes linked among themselves; the first is the head, whose output is the
// template's. An input left without a link is one of the template's own inputs, which take what
// the template is applied onto.
#pragma once

#include <vector>

#include "host/EditTypes.h"
#include "host/FXGraphNodeBase.h"
#include "host/Vector.h"

class EffectTemplate : public virtual iObject {
public:
    EffectTemplate(const WString& name, EditChanType type, std::vector<Zk::Ptr<FXGraphNodeBase>> components,
                   bool stereoscopic = false)
        : name_(name), type_(type), components_(std::move(components)), stereoscopic_(stereoscopic) {}

    EditChanType getType() const { return type_; }
    const WString& getName() const { return name_; }
    // The template's open inputs of an input type: type 1 counts the track inputs without a link.
    unsigned getNumInputs(int inputType) const;
    Vector<Zk::Ptr<FXGraphNodeBase>> getComponents(int which) const;
    bool isStereoscopic() const { return stereoscopic_; }

private:
    WString name_;
    EditChanType type_;
    std::vector<Zk::Ptr<FXGraphNodeBase>> components_;
    bool stereoscopic_;
};
