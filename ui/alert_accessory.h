#pragma once

#include <functional>

#include <QString>

#include "support/ports/alerts.h"

class QWidget;

namespace reelvane {

/// The control of an alert that asks for a value.
struct AlertAccessoryView {
    QWidget* widget = nullptr;                 ///< null: the alert asks for none
    QWidget* focus = nullptr;                  ///< what the keyboard goes to; null: to a button
    std::function<void(AlertAnswer&)> read{};  ///< fills in the value at the end
};

/// `name` is what the user is asked for.
[[nodiscard]] AlertAccessoryView makeAccessoryView(const AlertAccessory& accessory,
                                                   const QString& name, QWidget* parent);

}  // namespace reelvane
