// The record of the value server constructed last.
#include "values/LastValServer.h"

#include <atomic>

namespace {

std::atomic<LastValServer*> lastConstructed{nullptr};

} // namespace

LastValServer::LastValServer() {
    lastConstructed.store(this);
}

LastValServer::LastValServer(const LastValServer&) {
    lastConstructed.store(this);
}

LastValServer::~LastValServer() {
    LastValServer* self = this;
    lastConstructed.compare_exchange_strong(self, nullptr);
}

LastValServer* LastValServer::getLastValServer() {
    return lastConstructed.load();
}
