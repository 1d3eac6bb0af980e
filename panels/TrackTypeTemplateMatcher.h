// TrackTypeTemplateMatcher: takes the templates made for one type of track.
#pragma once

#include "host/TemplateMatcher.h"

class TrackTypeTemplateMatcher : public TemplateMatcher {
public:
    explicit TrackTypeTemplateMatcher(EditChanType type) : trackType(type) {}
    bool match(const EffectTemplateSummary& summary) const override;

    EditChanType trackType;
};
