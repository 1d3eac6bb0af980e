// Render::RenderContextRep: what to render: the graph below the iterator's node at its time, in
// a picture of the given metadata and formats. Two contexts compare equal when they would render
// the same pixels, which is what the stills cache keys on: the edit and the state of its graph,
// the node, the time, the picture size and formats, and the view transform.
#pragma once

#include <cstdint>
#include <string>

#include "host/EditGraphIterator.h"
#include "host/LightweightString.h"
#include "host/ShotVideoMetadata.h"

namespace Render {

class RenderContextRep {
public:
    RenderContextRep(const EditGraphIterator& it, const ShotVideoMetadata& metadata, int format,
                     int proxyLevel, int stereoMode, bool forStill);

    void setViewLUT(const String& name) { viewLUT_ = name; }
    const String& viewLUT() const { return viewLUT_; }

    const EditGraphIterator& iterator() const { return it_; }
    const ShotVideoMetadata& metadata() const { return metadata_; }
    int format() const { return format_; }
    int proxyLevel() const { return proxyLevel_; }
    int stereoMode() const { return stereoMode_; }
    bool forStill() const { return forStill_; }

    // The cache key: equal for contexts that render the same pixels.
    const std::string& key() const { return key_; }
    bool operator==(const RenderContextRep& o) const { return key_ == o.key_; }

private:
    EditGraphIterator it_;
    ShotVideoMetadata metadata_;
    int format_;
    int proxyLevel_;
    int stereoMode_;
    bool forStill_;
    String viewLUT_;
    std::string key_;
};

} // namespace Render
