// The graph tool's template list and the matchers that choose its templates.
#include "panels/DDVideoEffectsList.h"

#include "host/EffectTemplateManager.h"
#include "panels/VideoTemplateMatcher.h"

bool TrackTypeTemplateMatcher::match(const EffectTemplateSummary& summary) const {
    return summary.trackType == trackType && TemplateMatcher::match(summary);
}

void DDVideoEffectsList::getCategories(std::vector<EffectCategory>& result) {
    VideoTemplateMatcher matcher;
    EffectTemplateManager::instance().getCategories(result, matcher, true);
}
