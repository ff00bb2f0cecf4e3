#pragma once

#include <QLabel>

namespace reelvane {

/// Text of second rank in as many lines as it needs.
class QuietLabel final : public QLabel {
public:
    explicit QuietLabel(const QString& text, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace reelvane
