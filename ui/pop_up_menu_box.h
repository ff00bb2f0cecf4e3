#pragma once

#include <cstddef>
#include <functional>

#include <QComboBox>

#include "support/observable.h"

namespace reelvane {

class PopUpMenu;

/// A combo box that shows a pop-up menu of the core and tells it what the user chooses. The menu
/// outlives it. Long titles are elided in the middle.
class PopUpMenuBox final : public QComboBox {
public:
    using RowQuestion = std::function<bool(std::size_t)>;

    explicit PopUpMenuBox(PopUpMenu& menu, QWidget* parent = nullptr);

    /// Told of the user's choice before the menu is. True: the choice has been dealt with, and the
    /// box goes on showing what the menu has selected.
    void setChosen(RowQuestion chosen) { chosen_ = std::move(chosen); }
    /// Says which rows do something and are no choice: they are reached through the open list
    /// alone, not by a key or a wheel that goes from one choice to the next.
    void setIsCommand(RowQuestion isCommand) { isCommand_ = std::move(isCommand); }

    [[nodiscard]] QSize sizeHint() const override;
    void showPopup() override;

protected:
    bool event(QEvent* event) override;
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
    RowQuestion chosen_;
    RowQuestion isCommand_;
    bool stepping_ = false;  // a key or a wheel goes from one choice to the next
    Subscription subscription_;
};

}  // namespace reelvane
