#include "ui/window_front.h"

#include <QWidget>

namespace reelvane {

void bringToFront(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

}  // namespace reelvane
