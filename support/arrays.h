#pragma once

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// Helpers on lists. Pure; the list given is left as it is.
namespace Fennimar {

/// What the block makes of each element, in order.
template <typename Element, typename Block>
[[nodiscard]] auto mapped(const std::vector<Element>& list, Block block) {
    std::vector<std::decay_t<std::invoke_result_t<Block&, const Element&>>> result;
    result.reserve(list.size());
    for (const auto& element : list) result.push_back(block(element));
    return result;
}

/// The elements for which the block answers true, in order.
template <typename Element, typename Block>
[[nodiscard]] std::vector<Element> filtered(const std::vector<Element>& list, Block block) {
    std::vector<Element> result;
    std::copy_if(list.begin(), list.end(), std::back_inserter(result), std::move(block));
    return result;
}

/// The list without the elements at these places; places beyond its end are ignored.
template <typename Element>
[[nodiscard]] std::vector<Element> arrayByRemovingObjectsAtIndexes(
    const std::vector<Element>& list, const std::set<std::size_t>& indexes) {
    std::vector<Element> result;
    for (std::size_t index = 0; index < list.size(); ++index) {
        if (!indexes.contains(index)) result.push_back(list[index]);
    }
    return result;
}

/// The texts as the components of one path.
[[nodiscard]] inline std::filesystem::path path(const std::vector<std::string>& components) {
    std::filesystem::path result;
    for (const auto& component : components) result /= component;
    return result;
}

}  // namespace Fennimar
