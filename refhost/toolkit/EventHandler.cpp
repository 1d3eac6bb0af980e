// EventHandler: identity stamps, the existence guard and messages posted to the UI thread.
#include "host/EventHandler.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <atomic>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <unordered_map>

#include "host/Glob.h"
#include "refhost/toolkit/UiThread.h"

namespace {

struct Posted {
    LightweightString<char> msg;
    EventHandler* handler;
    IdStamp id;
    Zk::Ptr<iObject> data;
    Glob* sender;
};

std::mutex& lock() {
    static std::mutex m;
    return m;
}
std::unordered_map<const EventHandler*, IdStamp>& registry() {
    static std::unordered_map<const EventHandler*, IdStamp> r;
    return r;
}
std::deque<Posted>& queue() {
    static std::deque<Posted> q;
    return q;
}
std::atomic<uint32_t> nextId{1};

IdStamp freshId() {
    return IdStamp(0x48414e44u, 0, nextId.fetch_add(1));
}

} // namespace

std::thread::id& toolkit::uiThread() {
    static std::thread::id id = std::this_thread::get_id();
    return id;
}

EventHandler::EventHandler() : id_(freshId()) {
    std::lock_guard<std::mutex> g(lock());
    registry()[this] = id_;
}

EventHandler::EventHandler(const EventHandler&) : EventHandler() {}

EventHandler::~EventHandler() {
    std::lock_guard<std::mutex> g(lock());
    registry().erase(this);
}

int EventHandler::handleMessageEvent(const LightweightString<char>&, Glob*) {
    return 0;
}

int EventHandler::handleDataMessageEvent(const LightweightString<char>& msg, Glob* sender, Zk::Ptr<iObject>) {
    return handleMessageEvent(msg, sender);
}

bool EventHandler::valid(const EventHandler* handler, const IdStamp& id) {
    std::lock_guard<std::mutex> g(lock());
    auto it = registry().find(handler);
    return it != registry().end() && it->second == id;
}

void sendMessageWithData(const LightweightString<char>& msg, EventHandler* handler, Zk::Ptr<iObject> data,
                         Glob* sender) {
    if (!handler)
        return;
    bool wake;
    {
        std::lock_guard<std::mutex> g(lock());
        auto it = registry().find(handler);
        if (it == registry().end())
            return;
        wake = queue().empty();
        queue().push_back(Posted{msg, handler, it->second, std::move(data), sender});
    }
    if (wake && QCoreApplication::instance())
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [] { deliverPostedMessages(); }, Qt::QueuedConnection);
}

int co_pid() {
    if (std::this_thread::get_id() == toolkit::uiThread())
        return 0;
    int h = static_cast<int>(std::hash<std::thread::id>()(std::this_thread::get_id()) & 0x7fffffff);
    return h == 0 ? 1 : h;
}

int deliverPostedMessages() {
    if (co_pid() != 0)
        return 0;
    int n = 0;
    for (;;) {
        Posted p;
        {
            std::lock_guard<std::mutex> g(lock());
            if (queue().empty())
                break;
            p = std::move(queue().front());
            queue().pop_front();
        }
        if (!EventHandler::valid(p.handler, p.id))
            continue;
        Glob* sender = is_good_glob_ptr(p.sender) ? p.sender : nullptr;
        p.handler->handleDataMessageEvent(p.msg, sender, p.data);
        ++n;
    }
    return n;
}
