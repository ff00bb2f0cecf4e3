#include "conversion/cue_count.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "mp4/mp4_movie.h"
#include "support/make_string.h"
#include "support/ports/child_process.h"
#include "support/ports/translations.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::string_view kExternal = "1:0";
constexpr double kSeen = 0.1;  // a cue that is shown for less is not read by anybody

std::string_view withoutSpaces(std::string_view text) {
    const auto begin = text.find_first_not_of(' ');
    return begin == std::string_view::npos ? std::string_view{} : text.substr(begin);
}

template <typename Number>
bool readNumber(std::string_view text, Number& number) {
    return std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
}

/// "-f srt -i FILE" for the inputs that the streams are of, in the order of a run.
std::vector<std::string> inputsOf(const MKVFileInfo& record,
                                  const std::vector<std::string>& streams) {
    std::vector<std::string> list;
    if (std::ranges::any_of(streams, [](const auto& stream) { return stream != kExternal; })) {
        list = {"-i", record.fileURL.native()};
    }
    if (std::ranges::find(streams, kExternal) == streams.end()) return list;
    if (const auto& demuxer = record.subtitleFormat.demuxer; !demuxer.empty()) {
        list.insert(list.end(), {"-f", demuxer});
    }
    list.insert(list.end(), {"-i", record.subtitleFileURL->native()});
    return list;
}

/// Copies the streams into a muxer that prints.
std::vector<std::string> printArguments(const MKVFileInfo& record,
                                        const std::vector<std::string>& streams,
                                        std::string_view muxer) {
    std::vector<std::string> list{"-loglevel", "quiet"};
    const auto inputs = inputsOf(record, streams);
    list.insert(list.end(), inputs.begin(), inputs.end());
    const bool fileAlone = std::ranges::count(inputs, "-i") == 1;
    for (const auto& stream : streams) {
        list.insert(list.end(), {"-map", fileAlone && stream == kExternal ? "0:0" : stream});
    }
    list.insert(list.end(), {"-c", "copy", "-f", std::string(muxer), "-"});
    return list;
}

/// "#tb 0: 1/1000", "#codec_id 0: subrip"; what follows the colon, and the track's number.
bool readHeader(std::string_view line, std::string_view name, std::size_t& track,
                std::string_view& value) {
    if (!line.starts_with(name)) return false;
    const auto rest = withoutSpaces(line.substr(name.size()));
    const auto after = Fennimar::partAfter(rest, ":");
    if (!after || !readNumber(rest, track)) return false;
    value = withoutSpaces(*after);
    return true;
}

/// Reads the list line by line: headers, then "track, dts, pts, duration, bytes, checksum".
class CueListReader {
public:
    explicit CueListReader(const std::vector<std::string>& streams)
        : tracks_(streams.size()),
          units_(streams.size(), 0) {
        for (std::size_t i = 0; i < streams.size(); ++i) tracks_[i].stream = streams[i];
    }

    /// False when the line is none of such a list.
    [[nodiscard]] bool read(std::string_view line) {
        std::size_t track = 0;
        std::string_view value;
        if (readHeader(line, "#tb ", track, value)) return readUnit(track, value);
        if (readHeader(line, "#codec_id ", track, value)) {
            if (track >= tracks_.size()) return false;
            tracks_[track].codec = value;
            return true;
        }
        return line.empty() || line.starts_with('#') || readCue(line);
    }

    [[nodiscard]] std::optional<std::vector<SourceTrack>> take() {
        if (std::ranges::find(units_, 0.0) != units_.end()) return std::nullopt;
        return std::move(tracks_);
    }

private:
    [[nodiscard]] bool readUnit(std::size_t track, std::string_view value) {
        double over = 0;
        double under = 0;
        const auto after = Fennimar::partAfter(value, "/");
        if (track >= units_.size() || !after || !readNumber(value, over) ||
            !readNumber(*after, under) || under <= 0) {
            return false;
        }
        units_[track] = over / under;
        return true;
    }

