// EffectTemplateManager: the host's catalogue of effect templates.
#pragma once

#include <vector>

#include "host/EffectCategory.h"
#include "host/EffectTemplate.h"

class TemplateMatcher;

class EffectTemplateManager {
public:
    static EffectTemplateManager& instance();

    const std::vector<Zk::Ptr<EffectTemplate>>& templates() const { return templates_; }
    // The template of that name, or null.
    Zk::Ptr<EffectTemplate> find(const WString& name) const;
    bool isStereoscopicEffect(const Zk::Ptr<EffectTemplate>& t) const { return t && t->isStereoscopic(); }
    void add(Zk::Ptr<EffectTemplate> t) { templates_.push_back(std::move(t)); }

    // The category a template is listed under, from its head's tag: "PixShader:Blur:..." is
    // "Blur", a transition "Transitions", "Audio:Filter:..." "Audio filter".
    static WString categoryOf(const EffectTemplate& t);
    static EffectTemplateSummary summarise(const Zk::Ptr<EffectTemplate>& t);
    // Fills result with the categories that hold a template the matcher takes, each with those
    // templates, in the catalogue's order; `sorted` puts categories and their templates in
    // order of name instead.
    void getCategories(std::vector<EffectCategory>& result, const TemplateMatcher& matcher,
                       bool sorted) const;

private:
    EffectTemplateManager();
    std::vector<Zk::Ptr<EffectTemplate>> templates_;
};
