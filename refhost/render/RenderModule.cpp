// Finding and loading the render module.
#include "refhost/render/RenderModule.h"

#include <dlfcn.h>

#include <atomic>
#include <string>

#include "host/Log.h"

namespace {

std::atomic<bool> gLoaded{false};

// The folder of the shared object that holds this code, with its final slash; empty when the
// system cannot tell.
std::string ownFolder() {
    Dl_info info{};
    if (!dladdr(reinterpret_cast<void*>(&RenderModule::entry), &info) || !info.dli_fname)
        return {};
    std::string path = info.dli_fname;
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

const RenderModuleEntry* load() {
    // Beside the host library first, then wherever the system's search finds it.
    void* handle = nullptr;
    std::string folder = ownFolder();
    if (!folder.empty())
        handle = dlopen((folder + RenderModule::kFileName).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle)
        handle = dlopen(RenderModule::kFileName, RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        const char* why = dlerror();
        Log("render module %s cannot be loaded: %s; stills are left empty\n", RenderModule::kFileName,
            why ? why : "not found");
        return nullptr;
    }
    using EntryFn = const RenderModuleEntry* (*)();
    auto fn = reinterpret_cast<EntryFn>(dlsym(handle, RenderModule::kEntryName));
    const RenderModuleEntry* e = fn ? fn() : nullptr;
    if (!e) {
        Log("render module %s has no %s; stills are left empty\n", RenderModule::kFileName,
            RenderModule::kEntryName);
        return nullptr;
    }
    // The module stays loaded for the life of the process: its pictures and caches may be held
    // anywhere.
    gLoaded = true;
    return e;
}

} // namespace

const RenderModuleEntry* RenderModule::entry() {
    static const RenderModuleEntry* const e = load();
    return e;
}

bool RenderModule::loaded() {
    return gLoaded;
}
