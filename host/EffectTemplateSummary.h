// EffectTemplateSummary: what a list of templates shows of one template, and what it is tested by.
#pragma once

#include "host/EditTypes.h"
#include "host/EffectTemplate.h"

struct EffectTemplateSummary {
    WString name;
    WString category;
    EditChanType trackType = kVideoChan;
    bool stereoscopic = false;
    Zk::Ptr<EffectTemplate> tmpl;
};
