// Zk::CurrentProject: the project that is open in the host. Listeners hear each change of its
// state as a word of flags: bit 7 (0x80) the project's pictures changed (format, proxies), bit 9
// (0x200) its look changed (theme, palette) and everything on screen should repaint.
#pragma once

#include "host/GenericNotifier.h"
#include "host/LightweightString.h"
#include "host/NotifierEvent.h"
#include "host/ZkGuard.h"
#include "host/iCallbackBase.h"

namespace Zk {

class CurrentProject {
public:
    struct ChangeDescription {
        unsigned flags = 0;
    };
    enum Flags : unsigned { kPicturesChanged = 0x80, kLookChanged = 0x200 };

    static Zk::Ptr<Zk::Guard>
    addListener(const Zk::Ptr<iCallbackBase<int, NotifierEvent<ChangeDescription>>>& cb);
    // Tells every listener of a change.
    static void announce(unsigned flags);

    // The pixel format intermediate images of a render are kept in (0 the default 8-bit ARGB).
    static int getIntermediateImageFormat();
    // The view transform applied to what is shown, by its colour-management name.
    static bool getViewLUTEnabled();
    static String getViewLUT();
    // Changing the view transform tells the listeners that the pictures changed; setting it as
    // it stands tells no one.
    static void setViewLUT(const String& name, bool enabled);
    // The project's look, by the name of its theme ("" the default). A change tells the
    // listeners that the look changed.
    static String getLook();
    static void setLook(const String& name);
};

} // namespace Zk
