// The audio sample opened on a Vob with its effect monitor, for the routing tests.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "host/CelEventPair.h"
#include "host/CompoundEffectMonitor.h"
#include "host/Edit.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/ToolkitApp.h"
#include "host/UifStd.h"
#include "host/Vob.h"
#include "host/VobManager.h"
#include "refhost/edit/EditFile.h"

namespace routingtest {

// Channels and nodes of samples/audio.edit.json.
inline const IdStamp kV1("6.0.1"), kA1("6.0.2"), kA2("6.0.3"), kA3("6.0.4"), kA4("6.0.5"), kA5("6.0.6");
inline const IdStamp kCompressor("60.0.1"), kReverb("60.0.5"), kEqualiser("60.0.2"), kGain("60.0.3"),
    kDialogue("61.0.1"), kCrossfade("60.0.6"), kLimiter("60.0.7"), kQuietGain("60.0.8"), kNarration("61.0.5");

struct AudioSample : ::testing::Test {
    void SetUp() override {
        ensureToolkitApplication();
        std::string error;
        edit = EditFile::open(std::string(NODEDESK_SOURCE_DIR) + "/samples/audio.edit.json", error);
        ASSERT_TRUE(edit) << error;
        vob = VobManager::instance().vobFor(edit, "routing-test");
        vob->storeCurrentTime(5.0);
        monitor = std::make_unique<CompoundEffectMonitor>(vob.get());
    }
    void TearDown() override {
        monitor.reset();
        VobManager::instance().reset();
    }

    Zk::Ptr<EffectInstance_opu4h5a4j> fx(const IdStamp& id) const {
        return Zk::dynamicCast<EffectInstance_opu4h5a4j>(edit->findNode(id));
    }
    // The node feeding input 0 of a node.
    IdStamp below(const IdStamp& id) const {
        auto n = edit->findNode(id);
        return n && n->getNumInputs() > 0 && n->input(0).node ? n->input(0).node->getId() : IdStamp();
    }
    // The root node that a channel plays at a time.
    IdStamp head(const IdStamp& chan, double t) const {
        auto n = CelEventPair(edit, chan, t).getEffectHandle();
        return n ? n->getId() : IdStamp();
    }
    std::string text() const { return EditFile::saveToText(*edit); }

    EditPtr edit;
    Zk::Ptr<Vob> vob;
    std::unique_ptr<CompoundEffectMonitor> monitor;
};

} // namespace routingtest
