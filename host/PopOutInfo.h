// PopOutInfo: what lies at one place of an edit, for a pop-out of that shot.
#pragma once

#include "host/Cookie.h"
#include "host/EditPtr.h"
#include "host/LightweightString.h"

// shot is the cookie of the shot's source material or effect graph; its kind is 'I' when no
// shot lies there (black, or a place off the edit), and error then says why, when there is
// something to say. time is the time within the shot.
struct PopOutInfo {
    static constexpr Cookie::Kind kNoShot = static_cast<Cookie::Kind>('I');
    Cookie shot;
    EditPtr edit;
    int chan = -1;
    double time = 0.0;
    String error;
};

PopOutInfo getPopOutShotInfo(const EditPtr& edit, int chan, double time);
