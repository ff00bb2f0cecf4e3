#include "support/problem_reports.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "support/dispatch.h"
#include "support/host_information.h"
#include "support/logging.h"
#include "support/uncaught_exceptions.h"
#include "tests/fakes/fake_platform.h"
#include "tests/fakes/threaded_dispatcher.h"

namespace reelvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using testing::UnorderedElementsAre;

TEST(ProblemReport, SaysAllThatTheSupportNeeds) {
    ReportFacts facts{"Reelvane", "1.2", 34, "M", "S", true, 0, "cHJlZnM="};
    EXPECT_EQ(mailText(problemReport(facts, "It broke", "why", false)),
              "support@reelvane.org\nReelvane v1.2 (34) Problem Report\n\nHello\n"
              "A  error in Reelvane occured (It broke).\n\nBye\n\nP.S. Details: why\n\n\n"
              "P.P.S: Hardware: M Software: S Admin: 1\n\nPreferences: cHJlZnM=\n\n");
    facts.crashLogCount = 3;
    const auto fatal = mailText(problemReport(facts, "m", std::string(401, 'd'), true));
    EXPECT_THAT(fatal, HasSubstr("A fatal error in Reelvane"));
    EXPECT_THAT(fatal, HasSubstr(std::string(401, 'd')));
    EXPECT_THAT(fatal, HasSubstr("Admin: 1 Problems: 3\n\n"));
    EXPECT_EQ(mailText(supportRequest(facts, "a@b.c", "Help me")),
              "a@b.c\nReelvane v1.2 (34) Support Request\n\nHelp me\n\n\n\n"
              "P.S: Hardware: M Software: S Problems: 3\ncHJlZnM=\n");
    std::string exact;
    for (int i = 0; i < 400; ++i) exact += "é";
    EXPECT_EQ(shownDetails(exact), exact);
    EXPECT_EQ(shownDetails(exact + "x"), exact + "  …\n(Remaining message omitted)");
}

TEST(ProblemReport, IsMailedOnlyWhenTheUserWants) {
    FakePlatform platform;
    const auto& urls = platform.workspace.urls;
    platform.alerts.answers = {{.button = kSecondButton}, {.button = kFirstButton}};
    alert_feedback_nonfatal(platform.vantor, "It broke", "why");
    EXPECT_TRUE(urls.empty());
    EXPECT_EQ(platform.systemLog.written.back().second, "alert_feedback It broke why");
    const auto& content = platform.alerts.shown.front();
    EXPECT_EQ(content.title, "Error");
    EXPECT_EQ(content.message,
              "It broke\n\n You can contact our support with detailed information so that we can "
              "fix this problem.\n\nInformation: why");
    EXPECT_THAT(content.buttons, ElementsAre("Send to support", "Continue"));
    std::vector<int> ends;
    alert_feedback_fatal(platform.vantor, "m", "d", {[&](int status) { ends.push_back(status); }});
    EXPECT_THAT(urls,
                ElementsAre(StartsWith(
                    "mailto:support@reelvane.org?subject=Reelvane%20v1.2%20%2834%29%20Problem")));
    alert_feedback_fatal(platform.vantor, "m", "d", {[&](int status) { ends.push_back(status); }});
    EXPECT_THAT(ends, ElementsAre(1, 1)) << "whatever was pressed";
    EXPECT_EQ(platform.alerts.shown[1].title, "Fatal Error");
    EXPECT_THAT(platform.alerts.shown[1].buttons, ElementsAre("Send to support", "Quit"));
}

TEST(ProblemReport, OffTheMainThreadWaitsForTheAnswerButNotForAStuckThread) {
    PlatformWith<ThreadedDispatcher> platform;
    auto& vantor = platform.vantor;
    std::vector<std::size_t> shownAtEnd;
    FatalEnd end{.endProcess = [&](int) { shownAtEnd.push_back(platform.alerts.shown.size()); },
                 .patience = {}};
    // The main thread waits for the very work that fails, and never turns to its own.
    dispatch_sync_back(vantor, [&] { alert_feedback_fatal(vantor, "m", "d", end); });
    EXPECT_THAT(shownAtEnd, ElementsAre(0));
    end.patience = std::chrono::hours(1);
    dispatch_async_back(vantor, [&] {
        alert_feedback_fatal(vantor, "m", "d", end);
        platform.dispatcher.stopMain();
    });
    platform.dispatcher.runMain();
    EXPECT_THAT(shownAtEnd, ElementsAre(0, 1));  // what was given up is not shown late
}

TEST(HostInformation, KnowsCrashLogsAndFiles) {
    const TemporaryFolder folder;
    for (const auto* name : {"a/Reelvane_1.crash", "a/Other.crash", "a/RÉELVANE.3"}) {
        folder.write(name);
    }
    EXPECT_THAT(crashLogsIn({folder.path() / "a", folder.path() / "none"}, "Reelvane"),
                UnorderedElementsAre("Reelvane_1.crash", "RÉELVANE.3"));
    for (const auto& [plain, encoded] :  // the samples of RFC 4648, section 10
         {std::pair("f", "Zg=="), {"fo", "Zm8="}, {"foobar", "Zm9vYmFy"}}) {
        EXPECT_EQ(base64OfFile(folder.write("f", plain)), encoded);
    }
}

class OddFailure : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

TEST(UncaughtExceptionDeathTest, EndsTheProcessWithStatusOneAfterTheReport) {
    const auto fail = [] {
        FakePlatform platform;
        const UncaughtExceptionHandler handler(platform.vantor);
        vn_log_enablecapturetofile("/dev/stderr", 0);
        std::thread([] { throw OddFailure("unexpected"); }).join();
    };
    EXPECT_EXIT(fail(), testing::ExitedWithCode(1), "alert_feedback .*OddFailure .*unexpected");
}

}  // namespace
}  // namespace reelvane
