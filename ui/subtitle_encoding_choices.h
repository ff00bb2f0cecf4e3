#pragma once

#include "ui/preference_controls.h"

namespace reelvane {

/// The encodings of subtitle files, with the languages that each is for, under headings.
[[nodiscard]] PreferenceChoices subtitleEncodingChoices();

}  // namespace reelvane
