// The open project's change notices and picture shapes.
#include "host/CurrentProject.h"

#include "host/NotifyMsgTypeDictionary.h"
#include "host/PictureShape.h"

namespace Zk {

namespace {
GenericNotifier<NotifierEvent<CurrentProject::ChangeDescription>>& projectNotifier() {
    static GenericNotifier<NotifierEvent<CurrentProject::ChangeDescription>> n;
    return n;
}
} // namespace

Zk::Ptr<Zk::Guard>
CurrentProject::addListener(const Zk::Ptr<iCallbackBase<int, NotifierEvent<ChangeDescription>>>& cb) {
    return projectNotifier().registerNotification(cb, NotifyMsgTypeDictionary::instance().defaultMsgType);
}

void CurrentProject::announce(unsigned flags) {
    NotifierEvent<ChangeDescription> e;
    e.value.flags = flags;
    projectNotifier().call(e, NotifyMsgTypeDictionary::instance().defaultMsgType);
}

namespace {
struct ViewTransform {
    bool enabled = false;
    String name;
};
ViewTransform& viewTransform() {
    static ViewTransform v;
    return v;
}
} // namespace

int CurrentProject::getIntermediateImageFormat() {
    return 0;
}

bool CurrentProject::getViewLUTEnabled() {
    return viewTransform().enabled;
}

String CurrentProject::getViewLUT() {
    return viewTransform().name;
}

void CurrentProject::setViewLUT(const String& name, bool enabled) {
    ViewTransform& now = viewTransform();
    if (now.enabled == enabled && now.name == name)
        return;
    now = ViewTransform{enabled, name};
    announce(kPicturesChanged);
}

namespace {
String& look() {
    static String l;
    return l;
}
} // namespace

String CurrentProject::getLook() {
    return look();
}

void CurrentProject::setLook(const String& name) {
    if (look() == name)
        return;
    look() = name;
    announce(kLookChanged);
}

double getAspectRatio(Image::AspectRatio a) {
    switch (a) {
    case Image::Aspect4x3:
        return 4.0 / 3.0;
    case Image::AspectSquare:
        return 1.0;
    case Image::Aspect16x9:
        return 16.0 / 9.0;
    }
    return 16.0 / 9.0;
}

} // namespace Zk

#include "host/TransitStatus.h"

TransitStatus& TransitStatus::manager() {
    static TransitStatus t;
    return t;
}