    [[nodiscard]] bool readCue(std::string_view line) {
        const auto fields = Fennimar::split(line, ",");
        std::size_t track = 0;
        std::int64_t begin = 0;
        std::int64_t duration = 0;
        std::size_t bytes = 0;
        if (fields.size() < 6 || !readNumber(withoutSpaces(fields[0]), track) ||
            track >= tracks_.size() || !readNumber(withoutSpaces(fields[2]), begin) ||
            !readNumber(withoutSpaces(fields[3]), duration) ||
            !readNumber(withoutSpaces(fields[4]), bytes)) {
            return false;
        }
        const auto unit = units_[track];
        tracks_[track].cues.push_back({.begin = static_cast<double>(begin) * unit,
                                       .end = static_cast<double>(begin + duration) * unit,
                                       .bytes = bytes});
        return true;
    }

    std::vector<SourceTrack> tracks_;
    std::vector<double> units_;  // seconds
};

/// How the next cue's beginning treats those before it: an output track shows one at a time.
struct Overlaps {
    std::size_t hidden = 0;
    std::size_t shortened = 0;
};

Overlaps overlapsOf(const SourceTrack& track) {
    Overlaps overlaps;
    for (std::size_t i = 0; i + 1 < track.cues.size(); ++i) {
        const auto& cue = track.cues[i];
        const double shown = track.cues[i + 1].begin - cue.begin;
        if (shown >= cue.end - cue.begin - 0.001) continue;
        ++(shown < kSeen ? overlaps.hidden : overlaps.shortened);
    }
    return overlaps;
}

std::optional<std::string> converterOutput(const MKVFileInfo& record,
                                           const std::vector<std::string>& streams,
                                           std::string_view muxer, const CueTools& tools) {
    auto result = tools.launcher->run({.executable = tools.ffmpeg,
                                       .arguments = printArguments(record, streams, muxer),
                                       .stop = tools.stop,
                                       .keepsAllOutput = true});
    if (!result.finished || result.finished->exitStatus != 0) return std::nullopt;
    return std::move(result.finished->output);
}

/// The text of a packet, without what its format keeps beside it.
std::string_view textOfCue(std::string_view codec, std::string_view cue) {
    constexpr int kFieldsBeforeText = 8;
    constexpr std::size_t kLengthBytes = 2;
    if (codec == "mov_text") {
        // A text with its length before it and its style behind it.
        if (cue.size() < kLengthBytes) return {};
        const auto high = static_cast<unsigned char>(cue[0]);
        const auto low = static_cast<unsigned char>(cue[1]);
        return cue.substr(kLengthBytes, high * 256U + low);
    }
    if (codec == "ass" || codec == "ssa") {
        for (int i = 0; i < kFieldsBeforeText; ++i) {
            cue = Fennimar::partAfter(cue, ",").value_or(std::string_view{});
        }
    }
    return cue;
}

/// How many bytes at the beginning of a text show nothing: a space, a mark of its format.
std::size_t blankLength(std::string_view text) {
    constexpr auto kBlanks =
        std::to_array<std::string_view>({" ", "\t", "\r", "\n", std::string_view("\0", 1), "\\N",
                                         "\\n", "\\h", "&nbsp;", "\xC2\xA0"});
    const auto* const blank = std::ranges::find_if(
        kBlanks, [text](std::string_view known) { return text.starts_with(known); });
    if (blank != kBlanks.end()) return blank->size();
    if (!text.starts_with('<') && !text.starts_with('{')) return 0;
    const auto closing = text.find(text.front() == '<' ? '>' : '}');
    return closing == std::string_view::npos ? 0 : closing + 1;
}

/// How many cues of a track show nothing. Asked only where some are missing: it takes one more run.
std::size_t blankCues(const MKVFileInfo& record, const SourceTrack& track, const CueTools& tools) {
    const auto content = converterOutput(record, {track.stream}, "data", tools);
    if (!content) return 0;
    std::size_t blank = 0;
    std::size_t begin = 0;
    for (const auto& cue : track.cues) {
        if (begin + cue.bytes > content->size()) break;
        const auto text = std::string_view(*content).substr(begin, cue.bytes);
        if (isBlankCue(track.codec, text)) ++blank;
        begin += cue.bytes;
    }
    return blank;
}

