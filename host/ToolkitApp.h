// The toolkit's application object: created by the host program on first need, never by plug-ins.
#pragma once

#include "host/LightweightString.h"

// Makes the window system connection if there is none yet; later calls do nothing. The thread
// that first calls this is the user-interface thread.
void ensureToolkitApplication();
// Runs the event loop until quitToolkitApplication; returns its exit code.
int runToolkitApplication();
void quitToolkitApplication(int code);
// Runs pending events, posted messages, deletions and repaints once.
void processToolkitEvents();
// Whether the toolkit draws offscreen (no display).
bool toolkitIsHeadless();
