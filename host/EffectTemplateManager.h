// EffectTemplateManager: the host's catalogue of effect templates.
#pragma once

#include <vector>

#include "host/EffectTemplate.h"

class EffectTemplateManager {
public:
    static EffectTemplateManager& instance();

    const std::vector<Zk::Ptr<EffectTemplate>>& templates() const { return templates_; }
    // The template of that name, or null.
    Zk::Ptr<EffectTemplate> find(const WString& name) const;
    bool isStereoscopicEffect(const Zk::Ptr<EffectTemplate>& t) const { return t && t->isStereoscopic(); }
    void add(Zk::Ptr<EffectTemplate> t) { templates_.push_back(std::move(t)); }

private:
    EffectTemplateManager();
    std::vector<Zk::Ptr<EffectTemplate>> templates_;
};
