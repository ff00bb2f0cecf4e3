#include "cli/text_reporter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <system_error>
#include <utility>

#include "cli/console.h"
#include "cli/convert_reporter.h"
#include "support/localization.h"
#include "support/make_string.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::size_t kShortestName = 8;
constexpr std::size_t kUsualName = 16;  // shorter ones are padded
constexpr std::size_t kLongestName = 40;
constexpr std::size_t kBarFrame = 3;  // its two ends and a space
constexpr std::size_t kShortestBar = 6;
constexpr std::size_t kLongestBar = 30;
constexpr std::size_t kEighths = 8;  // the steps of one block character

constexpr auto kPartialBlocks =
    std::to_array<std::string_view>({"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"});

constexpr std::string_view kGreen = "\x1b[32m";
constexpr std::string_view kDim = "\x1b[2m";
constexpr std::string_view kPlain = "\x1b[0m";

std::string percentText(double percent) {
    // Rounded down: 100 is for what has ended.
    return makeString("%3i%%", static_cast<int>(std::clamp(percent, 0.0, 100.0)));
}

std::string speedText(double speed) {
    std::array<char, 32> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), speed,
                                       std::chars_format::fixed, speed < 10 ? 1 : 0);
    return std::string(text.data(), written.ptr) + "x";
}

std::string bar(double percent, std::size_t columns, bool coloured) {
    const auto share = std::clamp(percent, 0.0, 100.0) / 100;
    const auto steps = static_cast<std::size_t>(share * double(columns * kEighths));
    std::string full;
    for (std::size_t i = 0; i < steps / kEighths; ++i) full += "█";
    full += kPartialBlocks.at(steps % kEighths);
    const auto rest = columns - displayWidth(full);
    std::string empty;
    for (std::size_t i = 0; i < rest; ++i) empty += coloured ? "─" : " ";
    if (!coloured) return "[" + full + empty + "]";
    return makeString(" %@%@%@%@%@%@ ", kGreen, full, kPlain, kDim, empty, kPlain);
}

/// What stands around the name and the bar.
struct Surroundings {
    std::string before{};
    std::string behind{};
};

/// The parts that are left when so many are left out, in columns that do not dance from one second
/// to the next.
Surroundings surroundings(const ConvertProgress& progress, int leftOut) {
    Surroundings parts{.behind = percentText(progress.percent)};
    if (progress.files > 1 && leftOut < 2) {
        parts.before = makeString("[%lu/%lu] ", progress.number, progress.files);
    }
    if (leftOut < 1) {
        parts.behind += makeString("  %5s", progress.speed ? speedText(*progress.speed) : "");
    }
    if (leftOut < 3) {
        const auto left =
            progress.remaining ? formattedTimeFromTimeInterval(*progress.remaining) : "";
        parts.behind += makeString("  %7s", left);
    }
    return parts;
}

/// Where a message speaks of this very file, and not of "Film.mkv.srt".
std::size_t placeOfName(std::string_view message, std::string_view name) {
    const auto isOneOf = [](std::string_view characters, char character) {
        return characters.find(character) != std::string_view::npos;
    };
    auto at = name.empty() ? std::string_view::npos : message.find(name);
    for (; at != std::string_view::npos; at = message.find(name, at + 1)) {
        auto behind = message.substr(at + name.size());
        if (behind.starts_with('.')) behind.remove_prefix(1);
        const bool begins = at == 0 || isOneOf(" '", message[at - 1]);
        if (begins && (behind.empty() || isOneOf(" ':,", behind.front()))) break;
    }
    return at;
}

std::string nameOf(const EventSubject& subject) {
    return printable(subject.file);
}

/// " with Film.en.srt (CP1252)"; empty without a subtitle file.
std::string withSubtitles(const EventSubject& subject) {
    if (subject.subtitle.empty()) return {};
    auto text = " with " + printable(subject.subtitle.filename().native());
    if (!subject.subtitleEncoding.empty()) text += " (" + subject.subtitleEncoding + ")";
    return text;
}

class TextReporter final : public ConvertReporter {
public:
    TextReporter(Console& console, bool quiet)
        : console_(console),
          quiet_(quiet),
          live_(!quiet && console.abilities().liveLine) {}

    void reading(std::size_t number, std::size_t files) override {
        if (!live_) return;
        console_.showLive(elidedMiddle(makeString("Reading %lu of %lu...", number, files), room()));
    }

    void queued(const EventSubject& /*subject*/) override {}

    void started(const EventSubject& subject, std::span<const std::string> /*list*/) override {
        if (quiet_) return;
        const auto subtitles = withSubtitles(subject);
        if (live_) {
            // The live line has no room for it.
            if (!subtitles.empty()) console_.line(nameOf(subject) + ":" + subtitles);
            return;
        }
        progressSteps_ = {};
        console_.line(nameOf(subject) + ": converting" + subtitles);
    }

    void progress(const EventSubject& subject, const ConvertProgress& progress) override {
        const auto name = nameOf(subject);
        if (live_) {
            console_.showLive(progressLine(name, progress, room(), console_.abilities().colours));
        } else if (!quiet_ && progressSteps_.isDue(progress.percent, progress.elapsed)) {
            console_.line(makeString("%@: %@", name, progressText(progress)));
        }
    }

    void finished(const EventSubject& subject, const ConvertResult& result) override {
        for (const auto& note : result.notes) {
            if (note.kind == JobNote::Kind::Remark) continue;
            warned(subject.file, note.text);
        }
        if (quiet_) return;
        auto details = result.details;
        const auto leftOut = leftOutText(kUntranslated, result.tracks);
        if (!leftOut.empty()) details += ", " + leftOut;
        console_.line(makeString("%@ -> %@ (%@, took %@)", nameOf(subject),
                                 printable(subject.output.native()), details,
                                 formattedTimeFromTimeInterval(result.seconds)));
        for (const auto& note : result.notes) {
            if (note.kind == JobNote::Kind::Remark) console_.line("    " + printable(note.text));
        }
    }

