// The parameter window of an audio plug-in: one field per parameter, and an edit in a field is
// an undoable change of the effect.
#include "host/PlugInUIAdaptorFactory.h"

#include "host/AudioPlugIns.h"
#include "host/GlobManager.h"
#include "host/TextBox.h"
#include "tests/routing/RoutingTestSupport.h"

using namespace routingtest;

namespace {

using PlugIn = AudioSample;

TEST_F(PlugIn, TagsAndAdaptors) {
    EXPECT_TRUE(isAudioPlugin(fx(kReverb)->tagTypeId()));
    EXPECT_FALSE(isAudioPlugin(fx(kGain)->tagTypeId()));
    EXPECT_FALSE(isAudioPlugin("AudioPlug"));
    EXPECT_FALSE(PlugInUIAdaptorFactory::instance().createAdaptorFor(nullptr, String()));
}

TEST_F(PlugIn, TheWindowEditsParametersAsUndoableSteps) {
    Zk::Ptr<iPlugInUIAdaptor> a = PlugInUIAdaptorFactory::instance().createAdaptorFor(fx(kReverb), String());
    ASSERT_TRUE(a);
    a->setup();
    EXPECT_EQ(a->numParameters(), 2);
    Glob* window = a->openWindow();
    ASSERT_TRUE(window);
    std::vector<TextBox*> fields;
    for (Glob* g : window->children())
        if (auto* t = dynamic_cast<TextBox*>(g); t && t->isEditable())
            fields.push_back(t);
    ASSERT_EQ(fields.size(), 2u) << "mix and room";
    EXPECT_EQ(fields[0]->getText().str(), L"0.25");

    const std::string before = text();
    fields[0]->userEdited(WString(L"0.5"));
    EXPECT_DOUBLE_EQ(fx(kReverb)->param("mix"), 0.5);
    EXPECT_EQ(vob->undoDepth(), 1u);
    fields[1]->userEdited(WString(L"loud"));
    EXPECT_DOUBLE_EQ(fx(kReverb)->param("room"), 0.6) << "text that is no number changes nothing";
    EXPECT_EQ(vob->undoDepth(), 1u);
    ASSERT_TRUE(vob->undoRequest());
    EXPECT_EQ(text(), before);
    GlobManager::instance().destroyAll();
}

} // namespace
