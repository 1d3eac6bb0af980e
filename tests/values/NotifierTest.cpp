// Lists, guards and dispatch of the notifiers under the value servers.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "host/DLList.h"
#include "host/DLListIterator.h"
#include "host/MethodCallback.h"
#include "host/NotifyMsgTypeDictionary.h"
#include "host/NotifyWithDisable.h"

namespace {

struct Rec : DLListRec {
    explicit Rec(int k) : key(k) {}
    bool operator==(const DLListRec& other) const override {
        auto* r = dynamic_cast<const Rec*>(&other);
        return r && r->key == key;
    }
    int key;
};

std::vector<int> keys(const DLList& list) {
    std::vector<int> out;
    DLListIterator it(list);
    while (DLListRec* r = it.next())
        out.push_back(static_cast<Rec*>(r)->key);
    return out;
}

// A string-message listener that logs what it hears and can act on the notifier while it hears.
struct Listener {
    explicit Listener(std::string n, std::vector<std::string>* l) : name(std::move(n)), log(l) {}

    int heard(const NotifyMsg& message) {
        log->push_back(name + ":" + static_cast<const char*>(message));
        if (onHear)
            onHear();
        return 0;
    }
    Zk::Ptr<Zk::Guard> listen(GenericNotifier<NotifyMsg>& notifier, int type) {
        return notifier.registerNotification(
            Zk::Ptr<iCallbackBase<int, NotifyMsg>>(
                new MethodCallback<Listener, NotifyMsg, int>(this, &Listener::heard)),
            type);
    }

    std::string name;
    std::vector<std::string>* log;
    std::function<void()> onHear;
};

int defaultType() {
    return NotifyMsgTypeDictionary::instance().defaultMsgType;
}

} // namespace

TEST(DLList, KeepsOrderFindsByKeyAndSurvivesRemovalDuringAWalk) {
    DLList list;
    for (int k = 1; k <= 5; ++k)
        list.append(new Rec(k));
    EXPECT_EQ(keys(list), (std::vector<int>{1, 2, 3, 4, 5}));

    Rec key(3);
    DLListRec* three = list.member(key);
    ASSERT_NE(three, nullptr);
    EXPECT_NE(three, &key) << "member finds by the record's operator==, not by identity";

    // Removing the current, the next and the last record while walking; appending mid-walk.
    std::vector<int> seen;
    DLListIterator it(list);
    while (DLListRec* r = it.next()) {
        int k = static_cast<Rec*>(r)->key;
        seen.push_back(k);
        if (k == 1)
            delete list.remove(list.member(Rec(2)));
        if (k == 3) {
            delete list.remove(r);
            delete list.remove(list.last());
            list.append(new Rec(9));
        }
    }
    EXPECT_EQ(seen, (std::vector<int>{1, 3, 4}))
        << "removed records are skipped, and a record appended during the walk is not visited by it";
    EXPECT_EQ(keys(list), (std::vector<int>{1, 4, 9}));
    EXPECT_EQ(list.size(), 3u);

    Rec outsider(1);
    EXPECT_EQ(list.remove(&outsider), nullptr) << "a record not on the list is not removed";

    {
        Rec* dying = new Rec(7);
        list.append(dying);
        delete dying;
    }
    EXPECT_EQ(keys(list), (std::vector<int>{1, 4, 9})) << "a destroyed record leaves its list";

    DLList copy(list);
    EXPECT_TRUE(copy.empty()) << "records belong to one list: a copy starts empty";
}

TEST(DLList, AWalkStopsAtTheEndItStartedWith) {
    DLList list;
    list.append(new Rec(1));
    std::vector<int> seen;
    DLListIterator it(list);
    while (DLListRec* r = it.next()) {
        seen.push_back(static_cast<Rec*>(r)->key);
        if (seen.size() < 10)
            list.append(new Rec(static_cast<int>(seen.size()) + 1));
    }
    EXPECT_EQ(seen, std::vector<int>{1});

    DLList unowned;
    unowned.ownsRecords(false);
    Rec stack(5);
    unowned.append(&stack);
    unowned.clear();
    EXPECT_EQ(stack.list(), nullptr) << "a list that does not own its records only unlinks them";
}

TEST(NotifyMsgTypeDictionary, SameNameSameTypeAndDefaultIsAType) {
    auto& dictionary = NotifyMsgTypeDictionary::instance();
    int a = dictionary.intern("nodeRecAdded");
    EXPECT_EQ(dictionary.intern(String("nodeRecAdded")), a);
    EXPECT_NE(dictionary.intern("nodeRecDeleted"), a);
    EXPECT_GT(dictionary.defaultMsgType, 0);
    EXPECT_EQ(std::string(dictionary.nameOf(a).c_str()), "nodeRecAdded");
    EXPECT_TRUE(dictionary.nameOf(0).empty());
}

