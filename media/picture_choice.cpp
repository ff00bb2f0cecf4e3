#include "media/picture_choice.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>

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

/// Those that are there wherever packets were counted.
std::vector<VideoStreamFact> lastingStreams(std::vector<VideoStreamFact> streams) {
    prefer(streams, [](const VideoStreamFact& each) { return !each.isEmpty; });
    const auto places = streams.empty() ? 0 : streams.front().packets.size();
    for (std::size_t place = 0; place < places; ++place) {
        int most = 0;
        for (const auto& each : streams) most = std::max(most, each.packets[place]);
        prefer(streams, [=](const VideoStreamFact& each) {
            return std::int64_t{each.packets[place]} * kFarShorter >= most;
        });
    }
    return streams;
}

bool isImageCodec(std::string_view codec) {
    return std::ranges::find(kImageCodecs, codec) != kImageCodecs.end();
}

}  // namespace

std::vector<VideoStreamFact> likelyPictures(std::vector<VideoStreamFact> streams) {
    streams = lastingStreams(std::move(streams));
    prefer(streams, [](const VideoStreamFact& each) {
        return !each.packets.empty() || !isImageCodec(each.codec);
    });
    prefer(streams, [](const VideoStreamFact& each) { return each.isDefault; });
    std::int64_t largest = 0;
    for (const auto& each : streams) largest = std::max(largest, areaOf(each));
    prefer(streams,
           [largest](const VideoStreamFact& each) { return areaOf(each) >= largest / kSmaller; });
    return streams;
}

bool isMovingPicture(const VideoStreamFact& stream) {
    return !stream.isEmpty && !isImageCodec(stream.codec);
}

bool areInDoubt(std::span<const VideoStreamFact> streams) {
    return lastingStreams({streams.begin(), streams.end()}).size() > 1;
}

std::vector<int> placesToCount(std::optional<int> runtimeSeconds) {
    const auto seconds = std::int64_t{std::max(runtimeSeconds.value_or(0), 0)};
    if (seconds == 0) return {0};
    return {0, static_cast<int>(seconds / 2), static_cast<int>(seconds * 9 / 10)};
}

std::vector<std::string> countArguments(const std::string& path,
                                        std::span<const VideoStreamFact> streams, int fromSecond) {
    std::vector<std::string> arguments{"-v", "quiet"};
    if (fromSecond > 0) {
        arguments.insert(arguments.end(), {"-ss", makeString("%i", fromSecond)});
    }
    arguments.insert(arguments.end(), {"-i", path});
    for (const auto& stream : streams) {
        arguments.insert(arguments.end(), {"-map", makeString("0:%i", stream.index)});
    }
    // Neither the key picture before the place is wanted, nor one after it waited for.
    arguments.insert(arguments.end(), {"-c", "copy", "-copyinkf", "-copypriorss", "0", "-frames:v",
                                       kMostPackets, "-f", "framecrc", "-"});
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
    for (std::size_t i = 0; i < streams.size(); ++i) streams[i].packets.push_back(counts[i]);
}

}  // namespace reelvane
