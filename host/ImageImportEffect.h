// ImageImportEffect: an imported still image standing in a graph as an effect without inputs.
#pragma once

#include "host/EffectInstance_opu4h5a4j.h"

class ImageImportEffect : public EffectInstance_opu4h5a4j {
public:
    explicit ImageImportEffect(const IdStamp& id) : EffectInstance_opu4h5a4j(id) {
        setTagTypeId("Import:Image");
    }

    const String& file() const { return file_; }
    void setFile(const String& f) { file_ = f; }

private:
    String file_;
};
