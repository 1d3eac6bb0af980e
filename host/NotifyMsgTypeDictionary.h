// NotifyMsgTypeDictionary: the process-wide table of notification types by name.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "host/LightweightString.h"

// Gives every name one number for the life of the process, the same to every library that asks,
// so that senders and receivers that share only a name meet on the same type. Numbers start at 1
// in the order names are first interned; 0 is never a type. Safe to use from static initialisers
// and from any thread.
class NotifyMsgTypeDictionary {
public:
    static NotifyMsgTypeDictionary& instance();

    int intern(const LightweightString<char>& name);
    // The name of a type, or an empty string for a number never handed out.
    LightweightString<char> nameOf(int type) const;

private:
    NotifyMsgTypeDictionary();

    mutable std::mutex mutex_;
    std::map<std::string, int, std::less<>> types_;
    std::vector<std::string> names_; // by type - 1

public:
    // The type of all value-server traffic and of the batch messages of value managers.
    const int defaultMsgType;
};
