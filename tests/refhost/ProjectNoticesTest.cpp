// The project's notices: a change of the view transform tells of new pictures, a change of the
// look tells of a new look, and setting either as it stands tells no one.
#include "host/CurrentProject.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

struct Heard : iCallbackBase<int, NotifierEvent<Zk::CurrentProject::ChangeDescription>> {
    int invoke(const NotifierEvent<Zk::CurrentProject::ChangeDescription>& e) override {
        flags.push_back(e.value.flags);
        return 0;
    }
    std::vector<unsigned> flags;
};

} // namespace

TEST(ProjectNotices, PicturesAndLookAreToldOnlyWhenTheyChange) {
    using Zk::CurrentProject;
    Zk::Ptr<Heard> heard(new Heard);
    Zk::Ptr<Zk::Guard> guard = CurrentProject::addListener(heard);
    const String lut = CurrentProject::getViewLUT();
    const bool lutOn = CurrentProject::getViewLUTEnabled();

    CurrentProject::setViewLUT("ACEScct", true);
    CurrentProject::setViewLUT("ACEScct", true);
    CurrentProject::setViewLUT("ACEScct", false);
    EXPECT_EQ(heard->flags,
              (std::vector<unsigned>{CurrentProject::kPicturesChanged, CurrentProject::kPicturesChanged}))
        << "switching the transform off is a change too; setting it again is none";

    heard->flags.clear();
    CurrentProject::setLook("dark");
    CurrentProject::setLook("dark");
    EXPECT_EQ(CurrentProject::getLook(), String("dark"));
    CurrentProject::setLook("");
    EXPECT_EQ(heard->flags,
              (std::vector<unsigned>{CurrentProject::kLookChanged, CurrentProject::kLookChanged}));

    guard = nullptr;
    heard->flags.clear();
    CurrentProject::setLook("light");
    EXPECT_TRUE(heard->flags.empty()) << "a dropped guard ends the notices";
    CurrentProject::setLook("");
    CurrentProject::setViewLUT(lut, lutOn);
}
