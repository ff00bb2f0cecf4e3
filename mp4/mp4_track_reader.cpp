#include "mp4/mp4_track_reader.h"

#include <algorithm>
#include <span>
#include <vector>

namespace reelvane {
namespace {

constexpr std::size_t kBlock = std::size_t{64} * 1024;

/// Hands a table's entries to `visit`, a block at a time, as long as it answers true. False when
/// the table is larger than its box. A movie has a million entries: the call is to be inlined.
template <typename Visit>
bool forEachEntry(const ByteSource& file, const Mp4Box& table, std::uint64_t begin,
                  std::uint64_t count, std::size_t width, Visit visit) {
    if (begin > table.contentSize() || count > (table.contentSize() - begin) / width) return false;
    std::vector<std::byte> block(std::min<std::uint64_t>(kBlock, count * width));
    auto offset = table.contentBegin + begin;
    auto left = count * width;
    while (left > 0) {
        const auto part = std::span(block).first(std::min<std::uint64_t>(block.size(), left));
        if (!file.read(offset, part)) return false;
        for (std::size_t i = 0; i < part.size(); i += width) {
            if (!visit(bigEndian(part.subspan(i, width)))) return true;
        }
        offset += part.size();
        left -= part.size();
    }
    return true;
}

bool readTrackHeader(const ByteSource& file, const Mp4Box& trak, const TrackContext& context,
                     Mp4Track& track) {
    const auto tkhd = childBox(file, trak, "tkhd");
    if (!tkhd) return false;
    const auto version = numberInBox(file, *tkhd, 0, 1);
    const bool wide = version == 1U;
    const auto flags = numberInBox(file, *tkhd, 1, 3);
    const auto trackID = numberInBox(file, *tkhd, wide ? 20 : 12, 4);
    const std::uint64_t durationPosition = wide ? 28 : 20;
    const std::size_t durationWidth = wide ? 8 : 4;
    const auto duration = durationInBox(file, *tkhd, durationPosition, durationWidth);
    const std::uint64_t groupPosition = wide ? 46 : 34;
    const auto group = numberInBox(file, *tkhd, groupPosition, 2);
    if (!version || !flags || !trackID || !duration || !group) return false;
    track.trackID = static_cast<std::uint32_t>(*trackID);
    track.flags = static_cast<std::uint32_t>(*flags);
    track.enabled = (*flags & 1U) != 0;
    track.seconds = static_cast<double>(*duration) / static_cast<double>(context.timeScale);
    track.duration = {.offset = tkhd->contentBegin + durationPosition,
                      .width = durationWidth,
                      .value = *duration};
    track.alternateGroup = static_cast<std::uint32_t>(*group);
    track.flagsOffset = tkhd->contentBegin + 1;
    track.alternateGroupOffset = tkhd->contentBegin + groupPosition;
    return true;
}

/// Three letters packed into 15 bits (ISO/IEC 14496-12, 8.4.2.3); older QuickTime numbers read
/// "und".
std::string languageText(std::uint64_t packed) {
    if (packed < 0x400 || packed == 0x7FFF) return "und";
    std::string text;
    for (const unsigned shift : {10U, 5U, 0U}) {
        const auto letter = static_cast<char>((packed >> shift & 0x1FU) + 0x60U);
        if (letter < 'a' || letter > 'z') return "und";
        text += letter;
    }
    return text;
}

std::string fourLetters(std::uint64_t number) {
    std::string text;
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        text += static_cast<char>(number >> shift & 0xFFU);
    }
    return text;
}

Mp4TrackKind kindOf(const std::string& handler) {
    if (handler == "vide") return Mp4TrackKind::Video;
    if (handler == "soun") return Mp4TrackKind::Audio;
    if (handler == "sbtl" || handler == "subt" || handler == "text" || handler == "clcp") {
        return Mp4TrackKind::Text;
    }
    return Mp4TrackKind::Other;
}

bool readMediaHeaders(const ByteSource& file, const Mp4Box& mdia, Mp4Track& track) {
    const auto mdhd = childBox(file, mdia, "mdhd");
    const auto hdlr = childBox(file, mdia, "hdlr");
    if (!mdhd || !hdlr) return false;
    const bool wide = numberInBox(file, *mdhd, 0, 1) == 1U;
    const auto timeScale = numberInBox(file, *mdhd, wide ? 20 : 12, 4);
    const std::uint64_t languagePosition = wide ? 32 : 20;
    const auto language = numberInBox(file, *mdhd, languagePosition, 2);
    const auto handler = numberInBox(file, *hdlr, 8, 4);
    const auto duration = durationInBox(file, *mdhd, wide ? 24 : 16, wide ? 8 : 4);
    if (!timeScale || *timeScale == 0 || !language || !handler) return false;
    track.timeScale = *timeScale;
    track.mediaSeconds =
        static_cast<double>(duration.value_or(0)) / static_cast<double>(*timeScale);
    track.language = languageText(*language);
    track.languageOffset = mdhd->contentBegin + languagePosition;
    track.handler = fourLetters(*handler);
    track.kind = kindOf(track.handler);
    return true;
}

bool readSampleEntry(const ByteSource& file, const Mp4Box& stbl, Mp4Track& track) {
    const auto stsd = childBox(file, stbl, "stsd");
    const auto count = stsd ? numberInBox(file, *stsd, 4, 4) : std::nullopt;
    if (!count || *count == 0) return false;
    const auto entry = readBox(file, stsd->contentBegin + 8, stsd->end);
    if (!entry || entry->end > stsd->end) return false;
    track.codec = entry->type;
    if (track.codec == "tx3g") {
        const auto flags = numberInBox(file, *entry, 8, 4);
        if (!flags) return false;
        track.displayFlagsOffset = entry->contentBegin + 8;
        track.displayFlags = static_cast<std::uint32_t>(*flags);
    }
    return true;
}

bool readSampleSizes(const ByteSource& file, const Mp4Box& stbl, Mp4Track& track) {
    const auto stsz = childBox(file, stbl, "stsz");
    if (!stsz) return childBox(file, stbl, "stz2").has_value();
    const auto common = numberInBox(file, *stsz, 4, 4);
    const auto count = numberInBox(file, *stsz, 8, 4);
    if (!common || !count) return false;
    track.sampleCount = *count;
    // QuickTime counts the units of sound that is not packed in frames and calls each 1 byte long.
    const bool areUnits = track.kind == Mp4TrackKind::Audio && *common == 1;
    track.sampleBytes = areUnits ? 0 : *common * *count;
    // A length of 0 and nothing more ends the text before (3GPP TS 26.245, 5.17).
    constexpr std::uint64_t kEmptyText = 2;
    if (*common > kEmptyText) track.textCount = *count;
    if (*common != 0) return true;
    return forEachEntry(file, *stsz, 12, *count, 4, [&track](std::uint64_t size) {
        track.sampleBytes += size;
        if (size > kEmptyText) ++track.textCount;
        return true;
    });
}

/// Absent: every chunk starts inside the media data.
std::optional<std::string> chunkProblem(const ByteSource& file, const Mp4Box& stbl,
                                        const TrackContext& context) {
    auto table = childBox(file, stbl, "stco");
    const std::size_t width = table ? 4 : 8;
    if (!table) table = childBox(file, stbl, "co64");
    const auto count = table ? numberInBox(file, *table, 4, 4) : std::nullopt;
    if (!count) return "has a damaged chunk table";
    bool inside = true;
    const bool whole = forEachEntry(file, *table, 8, *count, width, [&](std::uint64_t offset) {
        inside = context.media.holds(offset, 1);
        return inside;
    });
    if (!whole) return "has a damaged chunk table";
    if (!inside) return "has an index that points outside its media data";
    return std::nullopt;
}

/// QuickTime lets a track refer to the media data of other files.
bool isSelfContained(const ByteSource& file, const Mp4Box& minf) {
    const auto dinf = childBox(file, minf, "dinf");
    const auto dref = dinf ? childBox(file, *dinf, "dref") : std::nullopt;
    const auto entry = dref ? readBox(file, dref->contentBegin + 8, dref->end) : std::nullopt;
    const auto flags = entry ? numberInBox(file, *entry, 1, 3) : std::nullopt;
    return !flags || (*flags & 1U) != 0;
}

}  // namespace

