#include "conversion/audio_method.h"

#include "support/make_string.h"
#include "support/ports/translations.h"
#include "support/strings.h"

namespace reelvane {

namespace {

int customMethod(std::string_view codec, bool audioIsSurround, const AudioSettings& settings) {
    if (codec == "ac3") {
        return audioIsSurround ? settings.customAC351Handling : settings.customAC3Handling;
    }
    if (codec == "dts") {
        return audioIsSurround ? settings.customDTS51Handling : settings.customDTSHandling;
    }
    if (codec == "mp3" && !audioIsSurround) return settings.customMP3Handling;
    if (codec == "vorbis" && !audioIsSurround) return settings.customVorbisHandling;
    return settings.customUnknownHandling;
}

AudioMethod fastMethod(std::string_view codec, bool audioIsSurround,
                       const AudioSettings& settings) {
    if (codec == "ac3") {
        return audioIsSurround && settings.ac3Downmix ? AudioMethodAC3Stereo : AudioMethodCopy;
    }
    if (codec == "dts" && audioIsSurround && !settings.dtsDownmix) return AudioMethodAC3Surround;
    return AudioMethodAC3Stereo;
}

bool isAudioMethod(int value) {
    return value >= AudioMethodAAC && value <= AudioMethodCopy;
}

}  // namespace

AudioMethod calculateConversionMethod(std::string_view codec, bool audioIsSurround,
                                      const AudioSettings& settings) {
    if (codec == "aac") return AudioMethodCopy;
    if (settings.conversionPreset == ConversionPreset::Compatible) return AudioMethodAAC;
    if (settings.conversionPreset == ConversionPreset::Custom) {
        // The stored number may be none of the four; the enumeration's fixed type holds it.
        return static_cast<AudioMethod>(customMethod(codec, audioIsSurround, settings));
    }
    return fastMethod(codec, audioIsSurround, settings);
}

std::optional<AudioMethod> mainAudioMethod(const MKVFileInfo& file, std::size_t audioTrackIndex,
                                           const AudioSettings& settings) {
    if (file.audioTrackInformation.empty()) return {};
    const auto& entry = file.audioTrackInformation.at(audioTrackIndex).text;
    if (hasUnknownCodec(entry)) return {};
    return calculateConversionMethod(codecOf(entry), isSurround(entry), settings);
}

std::string audioMethodProblem(const Translations& translations, const MKVFileInfo& file,
                               std::size_t audioTrackIndex, const AudioSettings& settings) {
    const auto method = mainAudioMethod(file, audioTrackIndex, settings);
    if (!method || isAudioMethod(*method)) return {};
    return makeString(translations.localized("The audio handling chosen for %@ audio is not valid "
                                             "(%i). Please choose another one in the preferences."),
                      codecOf(file.audioTrackInformation[audioTrackIndex].text), int{*method});
}

bool isSurround(std::string_view audioEntry) {
    return Fennimar::contains(audioEntry, "5.1");
}

}  // namespace reelvane
