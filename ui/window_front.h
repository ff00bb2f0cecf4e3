#pragma once

class QWidget;

namespace reelvane {

/// Shows the window in front of the others, with the keyboard, even when it is minimised.
void bringToFront(QWidget& window);

}  // namespace reelvane
