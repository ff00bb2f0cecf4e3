#pragma once

#include <functional>
#include <vector>

#include <QDialog>
#include <QIcon>
#include <QPointer>
#include <QString>

#include "support/ports/alerts.h"

class QCheckBox;
class QDialogButtonBox;
class QWidget;

namespace reelvane {

class Icons;

/// The control of an alert that asks for a value.
struct AlertAccessoryView {
    QWidget* widget = nullptr;                 ///< null: the alert asks for none
    QWidget* focus = nullptr;                  ///< what the keyboard goes to; null: to a button
    std::function<void(AlertAnswer&)> read{};  ///< fills in the value at the end
};

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

/// Alerts as message boxes. One that is raised while another is open stands in front of it and is
/// answered first: the earlier one is still waiting further down the stack.
class QtAlerts final : public Alerts {
public:
    /// The window that boxes stand in front of; it may go before this object does.
    void setParent(QWidget* mainWindow) { mainWindow_ = mainWindow; }
    /// Where the pictures of alerts come from; they outlive this object.
    void setIcons(const Icons& icons) { icons_ = &icons; }
    [[nodiscard]] AlertAnswer runModal(const AlertContent& content) override;
    /// The program ends: open boxes and later ones answer with their most cautious button.
    void endAll();

private:
    [[nodiscard]] QWidget* windowInFront() const;

    QPointer<QWidget> mainWindow_;
    const Icons* icons_ = nullptr;
    std::vector<QPointer<AlertBox>> open_;  ///< the last one is in front
    bool ended_ = false;
};

}  // namespace reelvane
