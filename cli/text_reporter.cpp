#include <algorithm>
#include <utility>

#include "cli/console.h"
#include "cli/convert_reporter.h"
#include "cli/progress_line.h"
#include "cli/text_lines.h"
#include "cli/text_width.h"
#include "support/make_string.h"
#include "support/size_text.h"
#include "support/time_text.h"
#include "support/untranslated.h"
#include "support/utf8.h"

namespace reelvane {
namespace {

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
        const ProgressFacts facts{.name = nameOf(subject),
                                  .percent = progress.percent,
                                  .speed = progress.speed,
                                  .remaining = progress.remaining,
                                  .number = progress.number,
                                  .files = progress.files};
        if (live_) {
            console_.showLive(progressLine(facts, room(), console_.abilities().colours));
        } else if (!quiet_ && progressSteps_.isDue(progress.percent, progress.elapsed)) {
            console_.line(makeString("%@: %@", facts.name, progressText(facts)));
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

}  // namespace reelvane
