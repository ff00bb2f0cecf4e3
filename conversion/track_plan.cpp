#include "conversion/track_plan.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string_view>
#include <utility>

#include "conversion/stream_plan.h"
#include "support/localization.h"
#include "support/make_string.h"
#include "support/ports/translations.h"
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

/// Tells the plan of one movie. The texts are whole where a language may order the words anew.
class PlanTeller {
public:
    PlanTeller(const Translations& translations, const MKVFileInfo& file, const StreamPlan& plan,
               std::string encoding)
        : translations_(translations),
          file_(file),
          plan_(plan),
          encoding_(std::move(encoding)) {}

    [[nodiscard]] std::vector<TrackOutcome> tracks() const {
        std::vector<TrackOutcome> tracks{video()};
        addAudio(tracks);
        addSubtitles(tracks);
        if (const auto& external = file_.subtitleFileURL) {
            const bool taken = plan_.externalSubtitle;
            tracks.push_back({.kind = Kind::Subtitle,
                              .fate = taken ? Fate::Added : Fate::LeftOut,
                              .track = Fennimar::validUtf8(external->filename().native()),
                              .outcome = taken ? addedText() : leftOutOfSilentMovie()});
        }
        return tracks;
    }

private:
    [[nodiscard]] std::string localized(std::string_view text) const {
        return translations_.localized(text);
    }
    /// Where there is no sound nothing but the picture is taken.
    [[nodiscard]] std::string leftOutOfSilentMovie() const {
        return localized("left out, the movie has no sound");
    }
    [[nodiscard]] std::string subtitleLeftOut() const {
        return plan_.mainAudio ? localized("left out, as the preferences say")
                               : leftOutOfSilentMovie();
    }
    [[nodiscard]] std::string addedText() const {
        if (encoding_.empty()) return localized("added as a text track");
        return makeString(localized("added as a text track, read as %@"), encoding_);
    }
    [[nodiscard]] std::string copied() const { return localized("copied"); }

    [[nodiscard]] TrackOutcome video() const {
        const auto codec = file_.videoCodec.empty() ? localized("video") : file_.videoCodec;
        return {.kind = Kind::Video,
                .fate = Fate::Copied,
                .track = trackText(plan_.video, {codec, file_.resolution}),
                .outcome = copied()};
    }

    [[nodiscard]] std::string audioText(const AudioTrack& track) const {
        return trackText(track.stream, {namedLanguage(track.language),
                                        track.codec.empty() ? localized("audio") : track.codec,
                                        track.surround ? "5.1" : ""});
    }

    /// "AAC stereo 128k, 48 kHz, volume 150 %"
    [[nodiscard]] std::string formatText(const PlannedAudio& audio) const {
        auto text = audio.method == AudioMethodAAC           ? localized("AAC stereo")
                    : audio.method == AudioMethodAC3Surround ? std::string("AC-3 5.1")
                                                             : localized("AC-3 stereo");
        text.append(" ").append(audio.bitrate);
        if (audio.samplingRate) text += makeString(", %i kHz", *audio.samplingRate / 1000);
        if (audio.volume) {
            text += makeString(localized(", volume %li %%"), std::lround(*audio.volume * 100));
        }
        return text;
    }

    [[nodiscard]] TrackOutcome planned(const AudioTrack& track, const PlannedAudio& audio) const {
        const bool isCopied = audio.method == AudioMethodCopy;
        return {.kind = Kind::Audio,
                .fate = isCopied ? Fate::Copied : Fate::Converted,
                .track = audioText(track),
                .outcome = isCopied ? copied() : formatText(audio)};
    }

    [[nodiscard]] TrackOutcome surround(const AudioTrack& track) const {
        auto outcome = planned(track, *plan_.surround);
        const bool isCopied = outcome.fate == Fate::Copied;
        if (plan_.surround->entry != plan_.mainAudio->entry) {
            outcome.outcome = isCopied
                                  ? localized("copied as a second track")
                                  : makeString(localized("%@ as a second track"), outcome.outcome);
            return outcome;
        }
        outcome.again = true;
        outcome.track = makeString(localized("%@ again"), trackText(track.stream, {}));
        if (isCopied) {
            outcome.outcome = track.codec == "ac3" ? localized("copied as AC-3 5.1")
                                                   : localized("copied as DTS 5.1");
        }
        return outcome;
    }

