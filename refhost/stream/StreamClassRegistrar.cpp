// The host's table of streamable classes.
#include "host/StreamClassRegistrar.h"

#include <algorithm>
#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <typeinfo>

#include "host/StreamableLayer.h"

namespace {

// Never destroyed, so that registrars going at unload always find it.
std::vector<const StreamClassRegistrar*>& table() {
    static auto* t = new std::vector<const StreamClassRegistrar*>;
    return *t;
}

void eraseAll(std::string& s, const std::string& what) {
    for (std::size_t at = s.find(what); at != std::string::npos; at = s.find(what, at))
        s.erase(at, what.size());
}

} // namespace

String plainTypeName(const std::type_info& type) {
    int status = 0;
    std::unique_ptr<char, void (*)(void*)> demangled(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), std::free);
    std::string name = status == 0 && demangled ? demangled.get() : type.name();
    eraseAll(name, "struct ");
    eraseAll(name, "class ");
    return String(std::move(name));
}

StreamClassRegistrar::StreamClassRegistrar(const String& longName, const String& shortName, Builder builder)
    : long_(longName), short_(shortName), builder_(builder) {
    table().push_back(this);
}

StreamClassRegistrar::~StreamClassRegistrar() {
    auto& t = table();
    t.erase(std::remove(t.begin(), t.end(), this), t.end());
}

const StreamClassRegistrar* StreamClassRegistrar::find(const String& name) {
    const auto& t = table();
    for (auto it = t.rbegin(); it != t.rend(); ++it)
        if ((*it)->long_ == name || (*it)->short_ == name)
            return *it;
    return nullptr;
}

std::vector<const StreamClassRegistrar*> StreamClassRegistrar::all() {
    return table();
}
