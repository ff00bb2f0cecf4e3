#pragma once

#include "ui/preference_page.h"
#include "ui/ui_context.h"

namespace reelvane {

/// What becomes of subtitles, inside the movie and beside it.
class SubtitlesPage final : public PreferencePage {
public:
    SubtitlesPage(const UiContext& context, QWidget* parent);
};

}  // namespace reelvane
