#include "conversion/job_notes.h"

#include <gmock/gmock.h>

#include "support/localization.h"
#include "tests/fakes/audio_tracks.h"

namespace reelvane {
namespace {

using testing::HasSubstr;
using testing::Not;

const MKVFileInfo kFilm{
    .subtitleTrackIDs = {3}, .fileName = "film.mkv", .subtitleFileURL = "/v/film.srt"};

TEST(JobNotes, TheLogSaysWhatIsWrongWithTheSource) {
    const struct {
        std::string log;
        std::string doubt;  ///< empty: none
    } cases[] = {
        {"", ""},
        {"[mov @ 0x1] Guessed Channel Layout for Input Stream #0.1 : stereo", ""},
        {"[matroska,webm @ 0x1] File ended prematurely", "could not be read"},
        {"film.mkv: Input/output error", "could not be read"},
        {"[matroska,webm @ 0x1] Read error", "could not be read"},
        {"[mov,mp4 @ 0x1] stream 0, offset 0x30: partial file", "could not be read"},
        {"[matroska,webm @ 0x1] 0x00 at pos 9 (0x9) invalid as first byte of an EBML number",
         "is damaged"},
        {"[mpegts @ 0x1] max resync size reached, could not find sync byte", "is damaged"},
        {"[mpegts @ 0x1] Packet corrupt (stream = 1, dts = 1384989).", "is damaged"},
        {"[NULL @ 0x1] Invalid NAL unit size (0 > 11071).", "is damaged"},
        {"Error while decoding stream #0:1: Invalid data found when processing input",
         "is damaged"},
        {"Error while decoding stream #0:3: Invalid data found when processing input"
         "Error while decoding stream #1:0: Invalid data found when processing input",
         "subtitle track #3 of film.mkv could not be read, so some of its lines may be missing. "
         "Parts of the subtitle file film.srt could"},
        {"[sist#0:3/subrip @ 0x1] [dec:srt @ 0x2] Error submitting packet to decoder: Invalid data "
         "found when processing input",
         "subtitle track #3"},
        {"Error while decoding stream #0:3: Invalid data found when processing input"
         "[NULL @ 0x1] Invalid NAL unit size (0 > 11071).",
         "is damaged"},
        {"[mp4 @ 0x1] Non-monotonous DTS in output stream 0:0; changing to 1.", "out of order"},
        {"[vost#0:0/copy @ 0x1] Non-monotonic DTS; previous: 2; changing to 3.", "out of order"},
        {"Invalid DTS: 7 PTS: 5 in output stream 0:0, replacing by guess", "out of order"},
        {"[mp4 @ 0x1] Timestamps are unset in a packet for stream 0.", "out of order"},
    };
    for (const auto& [log, doubt] : cases) {
        const auto notes = doubtsOfLog(kUntranslated, kFilm, log);
        EXPECT_EQ(hasDoubt(notes), !doubt.empty()) << log;
        EXPECT_THAT(warningText(notes), HasSubstr(doubt)) << log;
        if (doubt.starts_with("subtitle")) {
            EXPECT_THAT(warningText(notes), Not(HasSubstr("is damaged"))) << log;
        }
    }
}

TEST(JobNotes, SoundOfNoKnownFormatIsMissed) {
    const auto doubts = [](const std::vector<AudioTrack>& tracks) {
        return warningText(doubtsOfSound(kUntranslated, "film.mkv", tracks));
    };
    EXPECT_THAT(doubts({audioTrack("#1: eng (none)"), audioTrack("#2: ger (none) [5.1]")}),
                HasSubstr("was left out"));
    EXPECT_EQ(doubts({audioTrack("#1: eng (none)"), audioTrack("#2: ger (aac)")}) + doubts({}), "");
    const std::vector<AudioTrack> mixed{audioTrack("#1: eng (none)"), audioTrack("#2: ger (aac)")};
    EXPECT_THAT(doubtsOfSound(kUntranslated, "film.mkv", mixed).at(0).text,
                HasSubstr("1 of the audio tracks of film.mkv"));
    EXPECT_TRUE(doubtsOfSound(kUntranslated, "film.mkv", std::span(mixed).subspan(1)).empty());
}

TEST(JobNotes, AFailureIsTheSourcesWhereTheRunSaysSo) {
    EXPECT_TRUE(blamesSource({}, "[matroska,webm @ 0x1] File ended prematurely"));
    EXPECT_TRUE(blamesSource({.isCutShort = true}, ""));
    EXPECT_FALSE(blamesSource({}, "Error writing trailer of film.m4v: Input/output error"));
    EXPECT_FALSE(blamesSource({}, ""));
}

TEST(JobNotes, EverySentenceIsToldOnceAndRemarksAreNoWarning) {
    const std::string log = "Read errorPacket corruptInput/output error";
    auto notes = doubtsOfLog(kUntranslated, kFilm, log);
    addNotes(notes, doubtsOfLog(kUntranslated, kFilm, log));
    EXPECT_THAT(notes, testing::SizeIs(2));
    JobNotes remarks{{.kind = JobNote::Kind::Remark, .text = "1 audio track left out."}};
    EXPECT_EQ(warningText(remarks), "");
    EXPECT_FALSE(hasDoubt(remarks));
    addNotes(remarks, {{.kind = JobNote::Kind::SourceKept, .text = "The source was kept."}});
    EXPECT_EQ(warningText(remarks), "The source was kept.");
}

}  // namespace
}  // namespace reelvane
