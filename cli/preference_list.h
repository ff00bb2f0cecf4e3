#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "cli/json_lines.h"

namespace reelvane {

class Preferences;

/// Every preference with its present value, in the order of the table.
[[nodiscard]] std::vector<PreferenceRow> preferenceRows(const Preferences& preferences);

/// Key, value, default and type in columns, each meaning below, broken to this width.
[[nodiscard]] std::string preferenceListText(std::span<const PreferenceRow> rows,
                                             std::size_t columns);

/// The reference page, in Markdown.
[[nodiscard]] std::string preferenceReference();

}  // namespace reelvane
