#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>

#include "support/logging.h"

namespace reelvane {

class Translations;

/// What a failed conversion is explained with.
struct Diagnosis {
    std::string title{};
    std::string message{};
    bool offersReport = false;  ///< the buttons are "Send to support" and "Cancel" instead of "OK"
};

/// What the explanation depends on.
struct FailureFacts {
    std::string_view startProblem{};   ///< what kept the converter or its output from their
                                       ///< place, translated; empty: nothing did
    std::string_view jobOutput{};      ///< what is searched
    std::string_view shownOutput{};    ///< the same, line by line
    bool incompleteOutput = false;     ///< the converter was content, but the file is not whole
    std::string_view damagedSource{};  ///< then: the source's name, where that is the reason
    std::string_view arguments{};      ///< joined with single spaces
    bool embeddedSubtitlesConverted = false;  ///< enabled, and the input has at least one
    bool externalSubtitles = false;
};

/// Explains a failure by the first matching row of the table, in the user's language. Pure.
[[nodiscard]] Diagnosis diagnose(const Translations& translations, const FailureFacts& facts);

/// True when the output says that the destination ran full, which is told at once.
[[nodiscard]] bool ranOutOfSpace(std::string_view jobOutput);

class Vantor;
struct Mail;
struct ReportFacts;

/// What a report says of the run itself.
struct FailedRun {
    std::string arguments{};  ///< joined with single spaces
    std::string log{};        ///< whole, line by line
    std::string recordDescription{};
};

/// The report on a failed conversion.
[[nodiscard]] Mail failureReport(const ReportFacts& sender, const FailedRun& run);

/// Shows why a conversion failed and opens the report's mail where the user asks for it. Blocks
/// until the user has answered.
void offerReport(Vantor& vantor, const std::string& title, const std::string& text,
                 const FailedRun& run);

/// What the converter has printed, without its statistics lines: once to be searched for single
/// messages and once to be shown. Byte for byte; it need not be UTF-8.
class RunLog {
public:
    /// Appends what came while the converter ran, in pieces of any length.
    void append(std::string_view printed);
    /// Appends what was left to be read when it had ended; nothing of that is dropped.
    void appendRest(std::string_view printed);

    /// The lines joined without a separator; the rest as it is.
    /// Of a flood (see BoundedText) also one line of each kind that was left out.
    [[nodiscard]] const std::string& searched() const { return searched_.text(); }
    /// One line after the other, without the empty ones.
    [[nodiscard]] const std::string& shown() const { return shown_.text(); }

private:
    void show(std::string_view line, bool isEnded);

    void noteKind(std::string_view line);

    BoundedText searched_;
    BoundedText shown_;
    std::set<std::size_t> kinds_;  ///< of the lines that may be left out
    std::string examples_;         ///< one for each
};

}  // namespace reelvane
