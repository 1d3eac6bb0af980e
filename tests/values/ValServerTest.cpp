// Value servers and their single, observing and multiple clients.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "values/MultiValClient.h"
#include "values/ValClient.h"
#include "values/ValObserver.h"
#include "values/ValServer.h"

namespace {

template <class T>
struct Recorder : ValClient<T> {
    void valChanged(const ValServerEvent<T>& e) override {
        events.push_back(e);
        if (onChange)
            onChange(e);
    }
    void valPreChanged(const ValServerEvent<T>& e) override { pre.push_back(e); }

    std::vector<ValServerEvent<T>> events;
    std::vector<ValServerEvent<T>> pre;
    std::function<void(const ValServerEvent<T>&)> onChange;
    using ValClient<T>::guard_;
};

struct TwoValues : ValObserverClient {
    TwoValues() : zoomObs(this), centreObs(this) {}
    void notifyValChanged(const ValObserverBase& o) override {
        fired.push_back(&o == &zoomObs ? "zoom" : &o == &centreObs ? "centre" : "?");
    }
    ValObserver<double> zoomObs;
    ValObserver<XY<double>> centreObs;
    std::vector<std::string> fired;
};

struct Multi : MultiValClient<double> {
    void handleValChanged(ValServer<double>* s) override { changed.push_back(s); }
    void handleBatchStart() override { ++batchStarts; }
    std::vector<ValServer<double>*> changed;
    int batchStarts = 0;
};

} // namespace

TEST(ValServer, UnmanagedServerTakesEveryValueAndNotifiesEvenWhenUnchanged) {
    ValServer<double> zoom;
    zoom = 1.0;
    Recorder<double> client;
    client.registerWith(&zoom);

    EXPECT_TRUE(zoom.setVal(2.5));
    EXPECT_TRUE(zoom.setVal(2.5));
    ASSERT_EQ(client.events.size(), 2u) << "setting the value a server already holds still notifies";
    for (const auto& e : client.events) {
        EXPECT_EQ(e.value, 2.5);
        EXPECT_EQ(e.kind, 0);
        EXPECT_EQ(e.detail, 4);
    }

    ValServer<double> other;
    other = 7.0;
    zoom = other;
    EXPECT_EQ(zoom.getVal(), 7.0);
    EXPECT_EQ(client.events.size(), 3u) << "assigning a server goes through setVal";

    zoom.issueValPreChanged(4);
    ASSERT_EQ(client.pre.size(), 1u);
    EXPECT_EQ(client.pre[0].kind, 1);
    EXPECT_EQ(client.events.size(), 3u);
}

TEST(ValServer, EqualityAndCopiesConcernTheValueOnly) {
    ValServer<double> a, b;
    a = 3.0;
    b = 3.0;
    EXPECT_TRUE(a == b) << "two servers with equal values compare equal";
    b = 4.0;
    EXPECT_FALSE(a == b);

    ValServer<XY<double>> p, q;
    EXPECT_EQ(p.getVal().x, 0.0) << "an XY server starts at (0, 0)";
    p = XY<double>(1, 2);
    q = XY<double>(1, 3);
    EXPECT_FALSE(p == q);
    q = XY<double>(1, 2);
    EXPECT_TRUE(p == q);

    ValServer<bool> on, off;
    on = true;
    off = false;
    EXPECT_FALSE(on == off);

    Recorder<double> client;
    client.registerWith(&a);
    ValServer<double> copy(a);
    EXPECT_EQ(copy.getVal(), 3.0);
    EXPECT_EQ(copy.numClients(), 0u) << "clients are not copied";
    EXPECT_EQ(copy.manager(), nullptr);
    copy = 9.0;
    EXPECT_TRUE(client.events.empty());
}

TEST(ValClient, RegistrationDisablingAndServerDeath) {
    auto server = std::make_unique<ValServer<double>>();
    *server = 0.0;
    Recorder<double> client;
    client.registerWith(server.get());
    Zk::Guard* first = client.guard_.get();
    client.registerWith(server.get());
    EXPECT_EQ(client.guard_.get(), first)
        << "registering with the server already held keeps the registration";
    EXPECT_EQ(server->numClients(), 1u);

    client.disable();
    client.disable();
    *server = 1.0;
    client.enable();
    *server = 2.0;
    server->issueValPreChanged(7);
    EXPECT_TRUE(client.events.empty()) << "disables nest";
    EXPECT_TRUE(client.pre.empty()) << "a disabled client misses announcements too";
    client.enable();
    client.enable(); // lowering never goes below zero
    *server = 3.0;
    ASSERT_EQ(client.events.size(), 1u) << "changes made while disabled are not queued";
    EXPECT_EQ(client.events[0].value, 3.0);
    server->issueValPreChanged(7);
    ASSERT_EQ(client.pre.size(), 1u);
    EXPECT_EQ(client.pre[0].detail, 7) << "the sender's code is handed through";
    EXPECT_EQ(client.pre[0].value, 3.0);

    client.disable();
    server.reset();
    EXPECT_EQ(client.server(), nullptr) << "a disabled client still hears of its server's death";
    EXPECT_FALSE(client.guard_);
    EXPECT_EQ(client.events.size(), 1u) << "death is not a change";

    ValServer<double> next;
    next = 1.0;
    client.enable();
    client.registerWith(&next);
    client.registerWith(nullptr);
    next = 2.0;
    EXPECT_EQ(client.events.size(), 1u) << "registerWith(nullptr) ends the registration";
    EXPECT_EQ(next.numClients(), 0u);

    {
        Recorder<double> shortLived;
        shortLived.registerWith(&next);
        EXPECT_EQ(next.numClients(), 1u);
    }
    EXPECT_EQ(next.numClients(), 0u) << "a destroyed client leaves the server's list";
}

