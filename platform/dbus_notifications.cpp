#include "platform/dbus_notifications.h"

#include <utility>

namespace reelvane {
namespace {

constexpr auto kDaemon = "org.freedesktop.Notifications";
constexpr auto kDaemonPath = "/org/freedesktop/Notifications";
/// From the sound naming specification: a short sound for something new.
constexpr auto kDefaultSound = "message-new-instant";
constexpr std::int32_t kDaemonsOwnExpiry = -1;

DBusMethod daemonMethod(const char* name) {
    return {.service = kDaemon, .path = kDaemonPath, .interface = kDaemon, .name = name};
}

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

bool hasType(GVariant* values, const char* type) {
    return g_variant_is_of_type(values, G_VARIANT_TYPE(type)) != FALSE;
}

}  // namespace

DBusNotifications::DBusNotifications(SystemLog& log, Dispatcher& dispatcher, DBusConnections& buses,
                                     const std::string& application,
                                     const std::string& desktopEntry)
    : log_(log),
      application_(validUtf8(application)),
      desktopEntry_(validUtf8(desktopEntry)),
      clicks_(dispatcher),
      daemon_(buses) {
    daemon_.listen(kDaemon, kDaemon, [this](const std::string& name, GVariant* values) {
        signalArrived(name, values);
    });
}

DBusNotifications::~DBusNotifications() {
    daemon_.finish();
}

void DBusNotifications::deliver(const Notification& notification) {
    if (capabilities_) {
        notify(notification);
        return;
    }
    waiting_.push_back(notification);
    if (waiting_.size() == 1) askCapabilities();
}

void DBusNotifications::setActivation(Activation activation) {
    activation_ = std::move(activation);
}

void DBusNotifications::askCapabilities() {
    daemon_.call(daemonMethod("GetCapabilities"), g_variant_new_tuple(nullptr, 0), "(as)",
                 [this](const DBusAnswer& answer) { capabilitiesArrived(answer); });
}

void DBusNotifications::capabilitiesArrived(const DBusAnswer& answer) {
    const auto waiting = std::exchange(waiting_, {});
    if (!answer.values) {
        tellFailure(answer.error);
        return;
    }
    capabilities_.emplace();
    GVariantIter* words = nullptr;
    g_variant_get(answer.values.get(), "(as)", &words);
    const char* word = nullptr;
    while (g_variant_iter_next(words, "&s", &word) != FALSE) capabilities_->emplace(word);
    g_variant_iter_free(words);
    for (const auto& notification : waiting) notify(notification);
}

void DBusNotifications::tellFailure(const std::string& error) {
    if (std::exchange(failureLogged_, true)) return;
    log_.write(LogNotice, "This desktop shows no notifications (" + error + ").");
}

void DBusNotifications::notify(const Notification& notification) {
    const auto title = validUtf8(notification.title);
    // Escaped even where "body-markup" is not announced: such daemons read markup all the same, and
    // what looks like a tag would be lost.
    const auto text = escapedForMarkup(validUtf8(notification.text));
    constexpr std::uint32_t kNew = 0;
    daemon_.call(daemonMethod("Notify"),
                 g_variant_new("(susss@as@a{sv}i)", application_.c_str(), kNew,
                               desktopEntry_.c_str(), title.c_str(), text.c_str(),
                               actionsOf(notification), hints(), kDaemonsOwnExpiry),
                 "(u)", [this, notification](const DBusAnswer& answer) {
                     if (!answer.values) {
                         tellFailure(answer.error);
                         return;
                     }
                     std::uint32_t id = 0;
                     g_variant_get(answer.values.get(), "(u)", &id);
                     shown_[id] = notification;
                 });
}

GVariant* DBusNotifications::actionsOf(const Notification& notification) const {
    GVariantBuilder actions;
    g_variant_builder_init(&actions, G_VARIANT_TYPE_STRING_ARRAY);
    if (notification.actionTitle && capabilities_->contains("actions")) {
        const auto title = validUtf8(*notification.actionTitle);
        // "default" is a click on the notification itself.
        for (const auto* const word : {"default", title.c_str(), "show", title.c_str()}) {
            g_variant_builder_add(&actions, "s", word);
        }
    }
    return g_variant_builder_end(&actions);
}

GVariant* DBusNotifications::hints() const {
    GVariantBuilder hints;
    g_variant_builder_init(&hints, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&hints, "{sv}", "desktop-entry",
                          g_variant_new_string(desktopEntry_.c_str()));
    if (capabilities_->contains("sound")) {
        g_variant_builder_add(&hints, "{sv}", "sound-name", g_variant_new_string(kDefaultSound));
    }
    return g_variant_builder_end(&hints);
}

void DBusNotifications::signalArrived(const std::string& name, GVariant* values) {
    std::uint32_t id = 0;
    if (name == "ActionInvoked" && hasType(values, "(us)")) {
        g_variant_get(values, "(u&s)", &id, nullptr);
        const auto clicked = shown_.find(id);
        if (clicked == shown_.end()) return;
        clicks_.later([this, notification = clicked->second] {
            const auto activate = activation_;  // may replace the original
            if (activate) activate(notification);
        });
    } else if (name == "NotificationClosed" && hasType(values, "(uu)")) {
        g_variant_get(values, "(uu)", &id, nullptr);
        shown_.erase(id);
    }
}

}  // namespace reelvane
