#include "conversion/diagnosis.h"

#include <gmock/gmock.h>
#include <vector>

#include "support/localization.h"

namespace reelvane {
namespace {

TEST(Diagnosis, TheFirstMatchingRowDecides) {
    const auto noTag = [](const char* stream) {
        return std::string("Could not find tag for codec vp8 in ") + stream +
               ", codec not currently supported in container";
    };
    struct Row {
        std::string output;
        bool embedded, external;
        const char *title, *part;
    };
    const std::vector<Row> rows = {
        {"USER_REMOVED No space left on device", true, true, "Conversion Failed", "free space"},
        {"File too large Operation timed out", true, true, "Conversion Failed", "large files."},
        {"Operation timed out", true, true, "Conversion Failed", "network volume"},
        {"Error while decoding stream Read error at pos", true, true, "Conversion Failed", "damag"},
        {"Read error at pos USER_REMOVED", true, true, "Conversion Failed", "unmounted it's"},
        {"track 0: could not find tag, codec not currently supported in container", true, true,
         "Conversion Failed", "can't be embedded into MP4s"},
        {noTag("stream #0"), true, true, "Conversion Failed", "can't be embedded into MP4s"},
        {noTag("stream #1"), true, true, "Information", "subtitles embedded into the movie"},
        {"no space left on device", false, true, "Information", "the subtitle file you have"},
    };
    for (const auto& row : rows) {
        const auto diagnosis = diagnose(kUntranslated, {.jobOutput = row.output,
                                                        .embeddedSubtitlesConverted = row.embedded,
                                                        .externalSubtitles = row.external});
        EXPECT_EQ(diagnosis.title, row.title) << row.output;
        EXPECT_THAT(diagnosis.message, testing::HasSubstr(row.part));
        EXPECT_FALSE(diagnosis.offersReport) << row.output;
    }
}

TEST(Diagnosis, AnIncompleteOutputIsTheFaultOfWhatWasBroken) {
    const auto message = [](std::string_view source) {
        return diagnose(kUntranslated, {.incompleteOutput = true, .damagedSource = source}).message;
    };
    EXPECT_THAT(message(""), testing::HasSubstr("check the destination disk"));
    EXPECT_THAT(message("film.mkv"), testing::HasSubstr("because film.mkv is damaged"));
}

TEST(Diagnosis, TheUnexplainedOffersAReportWithAShortenedOutput) {
    const auto output = std::string(399, 'e') + "\xFF" + "cut";
    const auto diagnosis = diagnose(kUntranslated, {.shownOutput = output, .arguments = "-i IN"});
    EXPECT_TRUE(diagnosis.offersReport);
    EXPECT_THAT(diagnosis.message, testing::EndsWith("\n\nCommand-line: -i IN\nCommand-output: " +
                                                     std::string(399, 'e') + "\uFFFD"));
}

}  // namespace
}  // namespace reelvane