    void failed(const EventSubject& subject, std::string_view /*title*/, std::string_view message,
                std::string_view /*log*/) override {
        console_.error(errorText(nameOf(subject), "failed", message));
    }

    void interrupted(const EventSubject& /*subject*/) override {}

    void refused(std::string_view file, std::span<const VettingAlert> alerts) override {
        std::string text;
        for (const auto& alert : alerts) {
            if (!text.empty()) text += '\n';
            text += alert.message;
        }
        const bool repeated = !text.empty() && text == lastRefusal_;
        console_.error(repeated ? printable(file) + ": refused for the same reason"
                                : errorText(printable(file), "refused", text));
        lastRefusal_ = std::move(text);
    }

    void warned(std::string_view file, std::string_view warning) override {
        console_.error(warningLine(printable(file), warning));
    }

    void alerted(std::string_view title, std::string_view message) override {
        console_.error(errorText(printable(title), {}, message));
    }

    void ended(const ConvertSummary& summary, bool interrupted) override {
        console_.endLive();
        if (interrupted) {
            console_.error(summary.leftSomething
                               ? "Interrupted."
                               : "Interrupted: nothing unfinished was left behind.");
            return;
        }
        const auto files = summary.finished + summary.failed + summary.refused;
        if (quiet_ || files < 2) return;
        console_.line(summaryText(summary));
    }

private:
    /// One column stays free: a terminal may wrap a line that fills it.
    [[nodiscard]] static std::size_t room() {
        return std::max<std::size_t>(Console::columns(), 2) - 1;
    }

    Console& console_;
    bool quiet_;
    bool live_;
    ProgressSteps progressSteps_;
    std::string lastRefusal_;
};

}  // namespace

std::unique_ptr<ConvertReporter> makeTextReporter(Console& console, bool quiet) {
    return std::make_unique<TextReporter>(console, quiet);
}

std::string progressText(const ConvertProgress& progress) {
    auto text = makeString("%i%%", static_cast<int>(std::clamp(progress.percent, 0.0, 100.0)));
    if (progress.speed) text += makeString(" at %@", speedText(*progress.speed));
    if (progress.remaining) {
        text += makeString(", %@ left", formattedTimeFromTimeInterval(*progress.remaining));
    }
    return text;
}

bool ProgressSteps::isDue(double percent, double elapsed) {
    constexpr double kMinute = 60;
    const int tens = static_cast<int>(percent / 10);
    if (tens == tens_ && (percent <= 0 || elapsed - told_ < kMinute)) return false;
    tens_ = tens;
    told_ = elapsed;
    return true;
}

std::string progressLine(std::string_view name, const ConvertProgress& progress,
                         std::size_t columns, bool coloured) {
    constexpr int kMostLeftOut = 3;
    constexpr auto kLeastRoom = kShortestName + kBarFrame + kShortestBar;
    Surroundings parts;
    std::size_t room = 0;  // for name and bar
    for (int leftOut = 0; leftOut <= kMostLeftOut && room < kLeastRoom; ++leftOut) {
        parts = surroundings(progress, leftOut);
        const auto taken = displayWidth(parts.before) + 1 + displayWidth(parts.behind);
        room = columns > taken ? columns - taken : 0;
    }
    if (room == 0) return elidedMiddle(parts.behind, columns);
    if (room < kLeastRoom) return padded(elidedMiddle(name, room), room) + " " + parts.behind;

    const auto wanted = std::clamp(displayWidth(name), kUsualName, kLongestName);
    const auto forName = std::min(wanted, std::max(kShortestName, (room - kBarFrame) * 3 / 5));
    const auto forBar = std::min(room - kBarFrame - forName, kLongestBar);
    return parts.before + padded(elidedMiddle(name, forName), forName) + " " +
           bar(progress.percent, forBar, coloured) + " " + parts.behind;
}

std::string errorText(std::string_view name, std::string_view what, std::string_view message) {
    std::string text(name);
    if (!what.empty()) text += makeString(": %@", what);
    if (message.empty()) return text;
    bool first = true;
    for (const auto line : Fennimar::lines(message)) {
        if (first) {
            text += ": ";
        } else if (!line.empty()) {
            text += "\n    ";
        }
        text += printable(line);
        first = false;
    }
    return text;
}

std::string warningLine(std::string_view name, std::string_view message) {
    const auto text = printable(message);
    if (placeOfName(text, name) != std::string::npos) return "Warning: " + text;
    const auto fileName = name.substr(name.rfind('/') + 1);
    const auto at = placeOfName(text, fileName);
    if (at == std::string::npos) return errorText(name, "warning", message);
    return "Warning: " + std::string(text).replace(at, fileName.size(), name);
}

std::string outputLostText(int error) {
    return makeString("Standard output can't be written (%@), so reelvane-cli has ended.",
                      std::generic_category().message(error));
}

std::string summaryText(const ConvertSummary& summary) {
    auto text =
        makeString("%lu %@ converted", summary.finished, summary.finished == 1 ? "file" : "files");
    if (summary.failed > 0) text += makeString(", %lu failed", summary.failed);
    if (summary.refused > 0) text += makeString(", %lu refused", summary.refused);
    if (summary.finished == 0) return text;
    return text + makeString(" (%@, %@)", formattedTimeFromTimeInterval(summary.seconds),
                             fileSizeText(summary.bytes));
}

}  // namespace reelvane