Mp4Edits readEdits(const ByteSource& file, const Mp4Box& trak) {
    Mp4Edits edits;
    const auto edts = childBox(file, trak, "edts");
    const auto elst = edts ? childBox(file, *edts, "elst") : std::nullopt;
    if (!elst) return edits;
    // An entry is a duration and a time of this width, and a rate; below 0 it shows nothing.
    const std::size_t width = numberInBox(file, *elst, 0, 1) == 1U ? 8 : 4;
    const auto count = numberInBox(file, *elst, 4, 4).value_or(0);
    for (std::uint64_t i = 0; i < count; ++i) {
        const auto position = 8 + i * (2 * width + 4);
        const auto duration = numberInBox(file, *elst, position, width);
        const auto time = numberInBox(file, *elst, position + width, width);
        if (!duration || !time) break;
        if ((*time >> (width * 8 - 1) & 1U) != 0) continue;
        ++edits.parts;
        edits.lastDuration = {
            .offset = elst->contentBegin + position, .width = width, .value = *duration};
    }
    return edits;
}

TrackReading readTrack(const ByteSource& file, const Mp4Box& trak, const TrackContext& context) {
    Mp4Track track;
    if (!readTrackHeader(file, trak, context, track)) {
        return {.problem = "has a damaged track header (tkhd)"};
    }
    const auto mdia = childBox(file, trak, "mdia");
    if (!mdia || !readMediaHeaders(file, *mdia, track)) {
        return {.problem = "has a damaged media header (mdia)"};
    }
    track.edits = readEdits(file, trak);
    const auto udta = childBox(file, trak, "udta");
    track.hasTitle = udta && childBox(file, *udta, "name");
    const auto minf = childBox(file, *mdia, "minf");
    const auto stbl = minf ? childBox(file, *minf, "stbl") : std::nullopt;
    if (!stbl || !readSampleEntry(file, *stbl, track)) {
        return {.problem = "has a damaged sample description (stsd)"};
    }
    if (!isSelfContained(file, *minf)) {
        return {.problem = "keeps its media data in another file", .uncheckable = true};
    }
    if (!readSampleSizes(file, *stbl, track)) {
        return {.problem = "has a damaged sample size table (stsz)"};
    }
    if (auto problem = chunkProblem(file, *stbl, context)) return {.problem = std::move(*problem)};
    return {.track = std::move(track)};
}

}  // namespace reelvane
