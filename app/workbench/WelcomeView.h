// WelcomeView: what the workbench shows while no view is plugged in.
#pragma once

#include "host/Glob.h"

class WelcomeView : public Glob {
public:
    explicit WelcomeView(const GlobCreationInfo& info) : Glob(info) {}
    const char* idstring() const override { return "WelcomeView"; }
    void drawBackground() override;
};
