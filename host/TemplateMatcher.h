// TemplateMatcher: the test that decides which templates of the catalogue a list shows.
#pragma once

#include "host/EffectTemplateSummary.h"

// The base takes every template that has components and a name; a derived matcher narrows it.
class TemplateMatcher {
public:
    virtual ~TemplateMatcher() = default;
    virtual bool match(const EffectTemplateSummary& summary) const;
    virtual bool isCategoryAllowed(const WString& category) const { return !category.empty(); }
};
