#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>

#include "support/logging.h"

namespace reelvane {

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
