#include "conversion/output_tracks.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "media/languages.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::uint32_t kEnabled = 1;
constexpr std::uint32_t kAudioGroup = 1;
constexpr std::uint32_t kSubtitleGroup = 2;
// "Some samples are forced" and "all samples are forced".
constexpr std::uint32_t kForcedDisplayFlags = 0xC0000000;

void setEnabled(const Mp4Track& track, bool enabled, std::vector<FieldPatch>& patches) {
    const auto flags = enabled ? track.flags | kEnabled : track.flags & ~kEnabled;
    if (flags != track.flags) patches.push_back(fieldPatch(track.flagsOffset, flags, 3));
}

void setGroup(const Mp4Track& track, std::uint32_t group, std::vector<FieldPatch>& patches) {
    if (track.alternateGroup == group) return;
    patches.push_back(fieldPatch(track.alternateGroupOffset, group, 2));
}

}  // namespace

std::vector<FieldPatch> trackFlagPatches(const Mp4Movie& movie,
                                         const std::set<std::size_t>& forcedSubtitles) {
    std::vector<FieldPatch> patches;
    bool audioSeen = false;
    std::size_t subtitle = 0;
    for (const auto& track : movie.tracks) {
        if (track.kind == Mp4TrackKind::Video) {
            setGroup(track, 0, patches);
        } else if (track.kind == Mp4TrackKind::Audio) {
            setEnabled(track, !audioSeen, patches);
            setGroup(track, kAudioGroup, patches);
            audioSeen = true;
        } else if (track.displayFlagsOffset) {  // a chapter list is a text track too, but no
                                                // subtitle
            const bool forced = forcedSubtitles.contains(subtitle++);
            setEnabled(track, forced, patches);
            setGroup(track, kSubtitleGroup, patches);
            const auto flags = track.displayFlags | (forced ? kForcedDisplayFlags : 0);
            if (flags != track.displayFlags) {
                patches.push_back(fieldPatch(*track.displayFlagsOffset, flags, 4));
            }
        }
    }
    return patches;
}

namespace {

bool isLetter(char character) {
    return character >= 'a' && character <= 'z';
}

void addOnce(std::vector<std::string>& list, const std::string& text) {
    if (!text.empty() && std::ranges::find(list, text) == list.end()) list.push_back(text);
}

}  // namespace

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
                                        const std::vector<OutputTrack>& planned) {
    std::vector<FieldPatch> patches;
    const auto count = std::min(movie.tracks.size(), planned.size());
    for (std::size_t i = 0; i < count; ++i) {
        const auto& track = movie.tracks[i];
        const auto language = mp4Language(planned[i].language);
        if (language.empty() || language == track.language || !holdsStream(track)) continue;
        std::uint64_t packed = 0;
        for (const char letter : language) {
            packed = packed << 5U | static_cast<std::uint64_t>(letter - 0x60);
        }
        patches.push_back(fieldPatch(track.languageOffset, packed, 2));
    }
    return patches;
}

std::vector<std::string> lostLanguages(const std::vector<OutputTrack>& planned) {
    std::vector<std::string> lost;
    for (const auto& track : planned) {
        if (!mp4Language(track.language).empty()) continue;
        addOnce(lost, track.language);
    }
    return lost;
}

std::vector<std::string> lostTitles(const std::vector<OutputTrack>& planned,
                                    const Mp4Movie& movie) {
    std::vector<std::string> lost;
    const auto count = std::min(movie.tracks.size(), planned.size());
    for (std::size_t i = 0; i < count; ++i) {
        if (!movie.tracks[i].hasTitle) addOnce(lost, planned[i].title);
    }
    return lost;
}

namespace {

constexpr double kTrimmedSeconds = 0.5;  // less is the delay of the first picture

FieldPatch patchOf(const Mp4Field& field, std::uint64_t value) {
    return fieldPatch(field.offset, value, field.width);
}

}  // namespace

bool isTrimmed(const Mp4Track& track) {
    return track.mediaSeconds - track.seconds > kTrimmedSeconds;
}

std::vector<FieldPatch> trimPatches(const Mp4Movie& output, const Mp4Track& sourcePicture) {
    const auto& tracks = output.tracks;
    const auto picture = std::ranges::find(tracks, Mp4TrackKind::Video, &Mp4Track::kind);
    if (picture == tracks.end() || picture->edits.parts != 1) return {};
    if (!isTrimmed(sourcePicture) || sourcePicture.edits.parts != 1) return {};
    const auto wanted = static_cast<std::uint64_t>(
        std::llround(sourcePicture.seconds * static_cast<double>(output.timeScale)));
    const auto& played = picture->duration;
    const auto& part = picture->edits.lastDuration;
    if (wanted >= played.value || part.value <= played.value - wanted) return {};
    std::vector<FieldPatch> patches{patchOf(part, part.value - (played.value - wanted)),
                                    patchOf(played, wanted)};
    auto longest = wanted;
    for (const auto& track : tracks) {
        if (&track != &*picture) longest = std::max(longest, track.duration.value);
    }
    if (longest < output.duration.value) patches.push_back(patchOf(output.duration, longest));
    return patches;
}

}  // namespace reelvane
