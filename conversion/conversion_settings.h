#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "conversion/status_line.h"

namespace reelvane {

/// How the main audio track is treated. Preferences store these numbers: never renumber.
enum AudioMethod : std::int32_t {
    AudioMethodAAC = 0,
    AudioMethodAC3Stereo = 1,
    AudioMethodAC3Surround = 2,
    AudioMethodCopy = 3
};

/// What is aimed at as a whole. Preferences store these numbers: never renumber.
enum class ConversionPreset : std::int32_t { Compatible = 0, Fast = 1, Custom = 2 };

/// The preset of a stored number; one that is none counts as fast.
[[nodiscard]] constexpr ConversionPreset conversionPresetOf(int stored) {
    switch (stored) {
        case static_cast<int>(ConversionPreset::Compatible):
            return ConversionPreset::Compatible;
        case static_cast<int>(ConversionPreset::Custom):
            return ConversionPreset::Custom;
        default:
            return ConversionPreset::Fast;
    }
}

inline constexpr auto kAACBitrates =
    std::to_array<std::string_view>({"96k", "128k", "160k", "192k"});
inline constexpr auto kAC3StereoBitrates =
    std::to_array<std::string_view>({"160k", "192k", "224k", "256k"});
inline constexpr auto kAC3SurroundBitrates =
    std::to_array<std::string_view>({"384k", "448k", "512k", "576k"});

/// The volumes, in per cent, that leave the sound as it is.
[[nodiscard]] constexpr bool leavesVolume(float percent) {
    return percent >= 99 && percent <= 101;
}

/// The preferences that choose the audio method. The handling values are kept as stored.
struct AudioSettings {
    ConversionPreset conversionPreset = ConversionPreset::Compatible;
    bool ac3Downmix = false;
    bool dtsDownmix = false;
    int customAC3Handling = AudioMethodCopy;
    int customAC351Handling = AudioMethodCopy;
    int customDTSHandling = AudioMethodAC3Stereo;
    int customDTS51Handling = AudioMethodAC3Surround;
    int customMP3Handling = AudioMethodAC3Stereo;
    int customVorbisHandling = AudioMethodAC3Stereo;
    int customUnknownHandling = AudioMethodAC3Stereo;
};

/// The preferences that one conversion depends on, as they stood when it was started or ended.
struct ConversionSettings {
    AudioSettings audio{};
    int aacBitrate = 1;          ///< index into kAACBitrates
    int ac3StereoBitrate = 1;    ///< index into kAC3StereoBitrates
    int ac3SurroundBitrate = 1;  ///< index into kAC3SurroundBitrates
    float audioVolume = 100;     ///< per cent
    bool includeSurroundTrack = true;
    bool includeSurroundTrackTranscoded = true;
    bool disableBuiltinSubtitles = true;
    int externalSubtitleEncoding = 0;  ///< index into kSubtitleEncodings
    bool produceStreamableFiles = false;
    bool fixSubtitleDuration = true;
    bool autoClean = false;
    bool autoRemove = false;
    int autoRemoveType = 0;  ///< 0 to the Trash, anything else deletes
    bool quitAfterConversion = false;
};

/// The base of the transformers that turn a value into a number for a control of a job's row. The
/// status transformers take the number of a job's state. None can be reversed.
struct NumberValueTransformer {
    using Result = int;
    static constexpr bool kAllowsReverseTransformation = false;

protected:
    static constexpr bool is(std::int32_t state, ConversionJobState wanted) {
        return state == static_cast<std::int32_t>(wanted);
    }
};

/// True when the value is there, has a count, and its count is above 0.
struct NonEmptyCollectionValueTransformer : NumberValueTransformer {
    template <typename T>
    [[nodiscard]] static constexpr bool transformedValue(const T& value) {
        if constexpr (requires { value.has_value(); }) {
            return value.has_value() && transformedValue(*value);
        } else if constexpr (requires { value.size(); }) {
            return value.size() > 0;
        } else {
            return false;
        }
    }
};

struct StatusIsRunningValueTransformer : NumberValueTransformer {
    [[nodiscard]] static constexpr Result transformedValue(std::int32_t state) {
        return is(state, ConversionJobState::Converting) ? 1 : 0;
    }
};

struct StatusIsQueuedValueTransformer : NumberValueTransformer {
    [[nodiscard]] static constexpr Result transformedValue(std::int32_t state) {
        return is(state, ConversionJobState::Queued) ? 1 : 0;
    }
};

struct StatusNotRunningValueTransformer : NumberValueTransformer {
    [[nodiscard]] static constexpr Result transformedValue(std::int32_t state) {
        return is(state, ConversionJobState::Converting) ? 0 : 1;
    }
};

struct StatusNotQueuedAndPausedValueTransformer : NumberValueTransformer {
    [[nodiscard]] static constexpr Result transformedValue(std::int32_t state) {
        return is(state, ConversionJobState::Queued) || is(state, ConversionJobState::Paused) ? 0
                                                                                              : 1;
    }
};

struct StatusNotFinishedValueTransformer : NumberValueTransformer {
    [[nodiscard]] static constexpr Result transformedValue(std::int32_t state) {
        return is(state, ConversionJobState::Finished) || is(state, ConversionJobState::Failed) ? 0
                                                                                                : 1;
    }
};

}  // namespace reelvane