    void addAudio(std::vector<TrackOutcome>& tracks) const {
        const auto& sources = file_.audioTrackInformation;
        for (std::size_t i = 0; i < sources.size(); ++i) {
            const auto& source = sources[i];
            if (plan_.mainAudio && plan_.mainAudio->entry == i) {
                tracks.push_back(planned(source, *plan_.mainAudio));
                if (const auto& second = plan_.surround) {
                    tracks.push_back(surround(sources[second->entry]));
                }
            } else if (!plan_.surround || plan_.surround->entry != i) {
                tracks.push_back(
                    {.kind = Kind::Audio,
                     .fate = Fate::LeftOut,
                     .track = audioText(source),
                     .outcome = source.isKnown()
                                    ? localized("left out, only the chosen sound is taken")
                                    : localized("left out, format unknown to ffmpeg")});
            }
        }
    }

    void addSubtitles(std::vector<TrackOutcome>& tracks) const {
        const auto& known = file_.subtitleTrackIDs;
        for (std::size_t i = 0; i < known.size(); ++i) {
            const bool taken = std::ranges::count(plan_.subtitles, known[i]) > 0;
            const bool forced = std::ranges::count(file_.forcedSubtitleTrackIDs, known[i]) > 0;
            const auto language = i < file_.subtitleLanguages.size()
                                      ? namedLanguage(file_.subtitleLanguages[i])
                                      : std::string_view();
            const auto kind = forced ? localized("forced subtitle") : localized("subtitle");
            tracks.push_back({.kind = Kind::Subtitle,
                              .fate = taken ? Fate::Converted : Fate::LeftOut,
                              .track = trackText(known[i], {language, kind}),
                              .outcome = taken ? localized("text track") : subtitleLeftOut()});
        }
        // The record counts the subtitles that are pictures, but does not name them.
        const auto others = file_.subtitleCount - static_cast<int>(known.size());
        if (others <= 0) return;
        const auto format = translations_.localized("%i subtitle", "%i subtitles",
                                                    static_cast<std::uint64_t>(others));
        tracks.push_back({.kind = Kind::Subtitle,
                          .fate = Fate::LeftOut,
                          .count = others,
                          .track = makeString(format, others),
                          .outcome = localized("left out, no text that ffmpeg can read")});
    }

    const Translations& translations_;
    const MKVFileInfo& file_;
    const StreamPlan& plan_;
    std::string encoding_;  // of the external file, where the converter has to be told it
};

}  // namespace

std::vector<TrackOutcome> trackPlan(const Translations& translations, const MKVFileInfo& file,
                                    std::size_t audioTrackIndex,
                                    const ConversionSettings& settings) {
    const auto plan = planStreams(file, audioTrackIndex, settings);
    return PlanTeller(translations, file, plan, subtitleEncoding(file.subtitleFormat, settings))
        .tracks();
}

std::string leftOutText(const Translations& translations, const std::vector<TrackOutcome>& tracks) {
    const auto countOf = [&tracks](Kind kind) {
        std::uint64_t count = 0;
        for (const auto& track : tracks) {
            if (track.fate == Fate::LeftOut && track.kind == kind) {
                count += static_cast<std::uint64_t>(track.count);
            }
        }
        return count;
    };
    const auto audio = countOf(Kind::Audio);
    const auto subtitles = countOf(Kind::Subtitle);
    if (audio > 0 && subtitles > 0) {
        return makeString(
            translations.localized("%lu audio, %lu subtitle track left out",
                                   "%lu audio, %lu subtitle tracks left out", subtitles),
            audio, subtitles);
    }
    if (audio > 0) {
        return makeString(
            translations.localized("%lu audio track left out", "%lu audio tracks left out", audio),
            audio);
    }
    if (subtitles == 0) return {};
    return makeString(translations.localized("%lu subtitle track left out",
                                             "%lu subtitle tracks left out", subtitles),
                      subtitles);
}

std::string trackLine(const TrackOutcome& outcome) {
    const bool remade = outcome.kind == Kind::Audio && outcome.fate == Fate::Converted;
    std::string_view join = ": ";
    if (remade) {
        join = " → ";
    } else if (outcome.again) {
        join = ", ";
    }
    return makeString("%@%@%@", outcome.track, join, outcome.outcome);
}

}  // namespace reelvane
