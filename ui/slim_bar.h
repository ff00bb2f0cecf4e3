#pragma once

#include <QProgressBar>

namespace reelvane {

/// A slim progress bar that can be told from its ground in every theme, even when nothing is done.
class SlimBar final : public QProgressBar {
public:
    explicit SlimBar(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace reelvane
