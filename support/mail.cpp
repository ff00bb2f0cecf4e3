#include "support/mail.h"

#include <future>
#include <memory>
#include <optional>
#include <utility>

#include "support/alerts.h"
#include "support/dispatch.h"
#include "support/localization.h"
#include "support/logging.h"
#include "support/make_string.h"
#include "support/paths.h"
#include "support/ports/workspace.h"
#include "support/posix_io.h"
#include "support/strings.h"
#include "support/vantor.h"

namespace reelvane {
namespace {

constexpr std::string_view kNoMailProgram = localizable("No mail program could be opened.");
constexpr std::string_view kCopy = localizable("Copy");
constexpr std::string_view kClose = localizable("Close");
constexpr double kMailWidth = 460;
constexpr double kMailHeight = 220;

/// What RFC 3986 leaves unreserved beside letters and digits; all else has, or may get, a meaning
/// in a link.
constexpr std::string_view kUnreserved = "-._~";

std::string encoded(std::string_view text, std::string_view kept = kUnreserved) {
    return Fennimar::escaped(Fennimar::validUtf8(text), kept);
}

bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// How many bytes of the text, in this order, are at most `room` bytes once encoded.
template <typename Iterator>
std::size_t fitting(Iterator begin, Iterator end, std::size_t room) {
    std::size_t taken = 0;
    for (auto byte = begin; byte != end; ++byte, ++taken) {
        const auto size = Fennimar::escaped({&*byte, 1}, kUnreserved).size();
        if (size > room) break;
        room -= size;
    }
    return taken;
}

/// The beginning and the end of a valid text that have about the same size once encoded, together
/// at most `room` bytes, and no part of a character.
std::pair<std::string_view, std::string_view> ends(std::string_view text, std::size_t room) {
    auto head = fitting(text.begin(), text.end(), room / 2);
    while (head > 0 && head < text.size() && continuesCharacter(text[head])) --head;
    const auto rest = text.substr(head);
    auto tail = rest.size() - fitting(rest.rbegin(), rest.rend(), room / 2);
    while (tail < rest.size() && continuesCharacter(rest[tail])) ++tail;
    return {text.substr(0, head), rest.substr(tail)};
}

std::string body(const Mail& mail) {
    return mail.before + mail.details + mail.after;
}

/// Absent, and logged, where it could not be written. Blocks.
std::optional<std::filesystem::path> saved(const Vantor& vantor, const Mail& mail) {
    const auto wanted = vantor.docDir() / makeString("%@ Report.txt", vantor.appName());
    const auto path = Fennimar::uniqueFile(wanted);
    const auto file = createFile(path, 0600);
    if (file.isOpen() && writeAll(file.get(), mailText(mail))) return path;
    vn_log_level(LogError, "Error: the report could not be saved as %@", path);
    return std::nullopt;
}

/// Between the halves of a mail that was cut; the user reads it before the support does.
std::string cutNotice(const Vantor& vantor, const std::optional<std::filesystem::path>& file) {
    const auto text =
        file ? makeString(localized(vantor,
                                    "This text was too long for a mail and has been cut "
                                    "here. All of it is in the file %@. Please attach "
                                    "that file to this mail."),
                          Fennimar::validUtf8(file->native()))
             : localized(vantor, "This text was too long for a mail and has been cut here.");
    return makeString("\n\n[... %@ ...]\n\n", text);
}

bool isTooLong(const std::string& link) {
    return link.size() > kLongestMailLink;
}

/// `file`: where the text lies, too; for a program that ends, and its clipboard with it.
void offerToCopy(Vantor& vantor, const Mail& mail,
                 const std::optional<std::filesystem::path>& file = {}) {
    auto message =
        makeString(localized(vantor, "Please write a mail to %@ and copy the text below into it."),
                   mail.address);
    if (file) {
        message = makeString(localized(vantor,
                                       "Please send the text below to %@. It has been "
                                       "saved as %@."),
                             mail.address, Fennimar::validUtf8(file->native()));
    }
    const auto answer = runAlert(vantor, {.title = std::string(kNoMailProgram),
                                          .message = std::move(message),
                                          .buttons = {std::string(kCopy), std::string(kClose)},
                                          .accessory = {.kind = AlertAccessory::Kind::Text,
                                                        .width = kMailWidth,
                                                        .height = kMailHeight,
                                                        .text = mailText(mail)},
                                          .cancelTitle = std::string(kClose)});
    if (answer.button == kFirstButton) vantor.ports().workspace.copyText(answer.text);
}

void openLink(Vantor& vantor, Mail mail, const std::string& link) {
    // The answer may come from a thread that ends after the program's object.
    auto& dispatcher = vantor.ports().dispatcher;
    vantor.ports().workspace.openURL(
        link, [&dispatcher, &vantor, mail = std::move(mail)](bool opened) {
            if (opened) return;
            dispatcher.asyncMain([&vantor, mail] { offerToCopy(vantor, mail); });
        });
}

}  // namespace

std::string mailLink(const Mail& mail) {
    return makeString("mailto:%@?subject=%@&body=%@", encoded(mail.address, "-._~@"),
                      encoded(mail.subject), encoded(body(mail)));
}

std::string mailText(const Mail& mail) {
    return makeString("%@\n%@\n\n%@\n", mail.address, mail.subject,
                      Fennimar::validUtf8(body(mail)));
}

Mail shortened(Mail mail, std::string_view notice, std::size_t longest) {
    if (mailLink(mail).size() <= longest) return mail;
    const auto details = Fennimar::validUtf8(mail.details);
    mail.details = notice;
    const auto least = mailLink(mail).size();
    const auto [head, tail] = ends(details, longest > least ? longest - least : 0);
    mail.details = makeString("%@%@%@", head, notice, tail);
    return mail;
}

void openMail(Vantor& vantor, Mail mail) {
    auto link = mailLink(mail);
    if (!isTooLong(link)) {
        openLink(vantor, std::move(mail), link);
        return;
    }
    dispatch_async_back(vantor, [&vantor, mail = std::move(mail)] {
        const auto notice = cutNotice(vantor, saved(vantor, mail));
        dispatch_async_main(vantor, [&vantor, mail, link = mailLink(shortened(mail, notice))] {
            openLink(vantor, mail, link);
        });
    });
}

void openLastMail(Vantor& vantor, const Mail& mail, Interval patience) {
    auto link = mailLink(mail);
    if (isTooLong(link)) link = mailLink(shortened(mail, cutNotice(vantor, saved(vantor, mail))));
    // Shared: the answer may come when nobody waits for it any more.
    const auto opened = std::make_shared<std::promise<bool>>();
    auto answer = opened->get_future();
    vantor.ports().workspace.openURL(link, [opened](bool started) { opened->set_value(started); });
    if (answer.wait_for(patience) == std::future_status::ready && !answer.get()) {
        offerToCopy(vantor, mail, saved(vantor, mail));
    }
}

}  // namespace reelvane
