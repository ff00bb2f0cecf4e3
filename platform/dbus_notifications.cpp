#include "platform/dbus_notifications.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "platform/dbus_connection.h"
#include "support/logging.h"

namespace reelvane {
namespace {

constexpr auto kService = "org.freedesktop.Notifications";
constexpr auto kPath = "/org/freedesktop/Notifications";
/// From the sound naming specification: a short sound for something new.
constexpr auto kDefaultSound = "message-new-instant";
constexpr std::int32_t kDaemonsOwnExpiry = -1;

using Capabilities = std::set<std::string, std::less<>>;

std::string escapedForMarkup(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

GVariant* actionsOf(const Notification& notification, const Capabilities& capabilities) {
    GVariantBuilder actions;
    g_variant_builder_init(&actions, G_VARIANT_TYPE_STRING_ARRAY);
    if (notification.actionTitle && capabilities.contains("actions")) {
        const auto title = validUtf8(*notification.actionTitle);
        // "default" is a click on the notification itself.
        for (const auto* const word : {"default", title.c_str(), "show", title.c_str()}) {
            g_variant_builder_add(&actions, "s", word);
        }
    }
    return g_variant_builder_end(&actions);
}

bool hasType(GVariant* values, const char* type) {
    return g_variant_is_of_type(values, G_VARIANT_TYPE(type)) != FALSE;
}

}  // namespace

/// What is known of the daemon and of what it shows. Lives on the background thread.
class DBusNotifications::Daemon {
public:
    /// Tells the main thread of a click.
    using Click = std::function<void(const Notification&)>;

    Daemon(const std::string& application, const std::string& desktopEntry, Click click)
        : application_(validUtf8(application)),
          desktopEntry_(validUtf8(desktopEntry)),
          click_(std::move(click)) {
        bus_.listen(kService, kService, [this](const std::string& name, GVariant* values) {
            signalArrived(name, values);
        });
    }

    void show(const Notification& notification, BackgroundThread::Context& context) {
        std::string error;
        if (askCapabilities(error, context) && notify(notification, error, context)) return;
        if (std::exchange(failureLogged_, true) || context.isCancelled()) return;
        context.log(LogNotice, "This desktop shows no notifications (" + error + ").");
    }

    void close(BackgroundThread::Context& context) { bus_.close(context.cancellable()); }

private:
    bool askCapabilities(std::string& error, BackgroundThread::Context& context) {
        if (capabilities_) return true;
        auto answer = bus_.call({kService, kPath, kService, "GetCapabilities"},
                                g_variant_new_tuple(nullptr, 0), "(as)", context.cancellable());
        error = std::move(answer.error);
        if (!answer.values) return false;
        capabilities_.emplace();
        GVariantIter* words = nullptr;
        g_variant_get(answer.values.get(), "(as)", &words);
        const char* word = nullptr;
        while (g_variant_iter_next(words, "&s", &word) != FALSE) capabilities_->emplace(word);
        g_variant_iter_free(words);
        return true;
    }

    bool notify(const Notification& notification, std::string& error,
                BackgroundThread::Context& context) {
        const auto title = validUtf8(notification.title);
        // Escaped even where "body-markup" is not announced: such daemons read markup all the same,
        // and what looks like a tag would be lost.
        const auto text = escapedForMarkup(validUtf8(notification.text));
        constexpr std::uint32_t kNew = 0;
        auto answer = bus_.call(
            {kService, kPath, kService, "Notify"},
            g_variant_new("(susss@as@a{sv}i)", application_.c_str(), kNew, desktopEntry_.c_str(),
                          title.c_str(), text.c_str(), actionsOf(notification, *capabilities_),
                          hints(), kDaemonsOwnExpiry),
            "(u)", context.cancellable());
        error = std::move(answer.error);
        if (!answer.values) return false;
        std::uint32_t id = 0;
        g_variant_get(answer.values.get(), "(u)", &id);
        shown_[id] = notification;
        return true;
    }

    [[nodiscard]] GVariant* hints() const {
        GVariantBuilder hints;
        g_variant_builder_init(&hints, G_VARIANT_TYPE_VARDICT);
        g_variant_builder_add(&hints, "{sv}", "desktop-entry",
                              g_variant_new_string(desktopEntry_.c_str()));
        if (capabilities_->contains("sound")) {
            g_variant_builder_add(&hints, "{sv}", "sound-name",
                                  g_variant_new_string(kDefaultSound));
        }
        return g_variant_builder_end(&hints);
    }

    void signalArrived(const std::string& name, GVariant* values) {
        std::uint32_t id = 0;
        if (name == "ActionInvoked" && hasType(values, "(us)")) {
            g_variant_get(values, "(u&s)", &id, nullptr);
            if (const auto found = shown_.find(id); found != shown_.end()) click_(found->second);
        } else if (name == "NotificationClosed" && hasType(values, "(uu)")) {
            g_variant_get(values, "(uu)", &id, nullptr);
            shown_.erase(id);
        }
    }

    std::string application_;
    std::string desktopEntry_;
    Click click_;
    DBusConnection bus_{Bus::Session};
    std::optional<Capabilities> capabilities_;
    std::map<std::uint32_t, Notification> shown_;
    bool failureLogged_ = false;
};

DBusNotifications::DBusNotifications(SystemLog& log, Dispatcher& dispatcher,
                                     const std::string& application,
                                     const std::string& desktopEntry)
    : activation_(std::make_shared<Activation>()),
      daemon_(std::make_shared<Daemon>(
          application, desktopEntry,
          [&dispatcher, activation = std::weak_ptr(activation_)](const Notification& clicked) {
              dispatcher.asyncMain([activation, clicked] {
                  const auto tell = activation.lock();
                  if (tell && *tell) (*tell)(clicked);
              });
          })),
      thread_(log) {}

DBusNotifications::~DBusNotifications() {
    thread_.finish([daemon = daemon_](auto& context) { daemon->close(context); });
}

void DBusNotifications::deliver(const Notification& notification) {
    thread_.run(
        [daemon = daemon_, notification](auto& context) { daemon->show(notification, context); });
}

void DBusNotifications::setActivation(Activation activation) {
    *activation_ = std::move(activation);
}

}  // namespace reelvane
