// Audio plug-ins: effects whose processing comes from a sound plug-in rather than the host.
#pragma once

#include "host/LightweightString.h"

// Audio plug-in effects have tag type ids beginning "AudioPlugIn:".
bool isAudioPlugin(const String& tagTypeId);
