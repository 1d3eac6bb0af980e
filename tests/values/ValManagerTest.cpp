// Value managers: vetoes, rewrites, claims and batches.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/MethodCallback.h"
#include "values/ValClient.h"
#include "values/ValManager.h"

namespace {

struct Recorder : ValClient<double> {
    void valChanged(const ValServerEvent<double>& e) override { values.push_back(e.value); }
    std::vector<double> values;
};

// An owner in the way a view is one: it derives from its manager and keeps its servers inside.
class View : public ValManager<double, View> {
public:
    View() {
        zoom = 1.0;
        centreX = 0.0;
        addServerCallback(&zoom, &View::limitZoom);
        setManagerFor(&centreX);
    }

    bool limitZoom(ValServer<double>* server, double& value) {
        asked.push_back(server);
        if (value <= 0.0)
            return false;
        if (value > 8.0)
            value = 8.0;
        return true;
    }
    bool refuseAll(ValServer<double>*, double&) { return false; }

    using ValManager::addServerCallback;
    using ValManager::endBatchOperation;
    using ValManager::notifyValChanged;
    using ValManager::serverRecs;
    using ValManager::setManagerFor;
    using ValManager::startBatchOperation;

    ValServer<double> zoom;
    ValServer<double> centreX;
    std::vector<ValServer<double>*> asked;
};

// A manager whose getNotify() hands out another notifier, so the two share one batch.
class Follower : public ValManager<double, Follower> {
public:
    explicit Follower(NotifyWithDisable& leader) : leader_(leader) {}
    NotifyWithDisable& getNotify() override { return leader_; }
    using ValManager::endBatchOperation;
    using ValManager::startBatchOperation;

private:
    NotifyWithDisable& leader_;
};

struct Unrelated {
    bool refuse(ValServer<double>*, double&) { return false; }
};

// Not an Unrelated, so its callbacks can never be asked.
class Detached : public ValManager<double, Unrelated> {
public:
    using ValManager::addServerCallback;
};

struct BatchLog {
    int heard(const NotifyMsg& m) {
        texts.push_back(static_cast<const char*>(m));
        depths.push_back(notifier->disabled_);
        return 0;
    }
    Zk::Ptr<Zk::Guard> listen(NotifyWithDisable& n) {
        notifier = &n;
        return n.registerNotification(
            Zk::Ptr<iCallbackBase<int, NotifyMsg>>(
                new MethodCallback<BatchLog, NotifyMsg, int>(this, &BatchLog::heard)),
            NotifyMsgTypeDictionary::instance().defaultMsgType);
    }
    NotifyWithDisable* notifier = nullptr;
    std::vector<std::string> texts;
    std::vector<int> depths;
};

} // namespace

TEST(ValManager, VetoesAndRewritesReachTheServerAndItsClients) {
    View view;
    Recorder client;
    client.registerWith(&view.zoom);

    EXPECT_TRUE(view.zoom.setVal(20.0));
    EXPECT_EQ(view.zoom.getVal(), 8.0) << "the manager's rewrite is what is stored";
    ASSERT_EQ(client.values.size(), 1u);
    EXPECT_EQ(client.values[0], 8.0) << "clients see the rewritten value";

    EXPECT_FALSE(view.zoom.setVal(-1.0));
    EXPECT_EQ(view.zoom.getVal(), 8.0);
    EXPECT_EQ(client.values.size(), 1u) << "a vetoed change sends nothing";
    EXPECT_EQ(view.asked, (std::vector<ValServer<double>*>{&view.zoom, &view.zoom}));

    EXPECT_TRUE(view.centreX.setVal(-100.0)) << "a server claimed without a callback takes every value";
    EXPECT_EQ(view.centreX.getVal(), -100.0);
    EXPECT_EQ(view.asked.size(), 2u);

    Detached detached;
    ValServer<double> loose;
    view.addServerCallback(&loose, &View::refuseAll);
    detached.addServerCallback(&loose, &Unrelated::refuse);
    EXPECT_TRUE(loose.setVal(1.0)) << "a manager that is not part of its owner type allows every change";
    EXPECT_EQ(loose.manager(), &detached);
}

TEST(ValManager, ClaimsRecordsAndReleases) {
    View a, b;
    ValServer<double> s;
    s = 0.0;

    a.addServerCallback(&s, &View::refuseAll);
    EXPECT_FALSE(s.setVal(1.0));
    b.setManagerFor(&s);
    EXPECT_EQ(s.manager(), &b) << "the second manager holds the server";
    EXPECT_EQ(a.serverRecs().size(), 1u) << "only a's zoom is left: the claim by b released s from a";
    EXPECT_TRUE(s.setVal(1.0)) << "a's callback is no longer asked";

    // A server that this manager already holds ends up with no record, by the order of the steps.
    b.addServerCallback(&s, &View::refuseAll);
    EXPECT_EQ(b.serverRecs().size(), 1u) << "s was b's: the release of step 3 removed the new record";
    EXPECT_EQ(s.manager(), &b);
    EXPECT_TRUE(s.setVal(2.0));
    ValServer<double> t;
    b.addServerCallback(&t, &View::refuseAll);
    EXPECT_EQ(b.serverRecs().size(), 2u);
    EXPECT_FALSE(t.setVal(1.0));
    b.addServerCallback(&t, &View::refuseAll);
    EXPECT_EQ(b.serverRecs().size(), 1u) << "a second addServerCallback leaves the server with no record";
    EXPECT_TRUE(t.setVal(1.0));

    // Records are found by server alone, whatever the key's callback.
    ValServer<double> u;
    b.addServerCallback(&u, &View::refuseAll);
    static_cast<ValManagerBase<double>&>(b).releaseServer(&u);
    EXPECT_EQ(b.serverRecs().size(), 1u);
    EXPECT_EQ(u.manager(), &b) << "releaseServer leaves the server's link to the caller";
    ValServer<double> stranger;
    static_cast<ValManagerBase<double>&>(b).releaseServer(&stranger); // unknown server: nothing happens
    EXPECT_EQ(b.serverRecs().size(), 1u);

    {
        ValServer<double> shortLived;
        b.addServerCallback(&shortLived, &View::refuseAll);
        EXPECT_EQ(b.serverRecs().size(), 2u);
    }
    EXPECT_EQ(b.serverRecs().size(), 1u) << "a server that dies releases itself from its manager";

    // Claiming a server again without a callback goes through this manager's own release too.
    ValServer<double> v;
    b.addServerCallback(&v, &View::refuseAll);
    b.setManagerFor(&v);
    EXPECT_EQ(b.serverRecs().size(), 1u) << "setManagerFor on a server of its own drops its record";
    EXPECT_EQ(v.manager(), &b);
    EXPECT_TRUE(v.setVal(1.0));
}

