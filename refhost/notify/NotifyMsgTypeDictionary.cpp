// The process-wide dictionary of notification types.
#include "host/NotifyMsgTypeDictionary.h"

NotifyMsgTypeDictionary& NotifyMsgTypeDictionary::instance() {
    static NotifyMsgTypeDictionary dictionary;
    return dictionary;
}

NotifyMsgTypeDictionary::NotifyMsgTypeDictionary() : defaultMsgType(intern("default")) {}

int NotifyMsgTypeDictionary::intern(const LightweightString<char>& name) {
    std::lock_guard<std::mutex> hold(mutex_);
    auto found = types_.find(name.view());
    if (found != types_.end())
        return found->second;
    names_.emplace_back(name.view());
    int type = static_cast<int>(names_.size());
    types_.emplace(names_.back(), type);
    return type;
}

LightweightString<char> NotifyMsgTypeDictionary::nameOf(int type) const {
    std::lock_guard<std::mutex> hold(mutex_);
    if (type < 1 || static_cast<size_t>(type) > names_.size())
        return LightweightString<char>("");
    return LightweightString<char>(names_[static_cast<size_t>(type) - 1]);
}
