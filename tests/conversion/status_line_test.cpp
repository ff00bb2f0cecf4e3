#include "conversion/status_line.h"

#include <cmath>
#include <gtest/gtest.h>
#include <optional>
#include <vector>

#include "conversion/value_transformers.h"

namespace reelvane {
namespace {

TEST(StatusLine, SaysWhatTheStateAllows) {
    const std::vector<AudioEntry> one{{"#1: eng (ac3) [5.1]"}};
    const std::vector<AudioEntry> three{{"#1: eng (aac)"}, {"#2: ger (ac3)"}, {"#3: fre (ac3)"}};
    using State = ConversionJobState;
    const struct {
        StatusFacts facts;
        const char* line;
    } rows[] = {
        {{.state = State::Queued, .audio = one}, "Status: Queued"},
        {{.state = State::Paused, .audio = one}, "Status: Paused"},
        {{.state = State::Finished, .conversionSeconds = 125.4},
         "Status: Finished [Conversion took: 2m 5s]"},
        {{.state = State::Failed},
         "Status: Failed   Click the arrow at the right to get more information."},
        {{.state = State::Converting, .remainingSeconds = 59}, "Status: Converting   ETA: 59s"},
        {{.state = State::Converting, .audio = one, .remainingSeconds = 60},
         "Status: Converting   Audio:  eng (ac3) [5.1]   ETA: 1m 0s"},
        {{.state = State::Converting, .audio = three},
         "Status: Converting   Audio:  eng (aac) (Discarded:  fre (ac3))   ETA: 0s"},
        {{.state = State::Converting, .audio = three, .audioTrackIndex = 2},
         "Status: Converting   Audio:  fre (ac3) (Discarded:  ger (ac3))   ETA: 0s"},
    };
    for (const auto& row : rows) EXPECT_EQ(statusLine(row.facts), row.line);
}

TEST(RemainingTime, IsFlooredCappedAndUnknownAtFirst) {
    EXPECT_DOUBLE_EQ(remainingTime(50, 60), 60);
    EXPECT_DOUBLE_EQ(remainingTime(1, 600), 18000);
    EXPECT_DOUBLE_EQ(remainingTime(0, 1), 18000);
    EXPECT_DOUBLE_EQ(remainingTime(120, 60), 0);
    EXPECT_TRUE(std::isnan(remainingTime(0, 0)));
}

TEST(ValueTransformers, AnswerForEachState) {
    const struct {
        int state, running, queued, notRunning, notQueuedAndPaused, notFinished;
    } rows[] = {{0, 0, 1, 1, 0, 1},
                {1, 1, 0, 0, 1, 1},
                {2, 0, 0, 1, 0, 1},
                {3, 0, 0, 1, 1, 0},
                {4, 0, 0, 1, 1, 0}};
    for (const auto& row : rows) {
        EXPECT_EQ(StatusIsRunningValueTransformer::transformedValue(row.state), row.running);
        EXPECT_EQ(StatusIsQueuedValueTransformer::transformedValue(row.state), row.queued);
        EXPECT_EQ(StatusNotRunningValueTransformer::transformedValue(row.state), row.notRunning);
        EXPECT_EQ(StatusNotQueuedAndPausedValueTransformer::transformedValue(row.state),
                  row.notQueuedAndPaused);
        EXPECT_EQ(StatusNotFinishedValueTransformer::transformedValue(row.state), row.notFinished);
    }
    using NonEmpty = NonEmptyCollectionValueTransformer;
    EXPECT_TRUE(NonEmpty::transformedValue(std::vector{1}));
    EXPECT_FALSE(NonEmpty::transformedValue(std::vector<int>{}) || NonEmpty::transformedValue(7) ||
                 NonEmpty::transformedValue(std::optional<std::vector<int>>()));
}

}  // namespace
}  // namespace reelvane
