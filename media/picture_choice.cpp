#include "media/picture_choice.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>

#include "support/make_string.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr auto kImageCodecs =
    std::to_array<std::string_view>({"mjpeg", "png", "bmp", "gif", "tiff", "webp"});
constexpr int kFarShorter = 10;       // times fewer packets than another stream has
constexpr std::int64_t kSmaller = 4;  // times less area than another stream has
constexpr const char* kMostPackets = "250";

/// Keeps what passes, unless nothing does.
template <typename Test>
void prefer(std::vector<VideoStreamFact>& streams, Test test) {
    if (std::ranges::any_of(streams, test)) std::erase_if(streams, std::not_fn(test));
}

std::int64_t areaOf(const VideoStreamFact& stream) {
    const auto height = Fennimar::partAfter(stream.resolution, "x").value_or("0");
    return std::int64_t{Fennimar::leadingInteger(stream.resolution)} *
           Fennimar::leadingInteger(height);
}

bool isWhole(const VideoStreamFact& stream) {
    return !stream.isEmpty;
}

bool isImageCodec(std::string_view codec) {
    return std::ranges::find(kImageCodecs, codec) != kImageCodecs.end();
}

}  // namespace

std::vector<VideoStreamFact> likelyPictures(std::vector<VideoStreamFact> streams) {
    prefer(streams, isWhole);
    int mostPackets = 0;
    for (const auto& each : streams) mostPackets = std::max(mostPackets, each.packets.value_or(0));
    prefer(streams, [mostPackets](const VideoStreamFact& each) {
        if (!each.packets) return !isImageCodec(each.codec);
        return std::int64_t{*each.packets} * kFarShorter >= mostPackets;
    });
    prefer(streams, [](const VideoStreamFact& each) { return each.isDefault; });
    std::int64_t largest = 0;
    for (const auto& each : streams) largest = std::max(largest, areaOf(each));
    prefer(streams,
           [largest](const VideoStreamFact& each) { return areaOf(each) >= largest / kSmaller; });
    return streams;
}

bool areInDoubt(std::span<const VideoStreamFact> streams) {
    return std::ranges::count_if(streams, isWhole) > 1;
}

std::vector<std::string> countArguments(const std::string& path,
                                        std::span<const VideoStreamFact> streams) {
    std::vector<std::string> arguments{"-v", "quiet", "-i", path};
    for (const auto& stream : streams) {
        arguments.insert(arguments.end(), {"-map", makeString("0:%i", stream.index)});
    }
    arguments.insert(arguments.end(),
                     {"-c", "copy", "-frames:v", kMostPackets, "-f", "framecrc", "-"});
    return arguments;
}

void takeCounts(std::string_view printed, std::vector<VideoStreamFact>& streams) {
    std::vector<int> counts(streams.size());
    for (const auto line : Fennimar::split(printed, "\n")) {
        if (line.empty() || !Fennimar::isDigit(line[0])) continue;
        const auto stream = static_cast<std::size_t>(Fennimar::leadingInteger(line));
        if (stream < counts.size()) ++counts[stream];
    }
    if (std::ranges::count(counts, 0) == std::ssize(counts)) return;
    for (std::size_t i = 0; i < streams.size(); ++i) streams[i].packets = counts[i];
}

}  // namespace reelvane
