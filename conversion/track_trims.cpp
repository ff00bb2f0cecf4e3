#include "conversion/track_trims.h"

#include <algorithm>
#include <cmath>

namespace reelvane {
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
