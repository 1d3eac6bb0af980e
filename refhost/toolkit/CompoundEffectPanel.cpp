// Effect windows: one per effect, opened on a page, raised when asked for again.
#include "host/CompoundEffectPanel.h"

#include <map>
#include <utility>

#include "host/EffectInstance_opu4h5a4j.h"
#include "host/Glob.h"
#include "host/PlugInUIAdaptorFactory.h"
#include "host/Vob.h"

namespace {

using Key = std::pair<const Edit*, IdStamp>;

struct KeyLess {
    bool operator()(const Key& a, const Key& b) const {
        if (a.first != b.first)
            return a.first < b.first;
        return IdStampLess()(a.second, b.second);
    }
};

std::map<Key, Glob*, KeyLess>& windows() {
    static std::map<Key, Glob*, KeyLess> w;
    return w;
}

void forgetClosed() {
    for (auto it = windows().begin(); it != windows().end();)
        it = is_good_glob_ptr(it->second) ? std::next(it) : windows().erase(it);
}

} // namespace

Glob* CompoundEffectPanel::create(Vob* vob, EditGraphIterator it, const LightweightString<char>& page) {
    if (!vob || !vob->edit() || !it.isValid())
        return nullptr;
    auto fx = Zk::dynamicCast<EffectInstance_opu4h5a4j>(it.getNode(-1));
    if (!fx)
        return nullptr;
    forgetClosed();
    const Key key(it.getCurrentPosEdit().get(), fx->getId());
    if (auto found = windows().find(key); found != windows().end()) {
        found->second->popToTop(true);
        return found->second;
    }
    Zk::Ptr<iPlugInUIAdaptor> adaptor = PlugInUIAdaptorFactory::instance().createAdaptorFor(fx, page);
    if (!adaptor)
        return nullptr;
    adaptor->setup();
    Glob* window = adaptor->openWindow();
    if (window)
        windows()[key] = window;
    return window;
}

int CompoundEffectPanel::openCount() {
    forgetClosed();
    return static_cast<int>(windows().size());
}
