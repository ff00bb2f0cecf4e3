#include "conversion/status_line.h"

#include <cmath>
#include <gtest/gtest.h>

#include "support/localization.h"
#include "tests/fakes/audio_tracks.h"

namespace reelvane {
namespace {

TEST(StatusLine, SaysWhatTheStateAllows) {
    using State = ConversionJobState;
    const std::vector<AudioTrack> three{audioTrack("#1: eng (aac)"), audioTrack("#2: ger (ac3)"),
                                        audioTrack("#3: fre (ac3)")};
    const std::vector<AudioTrack> one{three.front()};
    EXPECT_EQ(statusLine(kUntranslated, {.state = State::Paused, .audio = one}), "Status: Paused");
    EXPECT_EQ(statusLine(kUntranslated, {.state = State::Finished, .conversionSeconds = 125.4}),
              "Status: Finished [Conversion took: 2m 5s]");
    EXPECT_EQ(statusLine(kUntranslated, {.state = State::Failed}),
              "Status: Failed   Click the arrow at the right to get more information.");
    EXPECT_EQ(statusLine(kUntranslated, {.state = State::Converting}),
              "Status: Converting   ETA: 0s");
    EXPECT_EQ(statusLine(kUntranslated,
                         {.state = State::Converting, .audio = one, .remainingSeconds = 60}),
              "Status: Converting   Audio:  eng (aac)   ETA: 1m 0s");
    EXPECT_EQ(statusLine(kUntranslated, {.state = State::Converting, .audio = three}),
              "Status: Converting   Audio:  eng (aac) (Discarded:  fre (ac3))   ETA: 0s");
    EXPECT_EQ(statusLine(kUntranslated,
                         {.state = State::Converting, .audio = three, .audioTrackIndex = 2}),
              "Status: Converting   Audio:  fre (ac3) (Discarded:  ger (ac3))   ETA: 0s");
}

TEST(RemainingTime, IsFlooredCappedAndUnknownAtFirst) {
    EXPECT_DOUBLE_EQ(remainingTime(50, 60), 60);
    EXPECT_DOUBLE_EQ(remainingTime(1, 600), 18000);
    EXPECT_DOUBLE_EQ(remainingTime(120, 60), 0);
    EXPECT_TRUE(std::isnan(remainingTime(0, 0)));
}

TEST(TimeLeft, IsNothingWhileNothingIsDone) {
    EXPECT_EQ(timeLeft(0, 60), std::nullopt);
    EXPECT_EQ(timeLeft(0, 0), std::nullopt);
    EXPECT_EQ(timeLeft(50, 60), 60);
    EXPECT_EQ(timeLeft(1, 600), 59400) << "a long movie takes long";
    EXPECT_EQ(timeLeft(120, 60), 0);
}

}  // namespace
}  // namespace reelvane
