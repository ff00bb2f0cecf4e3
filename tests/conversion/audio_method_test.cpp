#include <gtest/gtest.h>
#include <vector>

#include "conversion/stream_plan.h"
#include "support/localization.h"
#include "tests/fakes/audio_tracks.h"

namespace reelvane {
namespace {

TEST(AudioMethodChoice, FollowsCodecSurroundAndPreset) {
    const AudioSettings compatible{};
    const AudioSettings fast{.conversionPreset = ConversionPreset::Fast};
    const AudioSettings downmixing{
        .conversionPreset = ConversionPreset::Fast, .ac3Downmix = true, .dtsDownmix = true};
    // Numbers that tell which preference was read: they come back as they are stored.
    const AudioSettings custom{ConversionPreset::Custom, false, false, 10, 11, 12, 13, 14, 15, 16};
    struct Row {
        const AudioSettings& settings;
        const char* codec;
        int stereo, surround;
    };
    const std::vector<Row> rows = {
        {compatible, "ac3", 0, 0},  {compatible, "aac", 3, 3}, {custom, "aac", 3, 3},
        {fast, "ac3", 3, 3},        {fast, "dts", 1, 2},       {fast, "mp3", 1, 1},
        {fast, "AC3", 1, 1},        {downmixing, "ac3", 3, 1}, {downmixing, "dts", 1, 1},
        {custom, "ac3", 10, 11},    {custom, "dts", 12, 13},   {custom, "mp3", 14, 16},
        {custom, "vorbis", 15, 16}, {custom, "AC3", 16, 16},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(calculateConversionMethod(row.codec, false, row.settings), row.stereo);
        EXPECT_EQ(calculateConversionMethod(row.codec, true, row.settings), row.surround);
    }
}

TEST(AudioMethodChoice, ANumberThatIsNoMethodIsAProblem) {
    const MKVFileInfo movie{.audioTrackInformation = {audioTrack("#1: eng (ac3)")}};
    for (const int stored : {-1, 0, 3, 4}) {
        const AudioSettings settings{.conversionPreset = ConversionPreset::Custom,
                                     .customAC3Handling = stored};
        EXPECT_EQ(audioMethodProblem(kUntranslated, movie, 0, settings).empty(),
                  stored == 0 || stored == 3);
    }
}

}  // namespace
}  // namespace reelvane
