#pragma once

#include <QWidget>

#include "ui/ui_context.h"

class QLabel;
class QPushButton;

namespace reelvane {

/// What the window shows while its list is empty: what may be dropped, and what comes of it.
class EmptyState final : public QWidget {
public:
    EmptyState(const UiContext& context, QWidget* parent);

    void focusDefault();

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void makeColumn(const UiContext& context);
    void colourFormats();

    QWidget* column_ = nullptr;
    QWidget* picture_ = nullptr;
    QLabel* formats_ = nullptr;
    QPushButton* add_ = nullptr;
};

}  // namespace reelvane
