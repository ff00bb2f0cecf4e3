#pragma once

#include <QStackedWidget>

namespace reelvane {

/// Pages of which one is shown. Screen readers pass over it: they would call it a "layered pane".
class PageStack final : public QStackedWidget {
public:
    explicit PageStack(QWidget* parent);
};

}  // namespace reelvane
