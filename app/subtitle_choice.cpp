#include "app/subtitle_choice.h"

#include "support/make_string.h"
#include "support/ports/translations.h"
#include "support/strings.h"
#include "support/untranslated.h"

namespace reelvane {

SubtitleChoice chooseSubtitle(const Translations& translations,
                              const std::vector<std::filesystem::path>& candidates,
                              UnknownEncoding unknownEncoding) {
    SubtitleChoice choice;
    for (const auto& file : candidates) {
        auto look = lookIntoSubtitle(file);
        if (look.problem == SubtitleProblem::Gone) continue;
        const bool unknown = look.format.encoding.kind == FoundEncoding::Kind::Unknown;
        if (look.problem != SubtitleProblem::None) {
            choice.leftOut.push_back(subtitleProblemText(translations, file, look.problem));
        } else if (unknown && unknownEncoding == UnknownEncoding::LeavesOut) {
            choice.leftOut.push_back(makeString(
                translations.localized("The subtitle file '%@' is left out: its character "
                                       "encoding can't be told. Please choose it under "
                                       "“Subtitles” in the preferences and add the movie again."),
                Fennimar::validUtf8(file.filename().native())));
        } else {
            if (unknownEncoding == UnknownEncoding::IsPreferences) look.format.encoding = {};
            choice.subtitle = {.file = file, .format = std::move(look.format)};
            break;
        }
    }
    return choice;
}

void setSubtitle(MKVFileInfo& record, const std::optional<ChosenSubtitle>& subtitle) {
    record.subtitleFileURL.reset();
    record.subtitleFormat = {};
    if (subtitle) {
        record.subtitleFileURL = subtitle->file;
        record.subtitleFormat = subtitle->format;
    }
    record.informationString = informationText(kUntranslated, record);
}

bool asksForEncoding(const MKVFileInfo& record) {
    // Without sound no subtitle file is taken.
    return record.subtitleFormat.encoding.kind == FoundEncoding::Kind::Unknown &&
           !record.audioTrackInformation.empty();
}

std::string silentMovieText(const Translations& translations, const MKVFileInfo& record) {
    if (!record.subtitleFileURL || !record.audioTrackInformation.empty()) return {};
    return makeString(translations.localized("The movie '%@' has no sound, so the subtitle file "
                                             "'%@' is left out."),
                      Fennimar::validUtf8(record.fileName),
                      Fennimar::validUtf8(record.subtitleFileURL->filename().native()));
}

}  // namespace reelvane
