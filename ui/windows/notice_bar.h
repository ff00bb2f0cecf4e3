#pragma once

#include <cstddef>
#include <functional>

#include <QFrame>
#include <QWidget>

#include "support/observable.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace reelvane {

class ElidedLabel;
class RefusedFiles;

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

/// Lists at the bottom of the window what of a batch was not taken and why, until it is closed. It
/// takes neither the keyboard nor a click from what the user is doing.
class RefusedFilesBar final : public QFrame {
public:
    /// The list outlives this.
    RefusedFilesBar(RefusedFiles& refused, QWidget* parent);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void follow();
    void append(std::size_t number);

    RefusedFiles& refused_;
    QLabel* title_ = nullptr;
    QPlainTextEdit* text_ = nullptr;
    std::size_t shown_ = 0;  // how many of them
    Subscription subscription_;
};

}  // namespace reelvane
