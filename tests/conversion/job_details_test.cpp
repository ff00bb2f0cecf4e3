#include "conversion/job_details.h"

#include <gmock/gmock.h>

#include "support/localization.h"
#include "tests/conversion/job_fixture.h"
#include "tests/fakes/audio_tracks.h"

namespace reelvane {
namespace {

TEST_F(JobTest, DetailsFollowThePreferencesUntilTheStartAndNoFurther) {
    const auto details = [this] {
        return jobDetails(kUntranslated, *job, controller.settings, progressFile.parent_path());
    };
    const auto sound = [&details] { return trackLine(details().tracks.at(1)); };
    job->fileInfo().audioTrackInformation = {audioTrack("#1: eng (mp3)", 48000)};
    EXPECT_EQ(sound(), "#1 eng mp3 → AAC stereo 128k");
    job->fileInfo().subtitleFileURL = "/v/a.srt";
    job->fileInfo().subtitleFormat.encoding = {.kind = FoundEncoding::Kind::Named,
                                               .name = "CP1252"};
    EXPECT_EQ(trackLine(details().tracks.at(2)), "a.srt: added as a text track, read as CP1252");
    job->fileInfo().subtitleFileURL.reset();
    controller.settings.audio = {.conversionPreset = ConversionPreset::Custom,
                                 .customMP3Handling = 7};
    EXPECT_THAT(details().problem, testing::HasSubstr("mp3 audio is not valid (7)"));
    EXPECT_TRUE(details().tracks.empty() && details().arguments.empty());
    controller.settings.audio = {.conversionPreset = ConversionPreset::Custom};
    const auto before = details();
    start();
    controller.settings.audio = {};
    finish();
    EXPECT_EQ(sound(), "#1 eng mp3 → AC-3 stereo 192k");
    EXPECT_EQ(before.arguments, child().request.arguments);
    EXPECT_EQ(before.arguments, details().arguments);
}

TEST_F(JobTest, TheRowSaysWhatWasLeftOutAndWhereTheResultLiesUnlessThatIsPlain) {
    const auto note = [this] { return rowNote(kUntranslated, *job); };
    EXPECT_EQ(note().text, "") << "there is no result yet";
    job->fileInfo().warnings = {"No TV plays it."};
    EXPECT_EQ(note().text, "See the warning in the details");
    job->fileInfo().warnings.clear();
    startAndWrite();
    finish();
    EXPECT_EQ(note().text, job->details());
    job->fileInfo().audioTrackInformation.push_back(audioTrack("#2: ger (aac)", 48000));
    job->fileInfo().subtitleTrackIDs = {3};
    const auto whole = job->details();
    EXPECT_EQ(note().text, "1 audio, 1 subtitle track left out · " + whole);
    job->fileInfo().subtitleCount = 3;
    job->fileInfo().destinationURL = platform.folder.path() / "movie-0.m4v";
    EXPECT_EQ(note().text, "1 audio, 3 subtitle tracks left out · as movie-0.m4v · " + whole);
    job->fileInfo().audioTrackInformation.pop_back();
    job->fileInfo().destinationURL = "/Movies/movie-0.m4v";
    EXPECT_EQ(note().text, "3 subtitle tracks left out · as movie-0.m4v in Movies · " + whole);
    job->fileInfo().destinationURL = "/movie.mp4";
    EXPECT_THAT(note().text, testing::HasSubstr(" · in / · "));
    job->fileInfo().warnings = {"No TV plays it."};
    EXPECT_THAT(note().text, testing::StartsWith("See the warning in the details · 3 subtitle"));
    EXPECT_FALSE(note().warns);
}

TEST_F(JobTest, AWarningIsToldAloneAndStaysInTheList) {
    controller.settings.autoClean = true;
    job->fileInfo().runtimeSeconds = 125;
    job->fileInfo().destinationURL = platform.folder.path() / "movie.m4v";
    startAndWrite();
    finish("Packet corrupt");
    const auto note = rowNote(kUntranslated, *job);
    EXPECT_TRUE(note.warns);
    EXPECT_EQ(note.text, "movie.mkv ended after 1m 40s of 2m 5s: the source may be damaged.");
    EXPECT_EQ(job->notes().size(), 2U);
    EXPECT_THAT(controller.told, testing::Not(testing::Contains("removeJob")));
}

}  // namespace
}  // namespace reelvane
