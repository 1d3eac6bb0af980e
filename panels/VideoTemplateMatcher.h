// VideoTemplateMatcher: takes the templates made for video tracks.
#pragma once

#include "panels/TrackTypeTemplateMatcher.h"

class VideoTemplateMatcher : public TrackTypeTemplateMatcher {
public:
    VideoTemplateMatcher() : TrackTypeTemplateMatcher(kVideoChan) {}
};
