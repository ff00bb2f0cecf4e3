#include "support/mail.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/strings.h"
#include "tests/fakes/fake_platform.h"

namespace reelvane {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST(Mail, EncodesEveryValueOfItsLink) {
    EXPECT_EQ(mailLink({.address = "a&b@c.d",
                        .subject = "1 & 2?",
                        .before = "50%+\n",
                        .details = "\xC3\xA9#",
                        .after = "\xFF=/"}),
              "mailto:a%26b@c.d?subject=1%20%26%202%3F&body=50%25%2B%0A%C3%A9%23%EF%BF%BD%3D%2F");
}

TEST(Mail, IsCutInItsMiddleWithinWholeCharacters) {
    for (std::size_t longest = 700; longest < 720; ++longest) {
        Mail mail{.before = "Hello ", .after = " Bye"};
        for (int i = 0; i < 200; ++i) mail.details += "x\xC3\xA9";
        const auto cut = shortened(mail, "[...]", longest);
        EXPECT_TRUE(Fennimar::isValidUtf8(cut.details)) << longest;
        EXPECT_THAT(cut.details,
                    AllOf(StartsWith("x\xC3\xA9"), HasSubstr("[...]"), EndsWith("x\xC3\xA9")));
        EXPECT_LE(mailLink(cut).size(), longest);
        EXPECT_GE(mailLink(cut).size(), longest - 20) << "more than needed was cut";
    }
}

/// A mail with a log of 2,000 lines.
Mail longMail() {
    Mail mail{.address = "a@b.c", .before = "Begin ", .after = " End"};
    for (int i = 0; i < 2000; ++i)
        mail.details += "[matroska,webm @ 0x1] Read error at " + std::to_string(i) + "\n";
    return mail;
}

TEST(Mail, ThatIsTooLongLiesWholeInAFileWhichItNames) {
    FakePlatform platform;
    const auto first = platform.host.folders().documents / "Reelvane Report.txt";
    openMail(platform.vantor, {.details = "short & sweet"});
    EXPECT_FALSE(std::filesystem::exists(first));
    for (const auto* name : {"Reelvane Report.txt", "Reelvane Report-0.txt"}) {
        openMail(platform.vantor, longMail());
        platform.dispatcher.runPending();
        const auto& url = platform.workspace.urls.back();
        EXPECT_LE(url.size(), kLongestMailLink);
        EXPECT_THAT(url, AllOf(HasSubstr(Fennimar::replaced(name, " ", "%20")),
                               HasSubstr("at%201999%0A"), EndsWith("%20End")));
        EXPECT_THAT(contentOf(first.parent_path() / name), HasSubstr(longMail().details));
    }
    EXPECT_THAT(platform.alerts.shown, IsEmpty());
}

TEST(Mail, IsShownToBeCopiedWhereNoProgramOpensIt) {
    FakePlatform platform;
    auto& shown = platform.alerts.shown;
    platform.workspace.opens = false;
    platform.alerts.answers = {{.button = kFirstButton, .text = "edited"}};
    openMail(platform.vantor, {.address = "a@b.c", .subject = "S", .details = "typed & kept"});
    platform.dispatcher.runPending();
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_THAT(shown[0].message, HasSubstr("a@b.c"));
    EXPECT_EQ(shown[0].accessory.text, "a@b.c\nS\n\ntyped & kept\n");
    EXPECT_THAT(platform.workspace.copied, ElementsAre("edited"));
    platform.alerts.answers = {{.button = kSecondButton}};
    openMail(platform.vantor, longMail());
    platform.dispatcher.runPending();
    EXPECT_THAT(shown.back().accessory.text, HasSubstr(longMail().details)) << "not cut";
    EXPECT_EQ(platform.workspace.copied.size(), 1U);
}

TEST(Mail, OfAProgramThatEndsIsSavedWhereNoProgramOpensIt) {
    FakePlatform platform;
    openLastMail(platform.vantor, {.details = "why"}, {});
    EXPECT_THAT(platform.alerts.shown, IsEmpty());
    platform.workspace.opens = false;
    openLastMail(platform.vantor, {.details = "why"}, std::chrono::hours(1));
    const auto file = platform.host.folders().documents / "Reelvane Report.txt";
    EXPECT_THAT(platform.alerts.shown.at(0).message, HasSubstr(file.native()));
    EXPECT_THAT(contentOf(file), HasSubstr("why"));
}

}  // namespace
}  // namespace reelvane
