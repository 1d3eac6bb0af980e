// MaterialUsageNode: a source clip used as an input of a graph. It has no inputs of its own.
// Its source is a generated test picture ("bars", "ramp", "grid", "noise", "tone") or an image
// file.
#pragma once

#include "host/Cookie.h"
#include "host/FXGraphNodeBase.h"

class MaterialUsageNode : public FXGraphNodeBase {
public:
    MaterialUsageNode(const IdStamp& id, const Cookie& material) : FXGraphNodeBase(id), material_(material) {}

    const Cookie& material() const { return material_; }
    const String& source() const { return source_; }
    void setSource(const String& s) { source_ = s; }
    const String& file() const { return file_; }
    void setFile(const String& f) { file_ = f; }

private:
    Cookie material_;
    String source_ = "bars";
    String file_;
};
