// EventHandlerExistenceCheck: a guard that lets a callback through only while its event handler
// still exists.
#pragma once

#include "host/EventHandler.h"
#include "host/IdStamp.h"
#include "host/iCallbackBase.h"

// Answers 1 while the handler at the stored address is still the one whose stamp was taken, 0
// once it has gone (or another handler took its place).
template <class E>
class EventHandlerExistenceCheck : public iCallbackBase<int, E> {
public:
    explicit EventHandlerExistenceCheck(const EventHandler* handler)
        : handler_(handler), id_(handler ? handler->handlerId() : IdStamp()) {}

    int invoke(const E&) override { return EventHandler::valid(handler_, id_) ? 1 : 0; }

private:
    const EventHandler* handler_;
    IdStamp id_;
};
