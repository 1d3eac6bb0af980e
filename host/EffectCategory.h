// EffectCategory: one heading of the template catalogue and the templates under it.
#pragma once

#include <vector>

#include "host/EffectTemplateSummary.h"

struct EffectCategory {
    WString name;
    std::vector<EffectTemplateSummary> templates;
};
