#pragma once

#include <QAccessible>
#include <QStringList>
#include <QWidget>

namespace reelvane {

/// What a screen reader would come upon in a window without being told what it is: its class.
inline QStringList nameless(QAccessibleInterface& from) {
    static const QSet<QAccessible::Role> frames{
        QAccessible::Client,    QAccessible::Pane,    QAccessible::Grouping,  QAccessible::Window,
        QAccessible::ScrollBar, QAccessible::ToolBar, QAccessible::Separator, QAccessible::MenuBar};
    QStringList found;
    if (from.state().invisible || from.object() == nullptr) return found;
    const auto role = from.role();
    if (!frames.contains(role) && from.text(QAccessible::Name).isEmpty()) {
        found << from.object()->metaObject()->className();
    }
    for (int i = 0; i < from.childCount(); ++i) {
        if (auto* const child = from.child(i)) found += nameless(*child);
    }
    return found;
}

inline QStringList nameless(QWidget& window) {
    return nameless(*QAccessible::queryAccessibleInterface(&window));
}

/// As it is read: without the marks of shortcuts.
inline QString unmarked(QString text) {
    constexpr QChar kMark('\1');
    return text.replace("&&", kMark).remove('&').replace(kMark, '&');
}

/// The part of a window that says this, or is said to be this; null: there is none.
template <typename Part>
Part* partNamed(const QWidget& window, const QString& name) {
    for (auto* const part : window.findChildren<Part*>()) {
        if (part->accessibleName() == name) return part;
        if constexpr (requires { part->text(); }) {
            if (unmarked(part->text()) == name) return part;
        }
    }
    return nullptr;
}

}  // namespace reelvane
