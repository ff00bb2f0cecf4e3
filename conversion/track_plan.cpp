#include "conversion/track_plan.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string_view>

#include "conversion/audio_method.h"
#include "conversion/stream_plan.h"
#include "support/make_string.h"
#include "support/strings.h"

namespace reelvane {

namespace {

using Kind = TrackOutcome::Kind;
using Fate = TrackOutcome::Fate;

/// "#1 eng dts 5.1"; what is not known is empty and leaves no gap.
std::string trackText(int streamIndex, std::initializer_list<std::string_view> words) {
    auto text = makeString("#%i", streamIndex);
    for (const auto word : words) {
        if (!word.empty()) text.append(" ").append(word);
    }
    return text;
}

TrackOutcome videoOutcome(const MKVFileInfo& file, const StreamPlan& plan) {
    const std::string_view codec = file.videoCodec;
    return {.kind = Kind::Video,
            .fate = Fate::Copied,
            .track = trackText(plan.video, {codec.empty() ? "video" : codec, file.resolution}),
            .outcome = "copied"};
}

std::string audioText(std::string_view entry) {
    const auto codec = codecOf(entry);
    return trackText(streamIndexOf(entry),
                     {namedLanguage(languageOf(entry)), codec.empty() ? "audio" : codec,
                      isSurround(entry) ? "5.1" : ""});
}

/// "AAC stereo 128k, 48 kHz, volume 150 %"
std::string formatText(const PlannedAudio& audio) {
    std::string text = audio.method == AudioMethodAAC ? "AAC " : "AC-3 ";
    text += audio.method == AudioMethodAC3Surround ? "5.1 " : "stereo ";
    text += audio.bitrate;
    if (audio.samplingRate) text += makeString(", %i kHz", *audio.samplingRate / 1000);
    if (audio.volume) text += makeString(", volume %li %%", std::lround(*audio.volume * 100));
    return text;
}

TrackOutcome plannedOutcome(std::string_view entry, const PlannedAudio& audio) {
    const bool copied = audio.method == AudioMethodCopy;
    return {.kind = Kind::Audio,
            .fate = copied ? Fate::Copied : Fate::Converted,
            .track = audioText(entry),
            .outcome = copied ? "copied" : formatText(audio)};
}

TrackOutcome surroundOutcome(std::string_view entry, const StreamPlan& plan) {
    auto outcome = plannedOutcome(entry, *plan.surround);
    const bool copied = outcome.fate == Fate::Copied;
    if (plan.surround->entry != plan.mainAudio->entry) {
        outcome.outcome += " as a second track";
    } else {
        outcome.again = true;
        outcome.track = trackText(streamIndexOf(entry), {});
        if (copied) outcome.outcome += codecOf(entry) == "ac3" ? " as AC-3 5.1" : " as DTS 5.1";
    }
    return outcome;
}

void addAudio(std::vector<TrackOutcome>& tracks, const MKVFileInfo& file, const StreamPlan& plan) {
    const auto& entries = file.audioTrackInformation;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const auto& text = entries[i].text;
        if (plan.mainAudio->entry == i) {
            tracks.push_back(plannedOutcome(text, *plan.mainAudio));
            if (const auto& second = plan.surround) {
                tracks.push_back(surroundOutcome(entries[second->entry].text, plan));
            }
        } else if (!plan.surround || plan.surround->entry != i) {
            tracks.push_back({.kind = Kind::Audio,
                              .fate = Fate::LeftOut,
                              .track = audioText(text),
                              .outcome = "left out"});
        }
    }
}

void addSubtitles(std::vector<TrackOutcome>& tracks, const MKVFileInfo& file,
                  const StreamPlan& plan) {
    const auto& known = file.subtitleTrackIDs;
    for (std::size_t i = 0; i < known.size(); ++i) {
        const bool taken = std::ranges::count(plan.subtitles, known[i]) > 0;
        const bool forced = std::ranges::count(file.forcedSubtitleTrackIDs, known[i]) > 0;
        const auto language = i < file.subtitleLanguages.size()
                                  ? namedLanguage(file.subtitleLanguages[i])
                                  : std::string_view();
        tracks.push_back(
            {.kind = Kind::Subtitle,
             .fate = taken ? Fate::Converted : Fate::LeftOut,
             .track = trackText(known[i], {language, forced ? "forced" : "", "subtitle"}),
             .outcome = taken ? "text track" : "left out"});
    }
    // The record counts the subtitles that are pictures, but does not name them.
    const auto others = file.subtitleCount - static_cast<int>(known.size());
    if (others <= 0) return;
    tracks.push_back({.kind = Kind::Subtitle,
                      .fate = Fate::LeftOut,
                      .track = makeString(others == 1 ? "%i subtitle" : "%i subtitles", others),
                      .outcome = "left out, not text"});
}

}  // namespace

std::vector<TrackOutcome> trackPlan(const MKVFileInfo& file, std::size_t audioTrackIndex,
                                    const ConversionSettings& settings) {
    const auto plan = planStreams(file, audioTrackIndex, settings);
    std::vector<TrackOutcome> tracks{videoOutcome(file, plan)};
    if (plan.mainAudio) addAudio(tracks, file, plan);
    addSubtitles(tracks, file, plan);
    if (const auto& external = file.subtitleFileURL) {
        const bool taken = plan.externalSubtitle;
        tracks.push_back({.kind = Kind::Subtitle,
                          .fate = taken ? Fate::Added : Fate::LeftOut,
                          .track = Fennimar::validUtf8(external->filename().native()),
                          .outcome = taken ? "added as a text track" : "left out"});
    }
    return tracks;
}

std::string trackLine(const TrackOutcome& outcome) {
    const bool remade = outcome.kind == Kind::Audio && outcome.fate == Fate::Converted;
    std::string_view join = ": ";
    if (remade) {
        join = " → ";
    } else if (outcome.again) {
        join = ", ";
    }
    return makeString("%@%@%@%@", outcome.track, outcome.again ? " again" : "", join,
                      outcome.outcome);
}

}  // namespace reelvane
