#include "conversion/job_details.h"

#include <gmock/gmock.h>

#include "support/untranslated.h"
#include "tests/conversion/job_fixture.h"

namespace reelvane {
namespace {

TEST_F(JobTest, DetailsFollowThePreferencesUntilTheStartAndNoFurther) {
    const auto details = [this] {
        return jobDetails(kUntranslated, *job, controller.settings, progressFile.parent_path());
    };
    const auto sound = [&details] { return trackLine(details().tracks.at(1)); };
    job->fileInfo().audioTrackInformation = {{"#1: eng (mp3)", 48000}};
    EXPECT_EQ(sound(), "#1 eng mp3 → AAC stereo 128k");
    controller.settings.audio = {.conversionPreset = 2, .customMP3Handling = 7};
    EXPECT_THAT(details().problem, testing::HasSubstr("mp3 audio is not valid (7)"));
    EXPECT_TRUE(details().tracks.empty() && details().arguments.empty());
    controller.settings.audio = {.conversionPreset = 2};
    const auto before = details();
    start();
    controller.settings.audio = {};
    finish();
    EXPECT_EQ(sound(), "#1 eng mp3 → AC-3 stereo 192k");
    EXPECT_EQ(before.arguments, child().request.arguments);
    EXPECT_EQ(before.arguments, details().arguments);
}

}  // namespace
}  // namespace reelvane
