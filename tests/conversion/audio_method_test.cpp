#include "conversion/audio_method.h"

#include <gtest/gtest.h>

namespace reelvane {
namespace {

TEST(AudioMethodChoice, FollowsCodecSurroundAndPreset) {
    AudioSettings compatible{.conversionPreset = 0};
    AudioSettings fast{.conversionPreset = 1};
    AudioSettings downmixing{.conversionPreset = 1, .ac3Downmix = true, .dtsDownmix = true};
    AudioSettings zeroes{.conversionPreset = 2,
                         .customAC3Handling = 0,
                         .customAC351Handling = 0,
                         .customDTSHandling = 0,
                         .customDTS51Handling = 0,
                         .customMP3Handling = 0,
                         .customVorbisHandling = 0,
                         .customUnknownHandling = 0};
    // Numbers that tell which preference was read; they come back as they are stored.
    AudioSettings custom{.conversionPreset = 2,
                         .customAC3Handling = 10,
                         .customAC351Handling = 11,
                         .customDTSHandling = 12,
                         .customDTS51Handling = 13,
                         .customMP3Handling = 14,
                         .customVorbisHandling = 15,
                         .customUnknownHandling = 16};
    const struct {
        const AudioSettings& settings;
        const char* codec;
        bool surround;
        int method;
    } rows[] = {
        {compatible, "ac3", true, 0},  {compatible, "aac", false, 3}, {zeroes, "aac", true, 3},
        {fast, "ac3", false, 3},       {fast, "ac3", true, 3},        {fast, "dts", false, 1},
        {fast, "dts", true, 2},        {fast, "mp3", false, 1},       {fast, "AC3", false, 1},
        {downmixing, "ac3", false, 3}, {downmixing, "ac3", true, 1},  {downmixing, "dts", true, 1},
        {custom, "ac3", false, 10},    {custom, "ac3", true, 11},     {custom, "dts", false, 12},
        {custom, "dts", true, 13},     {custom, "mp3", false, 14},    {custom, "mp3", true, 16},
        {custom, "vorbis", false, 15}, {custom, "vorbis", true, 16},  {custom, "AC3", false, 16},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(calculateConversionMethod(row.codec, row.surround, row.settings), row.method)
            << row.codec << (row.surround ? " 5.1" : "") << ", preset "
            << row.settings.conversionPreset;
    }
    EXPECT_TRUE(isAudioMethod(0) && isAudioMethod(3));
    EXPECT_FALSE(isAudioMethod(-1) || isAudioMethod(4));
}

}  // namespace
}  // namespace reelvane