std::string sourceName(const MKVFileInfo& record, const SourceTrack& track) {
    return Fennimar::validUtf8(
        track.stream == kExternal ? record.subtitleFileURL->filename().native() : record.fileName);
}

void addTrackNotes(JobNotes& notes, const Translations& translations, const std::string& name,
                   std::size_t missing, const SourceTrack& track) {
    const auto all = track.cues.size();
    if (missing > 0) {
        const auto format = localizedForCount(
            translations, "%lu of %lu subtitles of %@ are missing from the result.", missing);
        notes.push_back({.text = makeString(format, missing, all, name)});
    }
    const auto [hidden, shortened] = overlapsOf(track);
    if (hidden > 0) {
        const auto format = localizedForCount(translations,
                                              "%lu of %lu subtitles of %@ are not seen, because "
                                              "another one begins at once.",
                                              hidden);
        notes.push_back({.text = makeString(format, hidden, all, name)});
    }
    if (shortened > 0) {
        const auto format = localizedForCount(translations,
                                              "%lu of %lu subtitles of %@ end early, because the "
                                              "next one begins before.",
                                              shortened);
        notes.push_back(
            {.kind = JobNote::Kind::Remark, .text = makeString(format, shortened, all, name)});
    }
}

}  // namespace

std::vector<std::string> textStreams(const std::vector<OutputTrack>& planned) {
    std::vector<std::string> streams;
    for (const auto& track : planned) {
        if (track.kind != OutputTrack::Kind::Subtitle) continue;
        streams.push_back(track.stream ? makeString("0:%i", *track.stream)
                                       : std::string(kExternal));
    }
    return streams;
}

std::vector<std::string> cueListArguments(const MKVFileInfo& record,
                                          const std::vector<std::string>& streams) {
    return printArguments(record, streams, "framecrc");
}

std::optional<std::vector<SourceTrack>> parseCueList(std::string_view list,
                                                     const std::vector<std::string>& streams) {
    CueListReader reader(streams);
    for (const auto line : Fennimar::split(list, "\n")) {
        if (!reader.read(line)) return std::nullopt;
    }
    return reader.take();
}

bool isBlankCue(std::string_view codec, std::string_view cue) {
    auto text = textOfCue(codec, cue);
    while (!text.empty()) {
        const auto length = blankLength(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

std::vector<std::uint64_t> textCounts(const Mp4Movie& output) {
    std::vector<std::uint64_t> counts;
    for (const auto& track : output.tracks) {
        if (track.kind == Mp4TrackKind::Text && holdsStream(track)) {
            counts.push_back(track.textCount);
        }
    }
    return counts;
}

JobNotes cueNotes(const Translations& translations, const MKVFileInfo& record,
                  const std::vector<OutputTrack>& planned,
                  const std::vector<std::uint64_t>& arrived, const CueTools& tools) {
    const auto streams = textStreams(planned);
    if (streams.empty()) return {};
    const auto list = converterOutput(record, streams, "framecrc", tools);
    const auto sources = list ? parseCueList(*list, streams) : std::nullopt;
    if (!sources || arrived.size() < sources->size()) {
        return {{.text = makeString(translations.localized("It can't be told whether all subtitles "
                                                           "of %@ are in the result."),
                                    Fennimar::validUtf8(record.fileName))}};
    }
    JobNotes notes;
    for (std::size_t i = 0; i < sources->size(); ++i) {
        const auto& source = (*sources)[i];
        std::size_t missing = 0;
        if (arrived[i] < source.cues.size()) {
            const auto blank = blankCues(record, source, tools);
            const auto wanted = source.cues.size() - std::min(blank, source.cues.size());
            if (arrived[i] < wanted) missing = wanted - arrived[i];
        }
        addTrackNotes(notes, translations, sourceName(record, source), missing, source);
    }
    return notes;
}

}  // namespace reelvane
