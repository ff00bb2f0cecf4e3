#pragma once

#include <string>
#include <string_view>

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

}  // namespace reelvane
