#include "app/pop_up_menu.h"

namespace reelvane {

void PopUpMenu::setItems(std::vector<MenuItem> items) {
    items_ = std::move(items);
    selectedIndex_ = items_.empty() ? std::nullopt : std::optional<std::size_t>(0);
    observers_.notify();
}

void PopUpMenu::selectItemAtIndex(std::size_t index) {
    selectedIndex_ = index < items_.size() ? std::optional(index) : std::nullopt;
    observers_.notify();
}

}  // namespace reelvane