TEST(Notifier, DeliversInOrderByTypeAndGuardsEndRegistrations) {
    std::vector<std::string> log;
    Notifier notifier;
    Listener a("a", &log), b("b", &log), c("c", &log);
    int other = NotifyMsgTypeDictionary::instance().intern("otherType");

    Zk::Ptr<Zk::Guard> ga = a.listen(notifier, defaultType());
    Zk::Ptr<Zk::Guard> gb = b.listen(notifier, other);
    Zk::Ptr<Zk::Guard> gc = c.listen(notifier, defaultType());
    notifier.call(NotifyMsg("one"), defaultType());
    EXPECT_EQ(log, (std::vector<std::string>{"a:one", "c:one"})) << "b answers only its own type";

    log.clear();
    Zk::Ptr<Zk::Guard> copy = ga;
    ga.reset();
    notifier.call(NotifyMsg("two"), defaultType());
    EXPECT_EQ(log, (std::vector<std::string>{"a:two", "c:two"}))
        << "a copy of the guard keeps the registration";

    log.clear();
    copy.reset();
    notifier.call(NotifyMsg("three"), defaultType());
    EXPECT_EQ(log, std::vector<std::string>{"c:three"});
    EXPECT_EQ(notifier.numClients(), 2u);
}

TEST(Notifier, ListenersMayReleaseAndRegisterDuringADispatch) {
    std::vector<std::string> log;
    Notifier notifier;
    Listener a("a", &log), b("b", &log), c("c", &log), late("late", &log);
    Zk::Ptr<Zk::Guard> ga = a.listen(notifier, defaultType());
    Zk::Ptr<Zk::Guard> gb = b.listen(notifier, defaultType());
    Zk::Ptr<Zk::Guard> gc = c.listen(notifier, defaultType());
    Zk::Ptr<Zk::Guard> glate;

    // a releases itself and the still unvisited c, and registers a newcomer.
    a.onHear = [&] {
        ga.reset();
        gc.reset();
        glate = late.listen(notifier, defaultType());
    };
    notifier.call(NotifyMsg("x"), defaultType());
    EXPECT_EQ(log, (std::vector<std::string>{"a:x", "b:x"}))
        << "c was released before its turn; late came after it";

    log.clear();
    notifier.call(NotifyMsg("y"), defaultType());
    EXPECT_EQ(log, (std::vector<std::string>{"b:y", "late:y"}));

    // Re-entrant dispatch: a listener sends on the notifier that is dispatching to it.
    log.clear();
    int depth = 0;
    b.onHear = [&] {
        if (depth++ == 0)
            notifier.call(NotifyMsg("inner"), defaultType());
    };
    notifier.call(NotifyMsg("outer"), defaultType());
    EXPECT_EQ(log, (std::vector<std::string>{"b:outer", "b:inner", "late:inner", "late:outer"}));
}

TEST(Notifier, GuardsOutlivingTheirNotifierAreInert) {
    std::vector<std::string> log;
    Listener a("a", &log);
    Zk::Ptr<Zk::Guard> guard;
    {
        Notifier notifier;
        guard = a.listen(notifier, defaultType());
        EXPECT_TRUE(guard->active());
        EXPECT_EQ(guard->notifier(), &notifier);

        Notifier copy(notifier);
        EXPECT_EQ(copy.numClients(), 0u) << "a copied notifier has no clients";
    }
    EXPECT_FALSE(guard->active());
    guard.reset(); // must not touch the dead notifier
    EXPECT_TRUE(log.empty());
}

TEST(NotifyWithDisable, CountNestsAndNeverGoesBelowZeroAndDoesNotStopDelivery) {
    std::vector<std::string> log;
    NotifyWithDisable notifier;
    Listener a("a", &log);
    Zk::Ptr<Zk::Guard> g = a.listen(notifier, defaultType());

    notifier.enable();
    EXPECT_EQ(notifier.disabled_, 0);
    notifier.disable();
    notifier.disable();
    notifier.enable();
    EXPECT_TRUE(notifier.isDisabled());
    notifier.call(NotifyMsg("sent"), defaultType());
    EXPECT_EQ(log, std::vector<std::string>{"a:sent"})
        << "the count is for senders to test, not the notifier";
    EXPECT_EQ(&notifier.getNotify(), &notifier);
}
