#include "media/mkv_file_info.h"

#include <cstddef>

#include "support/make_string.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::string_view kAbsent = "(null)";

std::string_view wordAt(std::string_view audioEntry, std::size_t index) {
    const auto words = Fennimar::split(audioEntry, " ");
    return index < words.size() ? words[index] : std::string_view{};
}

std::string listed(const std::vector<std::string>& values) {
    return "[" + Fennimar::joined(values, ", ") + "]";
}

}  // namespace

std::string description(const MKVFileInfo& info) {
    std::vector<std::string> audio;
    audio.reserve(info.audioTrackInformation.size());
    for (const auto& entry : info.audioTrackInformation) audio.push_back(entry.text);
    std::vector<std::string> subtitles;
    subtitles.reserve(info.subtitleTrackIDs.size());
    for (const auto id : info.subtitleTrackIDs) subtitles.push_back(std::to_string(id));

    return makeString(
        "audioTrackInformation: %@, informationString: %@, fileName: %@, runtimeSeconds: %@, "
        "fileSize: %@, subtitleTrackIDs: %@, subtitleFileURL: %@",
        listed(audio), info.informationString, info.fileName,
        info.runtimeSeconds ? std::to_string(*info.runtimeSeconds) : std::string(kAbsent),
        std::to_string(info.fileSize), listed(subtitles),
        info.subtitleFileURL ? info.subtitleFileURL->native() : std::string(kAbsent));
}

std::string_view languageOf(std::string_view audioEntry) {
    return wordAt(audioEntry, 1);
}

std::string_view codecOf(std::string_view audioEntry) {
    const auto inParentheses = wordAt(audioEntry, 2);
    if (inParentheses.size() < 2) return {};
    return inParentheses.substr(1, inParentheses.size() - 2);
}

int streamIndexOf(std::string_view audioEntry) {
    return Fennimar::leadingInteger(Fennimar::trimmedTo(wordAt(audioEntry, 0), "0123456789"));
}

}  // namespace reelvane