TEST(ValManager, ADyingServerLeavesItsManagerBeforeItsClientsHear) {
    View view;
    struct Death {
        int kind = -1, detail = -1;
        double value = 0.0;
        ValManagerBase<double>* manager = nullptr;
        unsigned records = 0;
    } death;
    auto* server = new ValServer<double>;
    *server = 6.5;
    view.addServerCallback(server, &View::limitZoom);
    ASSERT_EQ(view.serverRecs().size(), 2u);

    struct Listener {
        int heard(const ValServerEvent<double>& e) {
            if (e.kind == ValServerEvent<double>::kDestroyed)
                *death = {e.kind, e.detail, e.value, server->manager(), view->serverRecs().size()};
            return 0;
        }
        Death* death;
        ValServer<double>* server;
        View* view;
    } listener{&death, server, &view};
    Zk::Ptr<Zk::Guard> guard = server->registerNotification(
        Zk::Ptr<iCallbackBase<int, ValServerEvent<double>>>(
            new MethodCallback<Listener, ValServerEvent<double>, int>(&listener, &Listener::heard)),
        NotifyMsgTypeDictionary::instance().defaultMsgType);

    delete server;
    EXPECT_EQ(death.kind, 2);
    EXPECT_EQ(death.detail, 4);
    EXPECT_EQ(death.value, 6.5) << "the death event carries the last value";
    EXPECT_EQ(death.manager, nullptr) << "the server has let go of its manager before it tells";
    EXPECT_EQ(death.records, 1u) << "and the manager has already forgotten it";
    EXPECT_FALSE(guard->active());
}

TEST(ValManager, BatchesNestAndAnUnmatchedEndStillEnds) {
    View view;
    BatchLog log;
    Zk::Ptr<Zk::Guard> guard = log.listen(view);

    EXPECT_TRUE(view.startBatchOperation());
    EXPECT_FALSE(view.startBatchOperation());
    EXPECT_EQ(view.disabled_, 2);
    EXPECT_FALSE(view.endBatchOperation());
    EXPECT_TRUE(view.endBatchOperation());
    EXPECT_EQ(log.texts, (std::vector<std::string>{"StartBatch", "EndBatch"}));
    EXPECT_EQ(log.depths, (std::vector<int>{0, 0})) << "both messages are sent with the depth at 0";

    Recorder client;
    client.registerWith(&view.zoom);
    view.startBatchOperation();
    view.zoom = 2.0;
    EXPECT_EQ(client.values.size(), 1u) << "a batch does not hold back value clients";
    view.endBatchOperation();

    log.texts.clear();
    EXPECT_TRUE(view.endBatchOperation()) << "an end with no batch open ends";
    EXPECT_EQ(view.disabled_, 0) << "and leaves the depth at 0";
    EXPECT_EQ(log.texts, std::vector<std::string>{"EndBatch"});
}

TEST(ValManager, AManagerRedirectingGetNotifySharesThatBatch) {
    NotifyWithDisable leader;
    Follower follower(leader);
    BatchLog onLeader, onFollower;
    Zk::Ptr<Zk::Guard> g1 = onLeader.listen(leader);
    Zk::Ptr<Zk::Guard> g2 = onFollower.listen(follower);

    leader.disable();
    EXPECT_FALSE(follower.startBatchOperation()) << "the leader's count is the batch depth";
    EXPECT_EQ(leader.disabled_, 2);
    EXPECT_EQ(follower.disabled_, 0);
    leader.enable();
    EXPECT_TRUE(follower.endBatchOperation());
    EXPECT_EQ(onLeader.texts, std::vector<std::string>{"EndBatch"}) << "messages go out on the leader";
    EXPECT_TRUE(onFollower.texts.empty());
}

TEST(ValManager, RemembersTheServerBuiltBeforeItAndCopiesItsRecords) {
    ValServer<double> before;
    before = 4.0;
    Recorder client;
    client.registerWith(&before);
    View view; // its own servers are built after its manager part
    view.notifyValChanged();
    ASSERT_EQ(client.values.size(), 1u);
    EXPECT_EQ(client.values[0], 4.0);

    View copy(view);
    ASSERT_EQ(copy.serverRecs().size(), 1u);
    EXPECT_EQ(copy.serverRecs()[0].server, &view.zoom)
        << "a copied manager holds the original's records as they are";
    EXPECT_EQ(copy.zoom.manager(), nullptr) << "a copied server is unmanaged";
}
