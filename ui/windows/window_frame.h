#pragma once

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

}  // namespace reelvane
