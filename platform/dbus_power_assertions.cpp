#include "platform/dbus_power_assertions.h"

#include <array>
#include <map>
#include <unistd.h>
#include <utility>

#include "platform/dbus_connection.h"
#include "support/logging.h"
#include "support/posix_io.h"

namespace reelvane {
namespace {

/// A service that keeps the machine awake on request.
struct InhibitService {
    Bus bus;
    DBusMethod inhibit;
    const char* answerType;
    GVariant* (*arguments)(const char* application, const char* reason);
    const char* uninhibit;  ///< null: the answer is a descriptor, and closing it gives back
};

constexpr guint32 kGnomeInhibitSuspend = 4;
/// Long: an answer that came after it could not be given back before the end, and nobody waits.
constexpr auto kAnswerTime = std::chrono::seconds(25);

const std::array kServices{
    InhibitService{Bus::Session,
                   {"org.gnome.SessionManager", "/org/gnome/SessionManager",
                    "org.gnome.SessionManager", "Inhibit"},
                   "(u)",
                   [](const char* application, const char* reason) {
                       return g_variant_new("(susu)", application, 0U, reason,
                                            kGnomeInhibitSuspend);
                   },
                   "Uninhibit"},
    InhibitService{Bus::Session,
                   {"org.freedesktop.PowerManagement", "/org/freedesktop/PowerManagement/Inhibit",
                    "org.freedesktop.PowerManagement.Inhibit", "Inhibit"},
                   "(u)",
                   [](const char* application, const char* reason) {
                       return g_variant_new("(ss)", application, reason);
                   },
                   "UnInhibit"},
    InhibitService{Bus::System,
                   {"org.freedesktop.login1", "/org/freedesktop/login1",
                    "org.freedesktop.login1.Manager", "Inhibit"},
                   "(h)",
                   [](const char* application, const char* reason) {
                       return g_variant_new("(ssss)", "idle", application, reason, "block");
                   },
                   nullptr}};

}  // namespace

/// What is held, and of whom. Lives on the background thread.
class DBusPowerAssertions::Inhibitors {
public:
    explicit Inhibitors(const std::string& application) : application_(validUtf8(application)) {}

    void take(PowerAssertionID id, const std::string& reason, BackgroundThread::Context& context) {
        std::string error;
        for (const auto& service : kServices) {
            auto answer = busOf(service).call(
                service.inhibit, service.arguments(application_.c_str(), reason.c_str()),
                service.answerType, context.cancellable(), kAnswerTime);
            if (answer.values && hold(id, service, answer)) return;
            error = std::move(answer.error);
        }
        if (std::exchange(refusalLogged_, true) || context.isCancelled()) return;
        context.log(LogNotice, "Nothing on this system keeps the machine awake while converting (" +
                                   error + ").");
    }

    void giveBack(PowerAssertionID id, BackgroundThread::Context& context) {
        const auto found = held_.find(id);
        if (found == held_.end()) return;
        const auto held = std::move(found->second);
        held_.erase(found);
        if (held.service->uninhibit == nullptr) return;
        auto method = held.service->inhibit;
        method.name = held.service->uninhibit;
        // An error says that the service is gone, and what it held with it.
        static_cast<void>(
            busOf(*held.service)
                .call(method, g_variant_new("(u)", held.cookie), "()", context.cancellable()));
    }

    void giveBackAll(BackgroundThread::Context& context) {
        while (!held_.empty()) giveBack(held_.begin()->first, context);
        // Whatever a service still holds for this connection ends with it.
        session_.close(context.cancellable());
    }

private:
    struct Held {
        const InhibitService* service = nullptr;
        guint32 cookie = 0;
        FileDescriptor descriptor{};
    };

    DBusConnection& busOf(const InhibitService& service) {
        return service.bus == Bus::Session ? session_ : system_;
    }

    bool hold(PowerAssertionID id, const InhibitService& service, const DBusAnswer& answer) {
        Held held{.service = &service};
        if (service.uninhibit != nullptr) {
            g_variant_get(answer.values.get(), "(u)", &held.cookie);
        } else {
            gint32 index = 0;
            g_variant_get(answer.values.get(), "(h)", &index);
            if (!answer.descriptors) return false;
            held.descriptor =
                FileDescriptor(g_unix_fd_list_get(answer.descriptors.get(), index, nullptr));
            if (!held.descriptor.isOpen()) return false;
        }
        held_.emplace(id, std::move(held));
        return true;
    }

    std::string application_;
    DBusConnection session_{Bus::Session};
    DBusConnection system_{Bus::System};
    std::map<PowerAssertionID, Held> held_;
    bool refusalLogged_ = false;
};

DBusPowerAssertions::DBusPowerAssertions(SystemLog& log, const std::string& application)
    : inhibitors_(std::make_shared<Inhibitors>(application)),
      thread_(log) {}

DBusPowerAssertions::~DBusPowerAssertions() {
    thread_.finish([inhibitors = inhibitors_](auto& context) { inhibitors->giveBackAll(context); });
}

PowerAssertionID DBusPowerAssertions::create(std::string_view name) {
    if (++last_ == kNoPowerAssertion) ++last_;
    thread_.run([inhibitors = inhibitors_, id = last_, reason = validUtf8(std::string(name))](
                    auto& context) { inhibitors->take(id, reason, context); });
    return last_;
}

void DBusPowerAssertions::release(PowerAssertionID assertion) {
    if (assertion == kNoPowerAssertion || assertion > last_) return;
    thread_.run([inhibitors = inhibitors_, assertion](auto& context) {
        inhibitors->giveBack(assertion, context);
    });
}

}  // namespace reelvane
