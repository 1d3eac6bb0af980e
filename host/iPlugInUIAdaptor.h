// iPlugInUIAdaptor: the user interface of one plug-in effect: its parameters and their window.
#pragma once

#include "host/LightweightString.h"
#include "host/iObject.h"

class Glob;

class iPlugInUIAdaptor : public iObject {
public:
    // Reads the effect's parameters into the adaptor; done before anything is shown.
    virtual void setup() = 0;
    // The number of parameters found by setup.
    virtual int numParameters() const = 0;
    // Opens a window with a field for each parameter; the user's edits change the effect as
    // undoable steps of its edit. The window belongs to the host's window manager.
    virtual Glob* openWindow() = 0;
};
