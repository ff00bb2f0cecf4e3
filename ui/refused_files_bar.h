#pragma once

#include <cstddef>

#include <QFrame>

#include "support/observable.h"

class QLabel;
class QPlainTextEdit;

namespace reelvane {

class RefusedFiles;

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
