// json::MemberSink: what json::parseMembers tells of a document whose top is an object, member by
// member as each is read, so that a large document is never held whole.
#pragma once

#include <string>

#include "refhost/json/Json.h"

namespace json {

class MemberSink {
public:
    virtual ~MemberSink() = default;

    // Whether the items of the array member `key` come one by one through `item`, each as soon as
    // it is read, instead of with the member (which then comes with an empty array).
    virtual bool streamsItems(const std::string& key) = 0;
    virtual bool item(const std::string& key, Value value) = 0;
    // A member of the top-level object, once its value is read. Names that repeat come each time.
    virtual bool member(std::string key, Value value) = 0;
    // Each returns false to stop the read.
};

// Parses as `parse` does, telling `sink` of the top-level object's members in text order instead
// of building the object. A top that is no object is a fault. False with `error` filled on the
// first fault, or with an empty message and the place reached when the sink stopped the read.
bool parseMembers(const std::string& text, MemberSink& sink, ParseError& error);

} // namespace json
