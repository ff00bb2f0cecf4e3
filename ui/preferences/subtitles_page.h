#pragma once

#include "ui/preferences/preference_controls.h"
#include "ui/preferences/preference_page.h"
#include "ui/ui_context.h"

namespace reelvane {

/// What becomes of subtitles, inside the movie and beside it.
class SubtitlesPage final : public PreferencePage {
public:
    SubtitlesPage(const UiContext& context, QWidget* parent);
};

/// The encodings of subtitle files, with the languages that each is for, under headings.
[[nodiscard]] PreferenceChoices subtitleEncodingChoices();

}  // namespace reelvane
