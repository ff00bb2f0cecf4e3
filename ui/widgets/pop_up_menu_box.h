#pragma once

#include <cstddef>
#include <functional>

#include <QComboBox>

#include "support/observable.h"

namespace reelvane {

class PopUpMenu;

/// A combo box that shows a pop-up menu of the core and tells it what the user chooses. The menu
/// outlives it. Long titles are elided in the middle. Rows that are commands are reached through
/// the open list alone, not by a key or a wheel that goes from one choice to the next.
class PopUpMenuBox final : public QComboBox {
public:
    explicit PopUpMenuBox(PopUpMenu& menu, QWidget* parent = nullptr);

    /// Told of the user's choice instead of the menu: the box goes on showing what the menu has
    /// selected.
    void setChosen(std::function<void(std::size_t)> chosen) { chosen_ = std::move(chosen); }

    [[nodiscard]] QSize sizeHint() const override;
    void showPopup() override;

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void mirror();
    void fill();
    [[nodiscard]] bool showsItems() const;
    void choose(std::size_t row);
    [[nodiscard]] int widestTitle() const;
    [[nodiscard]] QString fullTitle() const;
    [[nodiscard]] QString elidedTitle() const;

    PopUpMenu& menu_;
    std::function<void(std::size_t)> chosen_;
    bool stepping_ = false;  // a key or a wheel goes from one choice to the next
    Subscription subscription_;
};

}  // namespace reelvane
