#pragma once

#include <QStackedWidget>
#include <QString>

class QIcon;
class QLabel;
class QLayout;
class QWidget;

namespace reelvane {

class Preferences;

/// Puts the main window where the user left it, if it still is on a screen; else a comfortable
/// size.
void restoreFrame(QWidget& window, const Preferences& preferences);
/// Remembers where the window is. The write is done in the background.
void rememberFrame(const QWidget& window, Preferences& preferences);

/// Shows the window in front of the others, with the keyboard, even when it is minimised.
void bringToFront(QWidget& window);

/// Text of any length in lines that are comfortable to read; the user may copy it.
[[nodiscard]] QLabel* makeParagraph(const QString& text, QWidget* parent);

/// The top of a window: a picture, a line that says what the window is about, and a few words more.
[[nodiscard]] QLayout* makeIntroduction(const QIcon& picture, const QString& heading,
                                        const QString& words, QWidget* parent);

/// Pages of which one is shown. Screen readers pass over it: they would call it a "layered pane".
class PageStack final : public QStackedWidget {
public:
    explicit PageStack(QWidget* parent);
};

}  // namespace reelvane
