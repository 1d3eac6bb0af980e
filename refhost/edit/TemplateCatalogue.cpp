// The catalogue by category: which templates a list shows, and under which heading.
#include <algorithm>
#include <string>

#include "host/EffectTemplateManager.h"
#include "host/TemplateMatcher.h"

bool TemplateMatcher::match(const EffectTemplateSummary& summary) const {
    return summary.tmpl && !summary.name.empty() && !summary.tmpl->getComponents(0).empty();
}

WString EffectTemplateManager::categoryOf(const EffectTemplate& t) {
    Vector<Zk::Ptr<FXGraphNodeBase>> components = t.getComponents(0);
    if (components.empty())
        return WString();
    const std::string tag = components[0]->tagTypeId().str();
    const size_t first = tag.find(':');
    const std::string head = tag.substr(0, first);
    const size_t second = first == std::string::npos ? std::string::npos : tag.find(':', first + 1);
    const std::string sub =
        first == std::string::npos ? std::string() : tag.substr(first + 1, second - first - 1);
    if (head == "Transition")
        return WString(L"Transitions");
    if (head == "Audio")
        return sub.empty() ? WString(L"Audio") : WString(L"Audio ") + toWide(String(sub));
    if (!sub.empty() && second != std::string::npos)
        return toWide(String(sub));
    return toWide(String(head));
}

EffectTemplateSummary EffectTemplateManager::summarise(const Zk::Ptr<EffectTemplate>& t) {
    EffectTemplateSummary s;
    if (!t)
        return s;
    s.name = t->getName();
    s.category = categoryOf(*t);
    s.trackType = t->getType();
    s.stereoscopic = t->isStereoscopic();
    s.tmpl = t;
    return s;
}

void EffectTemplateManager::getCategories(std::vector<EffectCategory>& result, const TemplateMatcher& matcher,
                                          bool sorted) const {
    result.clear();
    for (const auto& t : templates_) {
        EffectTemplateSummary s = summarise(t);
        if (!matcher.isCategoryAllowed(s.category) || !matcher.match(s))
            continue;
        auto found = std::find_if(result.begin(), result.end(),
                                  [&](const EffectCategory& c) { return c.name == s.category; });
        if (found == result.end()) {
            result.push_back(EffectCategory{s.category, {}});
            found = result.end() - 1;
        }
        found->templates.push_back(std::move(s));
    }
    if (!sorted)
        return;
    std::sort(result.begin(), result.end(),
              [](const EffectCategory& a, const EffectCategory& b) { return a.name < b.name; });
    for (auto& c : result)
        std::sort(
            c.templates.begin(), c.templates.end(),
            [](const EffectTemplateSummary& a, const EffectTemplateSummary& b) { return a.name < b.name; });
}
