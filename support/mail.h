#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include "support/ports/dispatcher.h"

/// Mails that the user's own program writes and sends: the core only opens one that is prepared.
namespace reelvane {

class Vantor;

/// A prepared mail. The texts are plain; nothing in them is encoded.
struct Mail {
    std::string address{};
    std::string subject{};
    std::string before{};   ///< of the body, whose parts follow each other without a separator
    std::string details{};  ///< the part that may be of any length: a log, or what a user wrote
    std::string after{};
};

/// The longest link that is opened. A program takes no argument above 128 KiB (MAX_ARG_STRLEN of
/// Linux), and what starts the mail program may add words of its own.
inline constexpr std::size_t kLongestMailLink = std::size_t{120} * 1024;

/// "mailto:ADDRESS?subject=...&body=..." (RFC 6068) with every value percent-encoded.
[[nodiscard]] std::string mailLink(const Mail& mail);
/// What a user copies where no program opens the link: address, subject and body.
[[nodiscard]] std::string mailText(const Mail& mail);
/// The mail whose link has at most `longest` bytes: beginning and end of its details, with the
/// notice between them. Unchanged where it is short enough.
[[nodiscard]] Mail shortened(Mail mail, std::string_view notice,
                             std::size_t longest = kLongestMailLink);

/// Opens the mail in the user's mail program. One that is too long for it lies whole in a file of
/// the documents folder, which the shortened text names. Where no program opens, the text is shown
/// to be copied. Main thread only; does not wait.
void openMail(Vantor& vantor, Mail mail);
/// The same for a program that ends when this returns: waits until the mail program has been
/// started, but not longer than the patience.
void openLastMail(Vantor& vantor, const Mail& mail, Interval patience);

}  // namespace reelvane
