#include "conversion/track_flags.h"

#include <cstdint>

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

}  // namespace reelvane
