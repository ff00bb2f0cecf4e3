#include "platform/dbus_power_assertions.h"

#include <array>
#include <chrono>
#include <optional>
#include <utility>

namespace reelvane {
namespace {

/// A service that keeps the machine awake on request.
struct InhibitService {
    DBusMethod inhibit;
    const char* answerType;
    GVariant* (*arguments)(const char* application, const char* reason);
    const char* uninhibit;  ///< null: the answer is a descriptor, and closing it gives back
};

constexpr guint32 kGnomeInhibitSuspend = 4;
/// Long: an answer that came after it could not be given back before the end, and nobody waits.
constexpr auto kAnswerTime = std::chrono::seconds(25);

const std::array kServices{
    InhibitService{{"org.gnome.SessionManager", "/org/gnome/SessionManager",
                    "org.gnome.SessionManager", "Inhibit"},
                   "(u)",
                   [](const char* application, const char* reason) {
                       return g_variant_new("(susu)", application, 0U, reason,
                                            kGnomeInhibitSuspend);
                   },
                   "Uninhibit"},
    InhibitService{{"org.freedesktop.PowerManagement", "/org/freedesktop/PowerManagement/Inhibit",
                    "org.freedesktop.PowerManagement.Inhibit", "Inhibit"},
                   "(u)",
                   [](const char* application, const char* reason) {
                       return g_variant_new("(ss)", application, reason);
                   },
                   "UnInhibit"},
    InhibitService{{"org.freedesktop.login1", "/org/freedesktop/login1",
                    "org.freedesktop.login1.Manager", "Inhibit", Bus::System},
                   "(h)",
                   [](const char* application, const char* reason) {
                       return g_variant_new("(ssss)", "idle", application, reason, "block");
                   },
                   nullptr}};

/// Absent where the answer is none that could be given back.
std::optional<guint32> cookieOf(const DBusAnswer& answer) {
    guint32 cookie = 0;
    if (!answer.values) return std::nullopt;
    g_variant_get(answer.values.get(), "(u)", &cookie);
    return cookie;
}

/// Not open where the answer has none.
FileDescriptor descriptorOf(const DBusAnswer& answer) {
    gint32 index = 0;
    if (!answer.values || !answer.descriptors) return {};
    g_variant_get(answer.values.get(), "(h)", &index);
    return FileDescriptor(g_unix_fd_list_get(answer.descriptors.get(), index, nullptr));
}

}  // namespace

DBusPowerAssertions::DBusPowerAssertions(SystemLog& log, DBusConnections& buses,
                                         const std::string& application)
    : log_(log),
      application_(validUtf8(application)),
      services_(buses) {}

DBusPowerAssertions::~DBusPowerAssertions() {
    for (const auto& [assertion, inhibition] : std::exchange(inhibitions_, {})) {
        giveBack(inhibition);
    }
    services_.finish();
}

PowerAssertionID DBusPowerAssertions::create(std::string_view name) {
    if (++last_ == kNoPowerAssertion) ++last_;
    inhibitions_.emplace(last_, Inhibition());
    ask(last_, validUtf8(std::string(name)), 0);
    return last_;
}

void DBusPowerAssertions::release(PowerAssertionID assertion) {
    if (const auto released = inhibitions_.extract(assertion)) giveBack(released.mapped());
}

void DBusPowerAssertions::ask(PowerAssertionID assertion, const std::string& reason,
                              std::size_t service) {
    const auto& asked = kServices.at(service);
    services_.call(
        asked.inhibit, asked.arguments(application_.c_str(), reason.c_str()), asked.answerType,
        [=, this](const DBusAnswer& answer) { answered(assertion, reason, service, answer); },
        kAnswerTime);
}

void DBusPowerAssertions::answered(PowerAssertionID assertion, const std::string& reason,
                                   std::size_t service, const DBusAnswer& answer) {
    Inhibition inhibition{.service = service};
    if (kServices.at(service).uninhibit != nullptr) {
        const auto cookie = cookieOf(answer);
        inhibition.isAnswered = cookie.has_value();
        inhibition.cookie = cookie.value_or(0);
    } else {
        inhibition.descriptor = descriptorOf(answer);
        inhibition.isAnswered = inhibition.descriptor.isOpen();
    }
    const auto wanted = inhibitions_.find(assertion);
    if (wanted == inhibitions_.end()) {
        giveBack(inhibition);  // it was released meanwhile
    } else if (inhibition.isAnswered) {
        wanted->second = std::move(inhibition);
    } else if (service + 1 < kServices.size()) {
        ask(assertion, reason, service + 1);
    } else if (!std::exchange(refusalLogged_, true)) {
        log_.write(LogNotice, "Nothing on this system keeps the machine awake while converting (" +
                                  answer.error + ").");
    }
}

/// Where there is a descriptor, its end says so.
void DBusPowerAssertions::giveBack(const Inhibition& inhibition) {
    auto method = kServices.at(inhibition.service).inhibit;
    method.name = kServices.at(inhibition.service).uninhibit;
    if (!inhibition.isAnswered || method.name == nullptr) return;
    // An error says that the service is gone, and what it held with it.
    services_.call(method, g_variant_new("(u)", inhibition.cookie), "()", [](const DBusAnswer&) {});
}

}  // namespace reelvane
