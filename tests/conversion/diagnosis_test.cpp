#include "conversion/diagnosis.h"

#include <gtest/gtest.h>

#include "conversion/failure_report.h"
#include "support/problem_reports.h"
#include "support/strings.h"

namespace reelvane {
namespace {

TEST(Diagnosis, TheFirstMatchingRowDecides) {
    const struct {
        FailureFacts facts;
        const char* title;
        const char* messagePart;
    } rows[] = {
        {{.jobOutput = "USER_REMOVED No space left on device"},
         "Conversion Failed",
         "not enough free space left on the destination"},
        {{.jobOutput = "File too large Operation timed out"},
         "Conversion Failed",
         "Your target disk doesn't support large files."},
        {{.jobOutput = "Operation timed out"}, "Conversion Failed", "network volume"},
        {{.jobOutput = "Connection timed out"}, "Conversion Failed", "network volume"},
        {{.jobOutput = "x Bad file descriptor"}, "Conversion Failed", "network volume"},
        {{.jobOutput = "Error while decoding stream; Read error at pos 1"},
         "Conversion Failed",
         "too damaged to convert"},
        {{.jobOutput = "Read error at pos 1 USER_REMOVED"}, "Conversion Failed", "unmounted it's"},
        {{.jobOutput = "track 0: could not find tag, codec not currently supported in container"},
         "Conversion Failed",
         "can't be embedded into MP4s"},
        {{.jobOutput = "Could not find tag for codec vp8 in stream #0, codec not currently "
                       "supported in container",
          .embeddedSubtitlesConverted = true},
         "Conversion Failed",
         "can't be embedded into MP4s"},
        {{.jobOutput = "Could not find tag for codec vp8 in stream #1, codec not currently "
                       "supported in container",
          .embeddedSubtitlesConverted = true,
          .externalSubtitles = true},
         "Information",
         "subtitles embedded into the movie"},
        {{.jobOutput = "no space left on device", .externalSubtitles = true},
         "Information",
         "subtitle file you have specified"},
        {{.startProblem = "ffmpeg is missing.", .jobOutput = "No space left on device"},
         "Conversion Failed",
         "ffmpeg is missing."},
    };
    for (const auto& row : rows) {
        const auto diagnosis = diagnose(row.facts);
        EXPECT_EQ(diagnosis.title, row.title) << row.messagePart;
        EXPECT_TRUE(Fennimar::contains(diagnosis.message, row.messagePart)) << diagnosis.message;
        EXPECT_FALSE(diagnosis.offersReport) << row.messagePart;
    }
}

TEST(Diagnosis, TheUnexplainedOffersAReportWithAShortenedOutput) {
    const auto output = std::string(399, 'e') + "\xFF" + "cut";
    const auto diagnosis = diagnose({.jobOutput = output, .arguments = "-i IN"});
    EXPECT_TRUE(diagnosis.offersReport);
    EXPECT_EQ(diagnosis.title, "Information");
    EXPECT_TRUE(diagnosis.message.ends_with(
        "\n\nCommand-line: -i IN\nCommand-output: " + std::string(399, 'e') + "\uFFFD"));
}

TEST(FailureReport, TheMailCarriesEverythingAndSurvivesItsOwnSeparators) {
    const ReportFacts sender{.appName = "Reelvane",
                             .appVersionString = "1.2",
                             .machineType = "Model",
                             .operatingSystemVersion = "System",
                             .preferences = "QQ=="};
    EXPECT_EQ(failureReportLink(sender, {"-i /Tom & Jerry#1.mkv", "50%", "record"}),
              "mailto:support@reelvane.org?subject=Reelvane%20v1.2%20Problem%20Report&body=Hello%0A"
              "Conversion%20of%20a%20file%20failed.%0A%0ABye%0A%0AP.S.%20Details:%20-i%20/Tom%20"
              "%26%20Jerry%231.mkv%2050%25%20record%0A%0A%0AP.P.S:%20Hardware:%20Model%20Software:"
              "%20System%20Preferences:%20QQ==");
}

}  // namespace
}  // namespace reelvane
