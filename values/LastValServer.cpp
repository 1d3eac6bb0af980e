// The record of the value server constructed last.
#include "values/LastValServer.h"

#include <atomic>

namespace {

std::atomic<LastValServer*> lastConstructed{nullptr};

} // namespace

// Servers are made by the thousand when records are read: each construction is a plain store,
// and a destruction exchanges only when it is the last one, with no fence in either.
LastValServer::LastValServer() {
    lastConstructed.store(this, std::memory_order_release);
}

LastValServer::LastValServer(const LastValServer&) {
    lastConstructed.store(this, std::memory_order_release);
}

LastValServer::~LastValServer() {
    LastValServer* self = this;
    if (lastConstructed.load(std::memory_order_relaxed) == self)
        lastConstructed.compare_exchange_strong(self, nullptr, std::memory_order_acq_rel);
}

LastValServer* LastValServer::getLastValServer() {
    return lastConstructed.load(std::memory_order_acquire);
}
