#include "conversion/packet_comparison.h"

#include "conversion/job_notes.h"
#include "support/localization.h"
#include "support/ports/child_process.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::string_view kHash = "murmur3";  // 128 bits, as fast as any disk

/// The filter that unwraps the codec's units; empty: its packets are the same in every container.
/// The numbers are those of the access unit delimiter (ITU-T H.264, table 7-1; H.265, table 7-1).
std::string_view unwrappingFilter(std::string_view codec) {
    if (codec == "h264") return "filter_units=remove_types=9";
    if (codec == "hevc") return "filter_units=remove_types=35";
    return {};
}

/// What stands after the last occurrence of a word.
std::optional<std::string_view> lastAfter(std::string_view text, std::string_view word) {
    const auto at = text.rfind(word);
    if (at == std::string_view::npos) return std::nullopt;
    return text.substr(at + word.size());
}

}  // namespace

bool readsEdits(std::string_view demuxer) {
    return Fennimar::contains(demuxer, "mp4");
}

std::vector<std::string> hashArguments(const PictureFile& picture) {
    std::vector<std::string> list{"-loglevel", "error", "-stats"};
    const auto append = [&list](std::initializer_list<std::string> more) {
        list.insert(list.end(), more);
    };
    if (picture.hasEdits) append({"-ignore_editlist", "1"});
    append({"-i", picture.path.native(), "-map", picture.stream, "-c", "copy", "-copyinkf"});
    if (const auto filter = unwrappingFilter(picture.codec); !filter.empty()) {
        append({"-bsf:v", std::string(filter)});
    }
    append({"-f", "hash", "-hash", std::string(kHash), "-"});
    return list;
}

std::optional<PictureDigest> digestInOutput(std::string_view printed) {
    const auto hash = lastAfter(printed, std::string(kHash) + "=");
    const auto packets = lastAfter(printed, "frame=");
    if (!hash || !packets) return std::nullopt;
    return PictureDigest{.hash = std::string(Fennimar::partBefore(*hash, "\n")),
                         .packets = static_cast<std::size_t>(Fennimar::leadingInteger(*packets))};
}

std::optional<PictureDigest> digestOf(ProcessLauncher& launcher,
                                      const std::filesystem::path& ffmpeg,
                                      const PictureFile& picture, const std::stop_token& stop) {
    const auto result = launcher.run({.executable = ffmpeg,
                                      .arguments = hashArguments(picture),
                                      .background = true,
                                      .stop = stop});
    if (!result.finished || result.finished->exitStatus != 0) return std::nullopt;
    const auto& printed = result.finished->output;
    // A file that ends at a read error is no error to the converter.
    if (!doubtsOfLog(kUntranslated, {}, printed).empty()) return std::nullopt;
    return digestInOutput(printed);
}

}  // namespace reelvane
