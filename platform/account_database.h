#pragma once

#include <optional>
#include <string>
#include <vector>

namespace reelvane {

struct Account {
    std::string name{};
    std::string home{};
};

/// The account of the real user id, from the password database; empty when it has none.
[[nodiscard]] Account currentAccount();

/// The members that the group lists; absent when there is no such group.
[[nodiscard]] std::optional<std::vector<std::string>> groupMembers(const std::string& group);

}  // namespace reelvane
