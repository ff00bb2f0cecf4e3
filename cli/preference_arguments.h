#pragma once

#include <string>
#include <string_view>

#include "cli/arguments.h"

namespace reelvane {

struct PreferenceEntry;

/// The preference of this name. Throws UsageError, with the nearest name, when there is none.
[[nodiscard]] const PreferenceEntry& preferenceNamed(std::string_view key);

/// The value as the store holds it. Throws UsageError, with what is allowed, when it does not fit.
[[nodiscard]] std::string preferenceValue(const PreferenceEntry& entry, std::string_view typed);

/// What "KEY=VALUE" says. Throws UsageError.
[[nodiscard]] PreferenceOverride preferenceOverride(std::string_view text);

}  // namespace reelvane
