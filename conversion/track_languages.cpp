#include "conversion/track_languages.h"

#include <algorithm>

#include "conversion/mapped_streams.h"
#include "media/languages.h"
#include "support/strings.h"

namespace reelvane {
namespace {

bool isLetter(char character) {
    return character >= 'a' && character <= 'z';
}

std::string languageOfStream(const MKVFileInfo& record, int index) {
    for (const auto& entry : record.audioTrackInformation) {
        if (streamIndexOf(entry.text) == index) return std::string(languageOf(entry.text));
    }
    const auto& subtitles = record.subtitleTrackIDs;
    const auto place =
        static_cast<std::size_t>(std::ranges::find(subtitles, index) - subtitles.begin());
    if (place < record.subtitleLanguages.size()) return record.subtitleLanguages[place];
    return {};
}

}  // namespace

std::vector<std::string> sourceLanguages(const MKVFileInfo& record,
                                         const std::vector<std::string>& arguments) {
    std::vector<std::string> languages;
    for (const auto source : sourceStreams(arguments)) {
        auto& language = languages.emplace_back();
        if (!source) continue;
        language = languageOfStream(record, *source);
        if (namedLanguage(language).empty()) language.clear();
    }
    return languages;
}

std::string mp4Language(std::string_view language) {
    if (language.size() == 3 && std::ranges::all_of(language, isLetter)) {
        return std::string(language);
    }
    // "de" and "pt-BR": the part before the region has a row in the table.
    const auto shortCode = Fennimar::partBefore(language, "-");
    const auto code = preferredLanguages3Letter({std::string(shortCode)}).front();
    const bool isCode = code.size() == 3 && std::ranges::all_of(code, isLetter);
    return isCode ? code : std::string();
}

std::vector<FieldPatch> languagePatches(const Mp4Movie& movie,
                                        const std::vector<std::string>& languages) {
    std::vector<FieldPatch> patches;
    const auto count = std::min(movie.tracks.size(), languages.size());
    for (std::size_t i = 0; i < count; ++i) {
        const auto& track = movie.tracks[i];
        const auto language = mp4Language(languages[i]);
        if (language.empty() || language == track.language || !holdsStream(track)) continue;
        std::uint64_t packed = 0;
        for (const char letter : language) {
            packed = packed << 5U | static_cast<std::uint64_t>(letter - 0x60);
        }
        patches.push_back(fieldPatch(track.languageOffset, packed, 2));
    }
    return patches;
}

std::vector<std::string> lostLanguages(const std::vector<std::string>& languages) {
    std::vector<std::string> lost;
    for (const auto& language : languages) {
        if (language.empty() || !mp4Language(language).empty()) continue;
        if (std::ranges::find(lost, language) == lost.end()) lost.push_back(language);
    }
    return lost;
}

}  // namespace reelvane
