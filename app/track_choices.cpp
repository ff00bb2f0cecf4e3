#include "app/track_choices.h"

#include <algorithm>

#include "support/localization.h"
#include "support/make_string.h"
#include "support/ports/translations.h"
#include "support/strings.h"

namespace reelvane {

std::optional<std::string> audioChoiceProblem(const MKVFileInfo& record,
                                              std::size_t audioTrackIndex) {
    const auto tracks = record.audioTrackInformation.size();
    const auto& entries = record.audioTrackInformation;
    if (audioTrackIndex < tracks) {
        const auto isUnknown = [](const AudioTrack& track) { return !track.isKnown(); };
        if (!isUnknown(entries[audioTrackIndex]) || std::ranges::all_of(entries, isUnknown)) {
            return std::nullopt;
        }
        return makeString(
            "The audio track with the index %lu of the file '%@' has a format that ffmpeg does not "
            "know. Please choose another one.",
            audioTrackIndex, record.fileName);
    }
    if (tracks == 0) {
        return makeString(
            "The file '%@' has no audio track, so none can be chosen. Please convert it without "
            "choosing an audio track.",
            record.fileName);
    }
    if (tracks == 1) {
        return makeString(
            "The file '%@' has no audio track with the index %lu: the only audio track has the "
            "index 0.",
            record.fileName, audioTrackIndex);
    }
    return makeString(
        "The file '%@' has no audio track with the index %lu. Please choose an index from 0 to "
        "%lu.",
        record.fileName, audioTrackIndex, tracks - 1);
}

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

void PopUpMenu::setItems(std::vector<MenuItem> items) {
    items_ = std::move(items);
    selectedIndex_ = items_.empty() ? std::nullopt : std::optional<std::size_t>(0);
    observers_.notify();
}

void PopUpMenu::selectItemAtIndex(std::size_t index) {
    selectedIndex_ = index < items_.size() ? std::optional(index) : std::nullopt;
    observers_.notify();
}

}  // namespace reelvane
