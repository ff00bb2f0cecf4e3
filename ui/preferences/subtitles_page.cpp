#include "ui/preferences/subtitles_page.h"

#include <array>

#include <QObject>

#include "app/preference_table.h"
#include "conversion/stream_plan.h"
#include "support/vantor.h"
#include "ui/preferences/preference_page.h"
#include "ui/widgets/qt_text.h"

namespace reelvane {

SubtitlesPage::SubtitlesPage(const UiContext& context, QWidget* parent)
    : PreferencePage(context.vantor.preferences(), tr("Subtitles"), parent) {
    column().addHeading(tr("Inside the Movie"));
    column().add<PreferenceCheckBox>(
        {.key = kDisableBuiltinSubtitles.key,
         .label = tr("Carry over text subtitles inside the movie"),
         .help = tr("Subtitles that are pictures, as on many discs, cannot be carried over.")},
        PreferenceCheckBox::Sense::Inverted);
    column().add<PreferenceCheckBox>(
        {.key = kFixSubtitleDuration.key,
         .label = tr("Correct how long subtitles are shown"),
         .help = tr("Each one ends before the next one begins, so that they do not overlap.")});
    column().addHeading(tr("Subtitle Files"));
    column().add<PreferenceMenu>(
        {.key = kExternalSubtitleEncoding.key,
         .label = tr("Character encoding"),
         .help = tr("Choose another one when accents or letters of a subtitle file that you add "
                    "come out wrong.")},
        subtitleEncodingChoices());
}

namespace {

constexpr std::size_t kFirstUnicode = 2;
constexpr std::size_t kFirstWindows = 4;
constexpr std::size_t kFirstLatin = 15;
constexpr std::size_t kFirstIso = 23;

using Words = std::array<QString, kSubtitleEncodings.size()>;

/// What each encoding is for, in the order of the encodings.
Words purposes() {
    const auto western = QObject::tr("Western European");
    const auto central = QObject::tr("Central European");
    const auto south = QObject::tr("South European");
    const auto north = QObject::tr("North European");
    const auto cyrillic = QObject::tr("Cyrillic");
    const auto arabic = QObject::tr("Arabic");
    const auto greek = QObject::tr("Greek");
    const auto hebrew = QObject::tr("Hebrew");
    const auto turkish = QObject::tr("Turkish");
    const auto nordic = QObject::tr("Nordic");
    const auto thai = QObject::tr("Thai");
    const auto baltic = QObject::tr("Baltic");
    const auto celtic = QObject::tr("Celtic");
    const auto everything = QObject::tr("all languages");
    return {QObject::tr("found in each file"),
            {},
            everything,
            everything,
            thai,
            QObject::tr("Simplified Chinese"),
            // Windows, 1250 to 1258
            central,
            cyrillic,
            western,
            greek,
            turkish,
            hebrew,
            arabic,
            baltic,
            QObject::tr("Vietnamese"),
            // Latin, 1 to 8
            western,
            central,
            south,
            north,
            turkish,
            nordic,
            baltic,
            celtic,
            // ISO 8859, 1 to 16
            western,
            central,
            south,
            north,
            cyrillic,
            arabic,
            greek,
            hebrew,
            turkish,
            nordic,
            thai,
            {},  // never came into use
            baltic,
            celtic,
            QObject::tr("Western European with the euro sign"),
            QObject::tr("South-Eastern European")};
}

QString headingBefore(std::size_t index) {
    switch (index) {
        case kFirstUnicode:
            return QObject::tr("Unicode");
        case kFirstWindows:
            return QObject::tr("Windows");
        case kFirstLatin:
            return QObject::tr("Latin");
        case kFirstIso:
            return QObject::tr("ISO 8859");
        default:
            return {};
    }
}

}  // namespace

PreferenceChoices subtitleEncodingChoices() {
    const auto words = purposes();
    PreferenceChoices choices;
    for (std::size_t index = 0; index < kSubtitleEncodings.size(); ++index) {
        if (!isSubtitleEncoding(index)) continue;  // the headings separate
        const auto name = index == 0 ? QObject::tr("None") : toQString(kSubtitleEncodings[index]);
        if (auto heading = headingBefore(index); !heading.isEmpty()) {
            choices.push_back({.title = std::move(heading)});
        }
        //: %1 is the name of a character encoding, %2 says which languages it is for.
        choices.push_back({.value = static_cast<int>(index),
                           .title = QObject::tr("%1 (%2)").arg(name, words.at(index))});
    }
    return choices;
}

}  // namespace reelvane
