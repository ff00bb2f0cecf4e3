#pragma once

#include <QDialog>
#include <QIcon>

#include "support/ports/alerts.h"
#include "ui/alert_accessory.h"

class QCheckBox;
class QDialogButtonBox;

namespace reelvane {

/// One alert as a dialog. All its texts are plain.
class AlertBox final : public QDialog {
public:
    AlertBox(const AlertContent& content, const QIcon& picture, QWidget* parent);

    /// Shows the box in front of all else and returns once it is answered.
    void ask();
    [[nodiscard]] AlertAnswer answer() const;

private:
    void makeButtons();
    void layOut(const QIcon& picture);
    [[nodiscard]] QWidget* makeTexts(int narrowest);

    AlertContent content_;
    AlertAccessoryView accessory_;
    QCheckBox* suppression_ = nullptr;
    QDialogButtonBox* buttons_ = nullptr;
    ButtonResult button_;
};

}  // namespace reelvane
