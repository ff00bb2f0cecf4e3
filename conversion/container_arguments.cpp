#include "conversion/container_arguments.h"

#include <algorithm>
#include <array>

#include "support/paths.h"

namespace reelvane {

namespace {

constexpr auto kM4VVideoCodecs = std::to_array<std::string_view>({"h264", "mpeg4"});
constexpr auto kM4VAudioCodecs = std::to_array<std::string_view>({"aac", "he-aac", "ac3", "alac"});

bool needsMP4Muxer(const ContainerFacts& facts) {
    if (Fennimar::lowercasedExtension(facts.output) != "m4v") return false;
    if (facts.namesColour || facts.hasDolbyVision) return true;
    if (std::ranges::find(kM4VVideoCodecs, facts.videoCodec) == kM4VVideoCodecs.end()) return true;
    return !std::ranges::all_of(facts.copiedAudioCodecs, [](std::string_view codec) {
        return std::ranges::find(kM4VAudioCodecs, codec) != kM4VAudioCodecs.end();
    });
}

}  // namespace

std::vector<std::string> containerArguments(const ContainerFacts& facts) {
    std::vector<std::string> arguments;
    if (facts.videoCodec == "hevc") arguments.insert(arguments.end(), {"-tag:v", "hvc1"});
    if (facts.hasDolbyVision) arguments.insert(arguments.end(), {"-strict", "unofficial"});
    if (needsMP4Muxer(facts)) arguments.insert(arguments.end(), {"-f", "mp4"});
    if (facts.produceStreamableFile) {
        arguments.insert(arguments.end(), {"-movflags", "faststart"});
    }
    return arguments;
}

}  // namespace reelvane
