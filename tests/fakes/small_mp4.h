#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace reelvane {

/// Builds the bytes of a small MP4 file box by box, index first, with one sample per track.
class SmallMp4 {
public:
    struct Track {
        std::string handler{};  ///< "vide", "soun", "sbtl"
        std::string codec{};    ///< "avc1", "mp4a", "tx3g"
        std::uint32_t flags = 3;
        std::string sample{"sample"};
        std::string title{};
        std::vector<std::int64_t> edits{};  ///< where the parts begin; -1: nothing is shown
    };

    std::vector<Track> tracks{{.handler = "vide", .codec = "avc1"},
                              {.handler = "soun", .codec = "mp4a"}};
    bool wide = false;  ///< 64-bit box sizes, times and chunk offsets
    std::uint32_t seconds = 12;
    unsigned fragments = 0;  ///< each with one more sample of the first track, a second long

    [[nodiscard]] std::string bytes() const {
        const auto head = box("ftyp", "isom" + number(512, 4) + "isom");
        const auto moovSize = moov(0).size();
        auto all = head + moov(head.size() + moovSize + (wide ? 16 : 8)) + box("mdat", samples());
        const auto fragment = moof() + box("mdat", tracks.front().sample);
        for (unsigned i = 0; i < fragments; ++i) all += fragment;
        return all;
    }

    static std::string number(std::uint64_t value, unsigned width) {
        std::string text;
        for (unsigned shift = width * 8; shift > 0; shift -= 8) {
            text += static_cast<char>(value >> (shift - 8) & 0xFFU);
        }
        return text;
    }
    [[nodiscard]] std::string box(std::string_view type, const std::string& content) const {
        if (!wide) return number(content.size() + 8, 4) + std::string(type) + content;
        return number(1, 4) + std::string(type) + number(content.size() + 16, 8) + content;
    }

private:
    [[nodiscard]] std::string versioned(unsigned flags) const {
        return number(wide ? 1 : 0, 1) + number(flags, 3);
    }
    [[nodiscard]] std::string times() const { return std::string(wide ? 16 : 8, '\0'); }
    [[nodiscard]] unsigned timeWidth() const { return wide ? 8 : 4; }

    [[nodiscard]] std::string samples() const {
        std::string all;
        for (const auto& track : tracks) all += track.sample;
        return all;
    }
    [[nodiscard]] std::string moov(std::uint64_t mediaBegin) const {
        auto content =
            box("mvhd", versioned(0) + times() + number(1000, 4) +
                            number(seconds * 1000U, timeWidth()) + std::string(80, '\0'));
        for (std::size_t i = 0; i < tracks.size(); ++i) {
            auto trak = trackHeader(tracks[i], i + 1) + media(tracks[i], mediaBegin);
            if (!tracks[i].edits.empty()) trak += box("edts", editList(tracks[i].edits));
            if (!tracks[i].title.empty()) trak += box("udta", box("name", tracks[i].title));
            content += box("trak", trak);
            mediaBegin += tracks[i].sample.size();
        }
        if (fragments > 0) content += box("mvex", box("trex", number(0, 4) + number(1, 4)));
        return box("moov", content);
    }
    [[nodiscard]] std::string editList(const std::vector<std::int64_t>& edits) const {
        auto entries = number(edits.size(), 4);
        for (const auto begin : edits) {
            entries += number(seconds * 1000U, timeWidth()) +
                       number(static_cast<std::uint64_t>(begin), timeWidth()) + number(0x10000, 4);
        }
        return box("elst", versioned(0) + entries);
    }
    [[nodiscard]] std::string moof() const {
        const auto tfhd = box("tfhd", number(0x20000, 4) + number(1, 4));  // places count from here
        const auto run = [&](std::uint64_t place) {
            return box("trun", number(0x301, 4) + number(1, 4) + number(place, 4) +
                                   number(1000, 4) + number(tracks.front().sample.size(), 4));
        };
        const auto whole = [&](std::uint64_t place) {
            return box("moof", box("traf", tfhd + run(place)));
        };
        return whole(whole(0).size() + (wide ? 16 : 8));
    }
    [[nodiscard]] std::string trackHeader(const Track& track, std::uint64_t trackID) const {
        return box("tkhd", versioned(track.flags) + times() + number(trackID, 4) + number(0, 4) +
                               number(seconds * 1000U, timeWidth()) + std::string(60, '\0'));
    }
    [[nodiscard]] std::string media(const Track& track, std::uint64_t chunk) const {
        const auto mdhd = box("mdhd", versioned(0) + times() + number(1000, 4) +
                                          number(seconds * 1000U, timeWidth()) + number(0x15C7, 2) +
                                          number(0, 2));  // "eng"
        const auto hdlr = box("hdlr", number(0, 8) + track.handler + std::string(13, '\0'));
        const auto entry = box(track.codec, std::string(30, '\0'));
        const auto tables =
            box("stsd", number(0, 4) + number(1, 4) + entry) +
            box("stsz", number(0, 8) + number(1, 4) + number(track.sample.size(), 4)) +
            box(wide ? "co64" : "stco", number(0, 4) + number(1, 4) + number(chunk, wide ? 8 : 4));
        return box("mdia", mdhd + hdlr + box("minf", box("stbl", tables)));
    }
};

}  // namespace reelvane
