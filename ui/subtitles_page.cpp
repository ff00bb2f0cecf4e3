#include "ui/subtitles_page.h"

#include "app/preference_keys.h"
#include "support/vantor.h"
#include "ui/preference_column.h"
#include "ui/subtitle_encoding_choices.h"

namespace reelvane {

SubtitlesPage::SubtitlesPage(const UiContext& context, QWidget* parent)
    : PreferencePage(context.vantor.preferences(), tr("Subtitles"), parent) {
    column().addHeading(tr("Inside the Movie"));
    column().add<PreferenceCheckBox>(
        {.key = kDisableBuiltinSubtitlesKey,
         .label = tr("Carry over text subtitles inside the movie"),
         .help = tr("Subtitles that are pictures, as on many discs, cannot be carried over.")},
        PreferenceCheckBox::Sense::Inverted);
    column().add<PreferenceCheckBox>(
        {.key = kFixSubtitleDurationKey,
         .label = tr("Correct how long subtitles are shown"),
         .help = tr("Each one ends before the next one begins, so that they do not overlap.")});
    column().addHeading(tr("Subtitle Files"));
    column().add<PreferenceMenu>(
        {.key = kExternalSubtitleEncodingKey,
         .label = tr("Character encoding"),
         .help = tr("Choose another one when accents or letters of a subtitle file that you add "
                    "come out wrong.")},
        subtitleEncodingChoices());
}

}  // namespace reelvane
