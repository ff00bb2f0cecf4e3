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
    /// Elsewhere: a control beside it says the same of itself, so that screen readers pass over it.
    enum class Spoken { Here, Elsewhere };

    explicit QuietLabel(const QString& text, QWidget* parent = nullptr,
                        Spoken spoken = Spoken::Here);

    [[nodiscard]] Spoken spoken() const { return spoken_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Spoken spoken_;
};

}  // namespace reelvane
