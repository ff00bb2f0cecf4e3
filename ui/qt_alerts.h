#pragma once

#include <vector>

#include <QPointer>

#include "support/ports/alerts.h"

class QWidget;

namespace reelvane {

class AlertBox;
class Icons;

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
