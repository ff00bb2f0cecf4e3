#pragma once

#include <QStackedWidget>
#include <QString>

class QIcon;
class QLabel;
class QLayout;

namespace reelvane {

/// Text of any length in lines that are comfortable to read; the user may copy it.
[[nodiscard]] QLabel* makeParagraph(const QString& text, QWidget* parent);

/// The top of a window: a picture, a line that says what the window is about, and a few words more.
[[nodiscard]] QLayout* makeIntroduction(const QIcon& picture, const QString& heading,
                                        const QString& words, QWidget* parent);

/// Pages of which one is shown. Screen readers pass over it: they would call it a "layered pane".
class PageStack final : public QStackedWidget {
public:
    explicit PageStack(QWidget* parent);
};

}  // namespace reelvane
