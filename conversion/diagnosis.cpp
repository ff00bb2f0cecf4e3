#include "conversion/diagnosis.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <functional>
#include <optional>

#include "conversion/job_start.h"
#include "support/alerts.h"
#include "support/localization.h"
#include "support/make_string.h"
#include "support/ports/translations.h"
#include "support/problem_reports.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {

namespace {

constexpr std::string_view kConversionFailed = localizable("Conversion Failed");
constexpr std::string_view kInformation = localizable("Information");
constexpr std::string_view kNoSpaceLeft = "No space left on device";
constexpr std::size_t kShownOutput = 400;

/// A row matches when the output contains every part of one of its alternatives.
struct Row {
    std::array<std::array<std::string_view, 2>, 3> alternatives{};
    std::string_view message{};
};

constexpr auto kRows = std::to_array<Row>({
    {{{{kNoSpaceLeft}}},
     localizable("Movie conversion failed because there is not enough free space left on the "
                 "destination volume. Please make sure your harddisk has enough free space before "
                 "starting conversion")},
    {{{{"File too large"}}}, kNoLargeFiles},
    {{{{"Operation timed out"}, {"Connection timed out"}, {"Bad file descriptor"}}},
     localizable("Movie conversion failed but it seems the reason is that the disk or network "
                 "volume to save the movie is having problems. Try converting to a reliable disk "
                 "and copying the file to its destination later.")},
    {{{{"Read error at pos", "Error while decoding stream"}}},
     localizable("Movie conversion failed because the movie seems to be too damaged to convert - "
                 "playback may work but converting it is impossible.")},
    {{{{"USER_REMOVED"}}},
     localizable("Movie conversion failed because you've removed/renamed the source movie file or "
                 "unmounted it's volume.")},
    {{{{"track 0: could not find tag, codec not currently supported in container"},
       {"Could not find tag for codec",
        "in stream #0, codec not currently supported in container"}}},
     localizable("Movie conversion failed because you are trying to convert a movie with a video "
                 "track that can't be embedded into MP4s.")},
});

constexpr std::string_view kIncomplete = localizable(
    "The converted file is incomplete, so it was not kept. Please check the destination disk and "
    "try again.");
constexpr std::string_view kDamagedSource = localizable(
    "The converted file is incomplete because %@ is damaged or ends too early, so it was not kept. "
    "Please check that file and the disk that it lies on.");
constexpr std::string_view kEmbeddedSubtitles = localizable(
    "A problem occured - this is most likely related to the subtitles embedded into the movie. "
    "Please disable conversion of embedded subtitles in the preferences and try again.");
constexpr std::string_view kExternalSubtitles = localizable(
    "A problem occured - this is most likely related to the subtitle file you have specified. "
    "Please try again without the subtitle file.");
constexpr std::string_view kUnknown = localizable(
    "A problem prevented the file from being converted. You can contact our support with this "
    "information so that we can fix this problem.\n\nCommand-line: %@\nCommand-output: %@");

bool matches(const Row& row, std::string_view output) {
    return std::ranges::any_of(row.alternatives, [output](const auto& parts) {
        return !parts.front().empty() && std::ranges::all_of(parts, [output](auto part) {
            return part.empty() || Fennimar::contains(output, part);
        });
    });
}

}  // namespace

