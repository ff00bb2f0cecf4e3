#include <cmath>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "cli/command_line.h"
#include "cli/console.h"
#include "cli/json_lines.h"
#include "cli/text_reporter.h"
#include "support/strings.h"
#include "tests/fakes/audio_tracks.h"

namespace reelvane {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

TEST(Suggestion, CountsInsertionsDeletionsReplacementsAndSwaps) {
    EXPECT_EQ(editDistance("", "abc"), 3U);
    EXPECT_EQ(editDistance("--jsn", "--json"), 1U);
    EXPECT_EQ(editDistance("convret", "convert"), 1U);
    EXPECT_EQ(editDistance("kitten", "Sitting"), 3U);
}

TEST(Suggestion, NamesTheNearestThatIsNearEnough) {
    const std::vector<std::string> known{"list", "get", "reset"};
    EXPECT_EQ(suggestion("rest", known), " Did you mean 'reset'?");
    EXPECT_EQ(suggestion("something", known), "");
    EXPECT_EQ(suggestion("x", {}), "");
}

TEST(TextWidth, CountsColumnsAndElidesWholeCharacters) {
    EXPECT_EQ(displayWidth("a第é"), 4U);
    EXPECT_EQ(displayWidth("e\u0301"), 1U);
    EXPECT_EQ(displayWidth("\u2705\uFE0F"), 2U);
    EXPECT_EQ(elidedMiddle("short", 5), "short");
    EXPECT_EQ(elidedMiddle("abcdefghij", 7), "abc…hij");
    for (const auto* const text :
         {"第一話とても長い名前.mkv", "ée\u0301é\u0301éeeeeeeeeee", "abcdefghij"}) {
        for (std::size_t columns = 0; columns < 16; ++columns) {
            EXPECT_LE(displayWidth(elidedMiddle(text, columns)), columns);
        }
    }
}

TEST(TextWidth, NothingSteersTheTerminal) {
    // NOLINTNEXTLINE(misc-misleading-bidirectional): written as an escape
    EXPECT_EQ(printable("a\x1b[31m\n\xFF\u202Eé"), "a\uFFFD[31m\uFFFD\uFFFD\uFFFDé");
    for (const auto* const steering : {"\u061C", "\u200E", "\u200F", "\u202A", "\u202E", "\u2066",
                                       "\u2069", "\u2028", "\u009B", "\x7F", "\r"}) {
        EXPECT_EQ(printableLines(std::string("a") + steering + "\nb"), "a\uFFFD\nb");
        EXPECT_EQ(refusedEvent(std::string("a") + steering, {}).find(steering), std::string::npos);
        EXPECT_EQ(nlohmann::json::parse(refusedEvent(steering, {})).at("file"), steering);
    }
}

TEST(ProgressLine, FitsEveryWidthAndDropsTheLeastImportantFirst) {
    const ConvertProgress progress{
        .percent = 42.9, .speed = 31.4, .remaining = 3663, .number = 2, .files = 12};
    const auto line = [&](std::size_t columns, bool coloured = false) {
        return progressLine("第一話 A.Very.Long.Movie.Name.Of.2024.1080p.mkv", progress, columns,
                            coloured);
    };
    for (std::size_t columns = 1; columns < 200; ++columns) {
        EXPECT_LE(displayWidth(line(columns)), columns);
    }
    const auto wide = line(120);
    for (const auto* const part : {"[2/12] 第一話", ".mkv [███", "42%", "31x", "61m 3s"}) {
        EXPECT_THAT(wide, HasSubstr(part));
    }
    EXPECT_THAT(line(40), Not(HasSubstr("31x")));
    EXPECT_THAT(line(40), EndsWith("]  42%   61m 3s"));
    EXPECT_THAT(line(30), HasSubstr("] "));
    EXPECT_THAT(line(79, true), HasSubstr("\x1b[32m"));
    EXPECT_THAT(line(79), Not(HasSubstr("\x1b")));
}

TEST(ProgressLine, SaysOnlyWhatIsKnown) {
    EXPECT_EQ(progressText({.percent = 99.9}), "99%");
    EXPECT_EQ(progressText({.percent = 5, .speed = 1.25, .remaining = 63}),
              "5% at 1.2x, 1m 3s left");
}

TEST(ProgressLine, LinesThatStayComeAtEachTenPerCentAndOnceAMinute) {
    ProgressSteps steps;
    std::vector<double> told;
    for (const auto& [percent, elapsed] :
         {std::pair{0.0, 0.0}, {9.9, 5.0}, {10.5, 6.0}, {19.0, 65.0}, {19.5, 66.0}, {41.0, 67.0}}) {
        if (steps.isDue(percent, elapsed)) told.push_back(percent);
    }
    EXPECT_EQ(told, (std::vector{10.5, 19.5, 41.0}));
}

TEST(Terminal, LiveLinesAndColoursNeedATerminalThatCan) {
    const TerminalFacts terminal{.isTerminal = true, .term = "xterm"};
    EXPECT_TRUE(canShowLiveLine(terminal) && canShowColours(terminal));
    EXPECT_FALSE(canShowLiveLine({.isTerminal = true, .term = "dumb"}));
    EXPECT_FALSE(canShowLiveLine({.isTerminal = true}));
    EXPECT_FALSE(canShowLiveLine({.isTerminal = false, .term = "xterm"}));
    EXPECT_FALSE(canShowColours({.isTerminal = true, .term = "xterm", .noColor = "1"}));
}

TEST(TextLines, MessagesAndSummariesNameWhatThereIs) {
    EXPECT_EQ(errorText("a", "failed", "x\n\ny\x1b"), "a: failed: x\n    y\uFFFD");
    EXPECT_EQ(errorText("a", "failed", ""), "a: failed");
    EXPECT_EQ(warningLine("v/a.mkv", "a.mkv was kept."), "Warning: v/a.mkv was kept.");
    EXPECT_EQ(warningLine("./a.mkv", "The file 'a.mkv' is odd."),
              "Warning: The file './a.mkv' is odd.");
    EXPECT_EQ(warningLine("a.mkv", "See /v/a.mkv."), "a.mkv: warning: See /v/a.mkv.");
    EXPECT_EQ(warningLine("a.mkv", "'a.mkv.srt' is odd."), "a.mkv: warning: 'a.mkv.srt' is odd.");
    EXPECT_EQ(summaryText({.finished = 1, .refused = 2, .seconds = 63, .bytes = 1430000000}),
              "1 file converted, 2 refused (1m 3s, 1.43 GB)");
    EXPECT_EQ(summaryText({.failed = 2}), "0 files converted, 2 failed");
    EXPECT_EQ(wrapped("a b  c d  e", "  ", 10, 2), "  a b  c d\n  e");
    EXPECT_EQ(wrapped("one two three", " ", 9, 2), "  one two\n  three");
}

TEST(JsonLines, AbsentIsNullAndBadBytesAreReplaced) {
    const MKVFileInfo record{.audioTrackInformation = {audioTrack("#1: eng (ac3)")}};
    const auto line = acceptedLine({.file = "\xFF.mkv", .record = record, .bestAudio = 0});
    EXPECT_EQ(line,
              "{\"file\":\"\uFFFD.mkv\",\"accepted\":true,\"fileName\":\"\",\"fileSize\":0,"
              "\"runtimeSeconds\":null,\"videoTrackID\":null,\"videoCodec\":null,"
              "\"resolution\":null,\"referenceFrames\":null,\"audioTrackInformation\":[{\"text\":"
              "\"#1: eng (ac3)\",\"HZ\":null}],\"subtitleTrackIDs\":[],\"subtitleCount\":0,"
              "\"informationString\":\"\",\"bestLanguage\":\"#1: eng (ac3)\",\"alerts\":[]}");
    EXPECT_THAT(progressEvent({.file = "a"}, 12.3456, std::nullopt, "s"),
                HasSubstr("\"percent\":12.35,\"remaining\":null"));
}

}  // namespace
}  // namespace reelvane
