#pragma once

#include <QDialog>

#include "ui/ui_context.h"

namespace reelvane {

/// Tells what the program can do and where its makers are at home. Deletes itself when closed.
class PromotionWindow final : public QDialog {
public:
    PromotionWindow(const UiContext& context, QWidget* parent);
};

}  // namespace reelvane