Diagnosis diagnose(const Translations& translations, const FailureFacts& facts) {
    const auto told = [&translations](std::string_view title, std::string_view message) {
        return Diagnosis{.title = translations.localized(title),
                         .message = translations.localized(message)};
    };
    if (!facts.startProblem.empty()) {
        return {.title = translations.localized(kConversionFailed),
                .message = std::string(facts.startProblem)};
    }
    const auto* const row = std::ranges::find_if(
        kRows, [&](const Row& candidate) { return matches(candidate, facts.jobOutput); });
    if (row != kRows.end()) return told(kConversionFailed, row->message);
    if (facts.incompleteOutput && !facts.damagedSource.empty()) {
        return {.title = translations.localized(kConversionFailed),
                .message = makeString(translations.localized(kDamagedSource), facts.damagedSource)};
    }
    if (facts.incompleteOutput) return told(kConversionFailed, kIncomplete);
    if (facts.embeddedSubtitlesConverted) return told(kInformation, kEmbeddedSubtitles);
    if (facts.externalSubtitles) return told(kInformation, kExternalSubtitles);
    // File names and the converter's output may be any bytes; what is shown is text.
    const auto output = Fennimar::clamp(Fennimar::validUtf8(facts.shownOutput), kShownOutput);
    return {.title = translations.localized(kInformation),
            .message = makeString(translations.localized(kUnknown),
                                  Fennimar::validUtf8(facts.arguments), output),
            .offersReport = true};
}

bool ranOutOfSpace(std::string_view jobOutput) {
    return Fennimar::contains(jobOutput, kNoSpaceLeft);
}

Mail failureReport(const ReportFacts& sender, const FailedRun& run) {
    return {.address = std::string(kSupportAddress),
            .subject = makeString("%@ v%@ Problem Report", sender.appName, sender.appVersionString),
            .before = makeString("Hello\nConversion of a file failed.\n\nBye\n\nP.S. Details: %@ ",
                                 run.arguments),
            .details = run.log,
            .after = makeString(" %@\n\n\nP.P.S: Hardware: %@ Software: %@ Preferences: %@",
                                run.recordDescription, sender.machineType,
                                sender.operatingSystemVersion, sender.preferences)};
}

void offerReport(Vantor& vantor, const std::string& title, const std::string& text,
                 const FailedRun& run) {
    const auto answer = askForReport(vantor, title, text, "Cancel");
    if (!answer.send) return;
    openMail(vantor, failureReport(gatherReportFacts(vantor, answer.withPreferences), run));
}

namespace {

bool isStatistics(std::string_view line) {
    return Fennimar::contains(line, "frame=") && Fennimar::contains(line, "bitrate=");
}

/// Tells line by line what was printed, and whether a line end followed.
template <typename Told>
void forEachLine(std::string_view printed, Told told) {
    for (const auto line : Fennimar::lines(printed)) {
        const auto end = static_cast<std::size_t>(line.data() - printed.data()) + line.size();
        told(line, end < printed.size());
    }
}

/// Lines that differ in numbers alone, addresses among them, are of one kind.
std::size_t kindOf(std::string_view line) {
    std::string words(line);
    std::erase_if(words, [](unsigned char c) { return std::isxdigit(c) != 0; });
    return std::hash<std::string>()(words);
}

}  // namespace

void RunLog::noteKind(std::string_view line) {
    constexpr std::size_t kMostKinds = 500;
    constexpr std::size_t kLongestExample = 500;
    if (kinds_.size() < kMostKinds && kinds_.insert(kindOf(line)).second) {
        examples_.append(line.substr(0, kLongestExample));
    }
}

void RunLog::append(std::string_view printed) {
    forEachLine(printed, [this](std::string_view line, bool isEnded) {
        if (isStatistics(line)) return;
        if (searched_.text().size() >= BoundedText::kPart) noteKind(line);
        searched_.append(line);
        show(line, isEnded);
    });
}

void RunLog::appendRest(std::string_view printed) {
    if (searched_.omittedBytes() > 0) searched_.append(examples_);
    searched_.append(printed);
    forEachLine(printed, [this](std::string_view line, bool isEnded) { show(line, isEnded); });
}

void RunLog::show(std::string_view line, bool isEnded) {
    shown_.append(line);
    // A carriage return with a line feed ends two lines, and an empty one says nothing.
    const bool isEmptyLine = shown().empty() || shown().back() == '\n';
    if (isEnded && !isEmptyLine) shown_.append("\n");
}

}  // namespace reelvane
