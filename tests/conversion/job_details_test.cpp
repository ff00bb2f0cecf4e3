#include "conversion/job_details.h"

#include <gmock/gmock.h>

#include "tests/conversion/job_fixture.h"

namespace reelvane {
namespace {

class JobDetailsTest : public JobTest {
protected:
    [[nodiscard]] JobDetails details() const {
        return jobDetails(*job, controller.settings, progressFile.parent_path());
    }
    [[nodiscard]] std::string sound() const { return trackLine(details().tracks.at(1)); }
};

TEST_F(JobDetailsTest, FollowThePreferencesUntilTheStartAndNoFurther) {
    job->fileInfo().audioTrackInformation = {{"#1: eng (mp3)", 48000}};
    EXPECT_EQ(sound(), "#1 eng mp3 → AAC stereo 128k");
    controller.settings.audio = {.conversionPreset = 2, .customMP3Handling = 7};
    EXPECT_THAT(details().problem, testing::HasSubstr("mp3 audio is not valid (7)"));
    EXPECT_TRUE(details().tracks.empty() && details().arguments.empty());
    controller.settings.audio = {.conversionPreset = 2};
    const auto before = details();
    EXPECT_EQ(sound(), "#1 eng mp3 → AC-3 stereo 192k");
    job->start();
    EXPECT_EQ(before.arguments, child().request.arguments);
    controller.settings.audio = {};
    EXPECT_EQ(details().arguments, before.arguments);
    finish();
    EXPECT_EQ(sound(), "#1 eng mp3 → AC-3 stereo 192k");
    EXPECT_EQ(details().arguments, before.arguments);
}

TEST_F(JobDetailsTest, AJobThatNeverCameToACommandHasNone) {
    std::filesystem::remove(source);
    job->start();
    EXPECT_TRUE(details().tracks.empty() && details().arguments.empty());
}

}  // namespace
}  // namespace reelvane
