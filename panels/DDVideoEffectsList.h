// DDVideoEffectsList: the template list of the graph tool, restricted to video categories.
#pragma once

#include "host/EffectsBrowser.h"

// Everything but the choice of categories is the host's list: browsing, icons, dragging out.
class DDVideoEffectsList : public EffectsBrowser {
public:
    struct InitArgs : EffectsBrowser::InitArgs {
        using EffectsBrowser::InitArgs::InitArgs;
    };

    explicit DDVideoEffectsList(const InitArgs& args) : EffectsBrowser(args) {}
    void getCategories(std::vector<EffectCategory>& result) override;
};