TEST(ValClient, CallbackMaySetTheServerThatIsDispatchingToIt) {
    ValServer<double> zoom;
    zoom = 0.0;
    Recorder<double> clamp, watcher;
    clamp.registerWith(&zoom);
    watcher.registerWith(&zoom);
    clamp.onChange = [&](const ValServerEvent<double>& e) {
        if (e.value > 10.0)
            zoom = 10.0;
    };

    zoom = 50.0;
    EXPECT_EQ(zoom.getVal(), 10.0);
    ASSERT_EQ(watcher.events.size(), 2u);
    EXPECT_EQ(watcher.events[0].value, 10.0) << "the inner dispatch completes before the outer goes on";
    EXPECT_EQ(watcher.events[1].value, 50.0) << "each event carries the value at the moment it was sent";
}

TEST(ValClient, XYEventsAreCopiesOfTheValue) {
    ValServer<XY<double>> centre;
    Recorder<XY<double>> client;
    client.registerWith(&centre);
    centre = XY<double>(1.5, -2.5);
    centre = XY<double>(3, 4);
    ASSERT_EQ(client.events.size(), 2u);
    EXPECT_EQ(client.events[0].value, XY<double>(1.5, -2.5)) << "a kept event does not follow the server";
    EXPECT_EQ(client.events[1].value, XY<double>(3, 4));

    auto dying = std::make_unique<ValServer<XY<double>>>();
    Recorder<XY<double>> last;
    last.registerWith(dying.get());
    *dying = XY<double>(8, 9);
    dying.reset();
    EXPECT_EQ(last.server(), nullptr);
}

TEST(ValClient, OnlyTheLow16BitsOfTheClientCountAreTested) {
    // With exactly 65536 clients the early test reads 0 and nothing is sent, by design.
    ValServer<double> server;
    server = 0.0;
    std::vector<std::unique_ptr<Recorder<double>>> clients(65536);
    for (auto& c : clients) {
        c = std::make_unique<Recorder<double>>();
        c->registerWith(&server);
    }
    server = 1.0;
    EXPECT_TRUE(clients.front()->events.empty());
    Recorder<double> one_more;
    one_more.registerWith(&server);
    server = 2.0;
    EXPECT_EQ(clients.front()->events.size(), 1u);
    EXPECT_EQ(one_more.events.size(), 1u);
}

TEST(ValObserver, TellsItsOwnerWhichObserverFired) {
    ValServer<double> zoom;
    ValServer<XY<double>> centre;
    TwoValues owner;
    owner.zoomObs.registerWith(&zoom);
    owner.centreObs.registerWith(&centre);
    zoom = 2.0;
    centre = XY<double>(1, 1);
    EXPECT_EQ(owner.fired, (std::vector<std::string>{"zoom", "centre"}));

    ValObserver<double> orphan;
    orphan.registerWith(&zoom);
    zoom = 3.0; // no owner: nothing to tell, nothing breaks
    EXPECT_EQ(owner.fired.size(), 3u);
}

TEST(MultiValClient, WatchesSeveralServersOnceEachAndForgetsTheDead) {
    ValServer<double> x, y;
    auto z = std::make_unique<ValServer<double>>();
    x = 0;
    y = 0;
    *z = 0;
    Multi client;
    client.registerWith(&x);
    client.registerWith(&y);
    client.registerWith(&x);
    client.registerWith(z.get());
    EXPECT_EQ(client.numServers(), 3u) << "a server is registered with once";

    y = 1;
    x = 2;
    EXPECT_EQ(client.changed, (std::vector<ValServer<double>*>{&y, &x}));

    client.disable();
    x = 3;
    client.enable();
    EXPECT_EQ(client.changed.size(), 2u) << "a disabled client ignores changes";

    EXPECT_TRUE(client.deregisterFrom(&y));
    EXPECT_FALSE(client.deregisterFrom(&y));
    y = 5;
    EXPECT_EQ(client.changed.size(), 2u);

    z.reset();
    EXPECT_EQ(client.numServers(), 1u) << "a dead server is forgotten";
    EXPECT_TRUE(client.isRegisteredWith(&x));

    client.notify(NotifyMsg("StartBatch"));
    EXPECT_EQ(client.batchStarts, 1);
}

TEST(LastValServer, NamesTheServerConstructedLastWhileItLives) {
    ValServer<double> first;
    EXPECT_EQ(LastValServer::getLastValServer(), &first);
    {
        ValServer<bool> second;
        EXPECT_EQ(LastValServer::getLastValServer(), &second);
    }
    EXPECT_EQ(LastValServer::getLastValServer(), nullptr) << "a dead server is never handed out";
}
