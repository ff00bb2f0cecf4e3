#include "support/problem_reports.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "support/damaged_application.h"
#include "support/dispatch.h"
#include "support/host_information.h"
#include "support/logging.h"
#include "support/open_url.h"
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
    EXPECT_EQ(problemReportLink(facts, "It broke", "why", false),
              "mailto:support@reelvane.org?subject=Reelvane v1.2 (34) Problem Report&body=Hello\n"
              "A  error in Reelvane occured (It broke).\n\nBye\n\nP.S. Details: why\n\n\n"
              "P.P.S: Hardware: M Software: S Admin: 1\n\nPreferences: cHJlZnM=\n");
    facts.crashLogCount = 3;
    const auto fatal = problemReportLink(facts, "m", std::string(401, 'd'), true);
    EXPECT_THAT(fatal, HasSubstr("A fatal error in Reelvane"));
    EXPECT_THAT(fatal, HasSubstr(std::string(401, 'd')));
    EXPECT_THAT(fatal, HasSubstr("Admin: 1 Problems: 3\n\n"));
    EXPECT_EQ(supportRequestLink(facts, "a@b.c", "Help me"),
              "mailto:a@b.c?subject=Reelvane v1.2 (34) Support Request&body=Help me\n\n\n\n"
              "P.S: Hardware: M Software: S Problems: 3\ncHJlZnM=");
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
    EXPECT_THAT(urls, ElementsAre(StartsWith(
                          "mailto:support@reelvane.org?subject=Reelvane%20v1.2%20(34)%20Problem")));
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

TEST(OpenURL, KnowsSixLinksAndTheSupportRequestWithThePreferences) {
    FakePlatform platform;
    const auto& urls = platform.workspace.urls;
    auto& info = platform.mainBundle.info;
    openURL(platform.vantor, kProductPageURL);
    info["VendorProductPage"] = "https://v/a b";
    info["StoreProductPage"] = "https://s/";
    info["MacupdateProductPage"] = "https://m/";
    for (int choice = 2; choice <= 7; ++choice) openURL(platform.vantor, choice);
    EXPECT_THAT(urls,
                ElementsAre("https://www.reelvane.org/reelvane/",
                            "shelp@example.org?subject=Reelvane%20Beta%20Versions&body=Hello%0AI%20"
                            "would%20like%20to%20test%20upcoming%20beta%20versions%20of%20Reelvane."
                            "%0ABye%0A",
                            "https://v/a%20b", "https://s/", "macappstore://s/", "https://m/", ""));
    platform.folder.write("config/org.reelvane.Reelvane/org.reelvane.Reelvane.ini", "ab\xFF\n");
    sendSupportRequestMail(platform.vantor, "Help");
    EXPECT_THAT(urls.back(), StartsWith("mailto:help@example.org?subject="));
    EXPECT_FALSE(urls.back().ends_with("%0AYWL/Cg=="));
    platform.workspace.option = true;
    openURL(platform.vantor, kSupportRequestURL);
    EXPECT_THAT(urls.back(), HasSubstr("%3CInsert%20Support%20Request%20Here%3E"));
    EXPECT_TRUE(urls.back().ends_with("%0AYWL/Cg=="));
}

TEST(HostInformation, KnowsCrashLogsAdministratorsDisksAndFiles) {
    const TemporaryFolder folder;
    for (const auto* name : {"a/Reelvane_1.crash", "a/reelvane-2", "a/Other.crash", "b/RÉELVANE.3",
                             "b/Re\u0301elvane.4", "b/Reel.crash"}) {
        folder.write(name);
    }
    EXPECT_THAT(
        crashLogsIn({folder.path() / "a", folder.path() / "none", folder.path() / "b"}, "Reelvane"),
        UnorderedElementsAre("Reelvane_1.crash", "reelvane-2", "RÉELVANE.3", "Re\u0301elvane.4"));
    FakePlatform platform;
    EXPECT_FALSE(isUserAdmin(platform.vantor));
    platform.host.admins = {"root", "ada"};
    EXPECT_TRUE(isUserAdmin(platform.vantor));
    EXPECT_EQ(diskNumberOf("/dev/disk12s1"), 12);
    EXPECT_EQ(diskNumberOf("/dev/sda1"), -1);
    for (const auto& [plain, encoded] :  // the samples of RFC 4648, section 10
         {std::pair("f", "Zg=="), {"fo", "Zm8="}, {"foobar", "Zm9vYmFy"}}) {
        EXPECT_EQ(base64OfFile(folder.write("f", plain)), encoded);
    }
    EXPECT_EQ(base64OfFile(folder.path() / "missing"), "");
}

TEST(DamagedApplication, IsOneWhoseLinksWereLost) {
    const TemporaryFolder folder;
    const auto frameworks = folder.path() / "Frameworks";
    EXPECT_FALSE(applicationIsDamaged(frameworks));
    const auto target = folder.write("Frameworks/Foo.framework/Versions/A/Foo");
    std::filesystem::create_symlink(target, frameworks / "Foo.framework" / "Foo");
    EXPECT_FALSE(applicationIsDamaged(frameworks));
    folder.write("Frameworks/Bar.framework/Bar");
    EXPECT_TRUE(applicationIsDamaged(frameworks));
}

class OddFailure : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

TEST(UncaughtException, IsReportedByNameAndText) {
    std::exception_ptr nested;
    try {
        try {
            throw OddFailure("inner");
        } catch (...) {
            std::throw_with_nested(std::runtime_error("outer"));
        }
    } catch (...) {
        nested = std::current_exception();
    }
    EXPECT_THAT(describeException(nested, "STACK").details, HasSubstr("outer inner;  STACK"));
    EXPECT_EQ(describeException(std::make_exception_ptr(7), "").name, "int");
    EXPECT_EQ(describeException(nullptr, "").name, "std::terminate");
}

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
