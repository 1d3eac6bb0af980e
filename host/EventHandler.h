// EventHandler: anything that receives text messages and posted messages.
#pragma once

#include "host/IdStamp.h"
#include "host/LightweightString.h"
#include "host/iObject.h"

class Glob;

// Every handler gets a unique stamp at construction, so that a message posted to it can check,
// on arrival, that the handler at that address is still the one it was posted to.
class EventHandler {
public:
    enum eResult { NotHandled = 0, Handled = 1 };

    EventHandler();
    EventHandler(const EventHandler&);
    EventHandler& operator=(const EventHandler&) { return *this; }
    virtual ~EventHandler();

    // A command from another widget (or a menu); 1 when the handler acted, 0 when not.
    virtual int handleMessageEvent(const LightweightString<char>& msg, Glob* sender);
    // A message carrying data; by default the data is dropped and the text handled.
    virtual int handleDataMessageEvent(const LightweightString<char>& msg, Glob* sender,
                                       Zk::Ptr<iObject> data);

    const IdStamp& handlerId() const { return id_; }
    // Whether handler still exists and carries the stamp.
    static bool valid(const EventHandler* handler, const IdStamp& id);

private:
    IdStamp id_;
};

// Posts a message with data to handler; it is delivered on the user-interface thread from its
// event loop, and dropped if the handler no longer exists then. Safe from any thread.
void sendMessageWithData(const LightweightString<char>& msg, EventHandler* handler, Zk::Ptr<iObject> data,
                         Glob* sender);
// 0 on the user-interface thread; another number, stable per thread, elsewhere.
int co_pid();
// Delivers the messages posted so far; what the event loop does on its own.
int deliverPostedMessages();
