#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace reelvane {

/// The least number of characters to insert, delete, replace or swap with their neighbour that
/// turns one word into the other (optimal string alignment), ASCII letters compared without case.
[[nodiscard]] std::size_t editDistance(std::string_view one, std::string_view other);

/// " Did you mean 'x'?" with the candidate nearest to the word, the first of equals; empty when
/// none is near enough for the word to be a slip of it.
[[nodiscard]] std::string suggestion(std::string_view word,
                                     std::span<const std::string> candidates);

}  // namespace reelvane
