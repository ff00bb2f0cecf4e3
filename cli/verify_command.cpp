#include <array>

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/json_lines.h"
#include "conversion/output_proof.h"
#include "mp4/mp4_reader.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/untranslated.h"
#include "support/utf8.h"

namespace reelvane {
namespace {

constexpr auto kKindWords = std::to_array<std::string_view>({"Video", "Audio", "Text", "Other"});

std::string trackText(const Mp4Track& track) {
    auto text = makeString("\n    %-5s #%u: %@, %@, %.0f s",
                           kKindWords.at(static_cast<std::size_t>(track.kind)), track.trackID,
                           printable(track.codec), track.language, track.seconds);
    if (!track.enabled) text += ", off";
    if (track.alternateGroup != 0) text += makeString(", group %u", track.alternateGroup);
    return text;
}

std::string verifiedText(const std::string& file, const Mp4Reading& reading, std::uint64_t bytes) {
    const auto name = printable(file);
    if (!reading.movie) {
        return makeString("%@: %@: it %@", name, reading.uncheckable ? "not checked" : "broken",
                          reading.problem);
    }
    const auto& movie = *reading.movie;
    auto text = makeString("%@: whole: %@", name,
                           contentText(kUntranslated, movie.seconds, movie.tracks.size(), bytes));
    for (const auto& track : movie.tracks) text += trackText(track);
    return text;
}

}  // namespace

int runVerify(const CommandContext& context, const VerifyRequest& request) {
    auto& console = context.console;
    int status = kExitSuccess;
    for (const auto& file : request.files) {
        const auto reading = readMp4(file);
        if (!reading.movie) status = kExitFailure;
        const auto bytes = Fennimar::fileSize(file);
        console.line(request.json ? verifiedLine(file, reading, bytes)
                                  : verifiedText(file, reading, bytes));
        if (console.isClosed()) return kExitFailure;
    }
    return status;
}

}  // namespace reelvane
