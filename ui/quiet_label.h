#pragma once

#include <QLabel>
#include <QMargins>

namespace reelvane {

/// The dots of a capital umlaut stand higher than some fonts say; without this the topmost row of
/// pixels is cut off.
inline constexpr QMargins kRoomForAccents(0, 1, 0, 0);

/// Text of second rank in as many lines as it needs.
class QuietLabel final : public QLabel {
public:
    explicit QuietLabel(const QString& text, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace reelvane
