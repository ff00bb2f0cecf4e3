#pragma once

#include <functional>

#include <QWidget>

class QPushButton;

namespace reelvane {

class ElidedLabel;

/// A line above or below the job list that says something and offers one thing to do about it.
/// Hidden it takes no room. A screen reader reads it out as soon as it is shown.
class NoticeBar final : public QWidget {
public:
    enum class Edge { Above, Below };  ///< of the list

    /// `act`: what its button does.
    NoticeBar(Edge edge, const QString& button, std::function<void()> act, QWidget* parent);

    /// Shows the bar. Where `text` is too long its middle is left out.
    void showText(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Edge edge_;
    ElidedLabel* text_ = nullptr;
    QPushButton* button_ = nullptr;
};

}  // namespace reelvane
