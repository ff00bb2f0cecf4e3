#include "conversion/subtitle_arguments.h"

#include <algorithm>

#include "conversion/stream_plan.h"
#include "support/make_string.h"
#include "support/strings.h"

namespace reelvane {

namespace {

constexpr int kFirstEncoding = 2;

/// Empty when the preference leaves it to the file.
std::string preferredEncoding(int index) {
    if (index < kFirstEncoding || !isSubtitleEncoding(static_cast<std::size_t>(index))) return {};
    const auto name = kSubtitleEncodings[static_cast<std::size_t>(index)];
    // The converter reads UTF-16 by its byte order mark and hands UTF-8 on; naming UTF-16 here
    // would decode the text twice.
    return Fennimar::replaced(name, "UTF-16", "UTF-8");
}

}  // namespace

bool findsSubtitleEncoding(const ConversionSettings& settings) {
    return preferredEncoding(settings.externalSubtitleEncoding).empty();
}

std::string subtitleEncoding(const SubtitleFormat& format, const ConversionSettings& settings) {
    if (format.encodingIsChosen) return format.encoding.name;
    auto preferred = preferredEncoding(settings.externalSubtitleEncoding);
    if (preferred.empty()) return format.encoding.name;
    // For the same reason a mark overrules a preference that was made for other files.
    if (format.hasByteOrderMark && preferred != "UTF-8") return {};
    return preferred;
}

std::vector<std::string> subtitleInputArguments(const MKVFileInfo& file,
                                                const ConversionSettings& settings) {
    if (!file.subtitleFileURL) return {};
    std::vector<std::string> arguments;
    // Left to itself the converter would follow a list of other files in place of subtitles.
    if (const auto& demuxer = file.subtitleFormat.demuxer; !demuxer.empty()) {
        arguments = {"-f", demuxer};
    }
    if (auto encoding = subtitleEncoding(file.subtitleFormat, settings); !encoding.empty()) {
        arguments.insert(arguments.end(), {"-sub_charenc", std::move(encoding)});
    }
    arguments.insert(arguments.end(), {"-i", file.subtitleFileURL->native()});
    return arguments;
}

std::vector<std::string> subtitleMapArguments(const StreamPlan& plan) {
    std::vector<std::string> arguments;
    if (plan.externalSubtitle) arguments = {"-map", "1:0"};
    std::for_each(plan.subtitles.rbegin(), plan.subtitles.rend(), [&](int track) {
        arguments.insert(arguments.end(), {"-map", makeString("0:%i", track)});
    });
    return arguments;
}

bool mapsEmbeddedSubtitles(const MKVFileInfo& file, const ConversionSettings& settings) {
    return !settings.disableBuiltinSubtitles && !file.subtitleTrackIDs.empty();
}

ConversionSettings withWholeSubtitles(const MKVFileInfo& file, ConversionSettings settings) {
    const bool packetsCarryDurations =
        file.demuxer == "matroska,webm" || file.demuxer.starts_with("mov,mp4");
    if (packetsCarryDurations && mapsEmbeddedSubtitles(file, settings)) {
        settings.fixSubtitleDuration = false;
    }
    return settings;
}

}  // namespace reelvane
