#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/observable.h"

namespace reelvane {

/// One row of a pop-up menu.
struct MenuItem {
    std::string title{};     ///< empty: a separator
    std::string folder{};    ///< the bookmark of the saved folder that a destination stands for
    bool isCommand = false;  ///< picking it does something: it is no choice
    [[nodiscard]] bool isSeparator() const { return title.empty(); }
    friend bool operator==(const MenuItem&, const MenuItem&) = default;
};

/// What a pop-up menu shows: its rows and which of them is selected. Main thread only.
class PopUpMenu {
public:
    [[nodiscard]] const std::vector<MenuItem>& items() const { return items_; }
    /// Absent while nothing is selected.
    [[nodiscard]] std::optional<std::size_t> selectedIndex() const { return selectedIndex_; }

    /// Replaces all rows; the first one is selected.
    void setItems(std::vector<MenuItem> items);
    /// Selects nothing when there is no such row.
    void selectItemAtIndex(std::size_t index);

    /// Told after every change of the rows or the selection.
    [[nodiscard]] Subscription observe(std::function<void()> changed) {
        return observers_.add(std::move(changed));
    }

private:
    std::vector<MenuItem> items_;
    std::optional<std::size_t> selectedIndex_;
    Observers<> observers_;
};

}  // namespace reelvane
