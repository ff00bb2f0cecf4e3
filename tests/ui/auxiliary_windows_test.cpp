#include "ui/windows/auxiliary_windows.h"

#include <tuple>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QPlainTextEdit>
#include <QPushButton>

#include "tests/ui/names.h"
#include "tests/ui/ui_fixture.h"
#include "ui/windows/about_dialog.h"
#include "ui/windows/rating_window.h"

namespace reelvane {
namespace {

class AuxiliaryWindowsTest : public UiFixture {
protected:
    AuxiliaryWindowsTest() : windows_(context(), mainWindow_) {}

    template <typename Window>
    [[nodiscard]] QList<Window*> open() const {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QList<Window*> found;
        for (auto* const child : mainWindow_.children()) {
            if (auto* const window = dynamic_cast<Window*>(child)) found.append(window);
        }
        return found;
    }
    [[nodiscard]] static QPushButton* button(QWidget& window, const QString& text) {
        auto* const named = partNamed<QPushButton>(window, text);
        if (named == nullptr) ADD_FAILURE() << "no button " << text.toStdString();
        return named;
    }
    RatingWindow& rating() {
        windows_.openRating();
        return *open<RatingWindow>().front();
    }

    QWidget mainWindow_;
    AuxiliaryWindows windows_;
};

}  // namespace

TEST_F(AuxiliaryWindowsTest, ThereIsOneRatingWindowUntilItIsClosed) {
    const UsageCounter::Request prompt{.feedbackText = [] { return "Hello [APPNAME]"; },
                                       .allowFeedbackNow = true,
                                       .forceFeedbackNow = true};
    app_->lifecycle().usages().increaseUsages(prompt);
    app_->lifecycle().usages().increaseUsages(prompt);
    ASSERT_EQ(open<RatingWindow>().size(), 1);
    button(*open<RatingWindow>().front(), "I Am Not Sure Yet")->click();
    app_->lifecycle().usages().increaseUsages(prompt);  // before the closed one is deleted
    EXPECT_EQ(open<RatingWindow>().size(), 1);
    EXPECT_TRUE(open<RatingWindow>().front()->isVisible());
}

TEST_F(AuxiliaryWindowsTest, AHappyUserMayRateWhereThereIsAPage) {
    EXPECT_FALSE(button(rating(), "Rate in the Store")->isEnabled());
    EXPECT_FALSE(button(rating(), "Rate on a Download Site")->isEnabled());
    rating().close();
    platform_.mainBundle.info["StoreProductPage"] = "https://store.example/reelvane";
    EXPECT_FALSE(button(rating(), "Rate on a Download Site")->isVisible());
    button(rating(), "It Works Well for Me")->click();
    EXPECT_TRUE(button(rating(), "Rate on a Download Site")->isVisible());
    EXPECT_FALSE(button(rating(), "Rate on a Download Site")->isEnabled());
    button(rating(), "Rate in the Store")->click();
    EXPECT_THAT(platform_.workspace.urls, ElementsAre("macappstore://store.example/reelvane"));
    EXPECT_TRUE(open<RatingWindow>().empty());
}

TEST_F(AuxiliaryWindowsTest, AnUnhappyUserMayWriteAMail) {
    button(rating(), "I Have a Problem")->click();
    auto* const field = rating().findChild<QPlainTextEdit*>();
    ASSERT_TRUE(field->isVisible());
    EXPECT_EQ(nameless(rating()), QStringList());
    field->setPlainText("Picture & no sound");
    rating().reject();
    button(rating(), "I Have a Problem")->click();  // what was written is still there
    button(rating(), "Write the Mail…")->click();
    EXPECT_THAT(
        platform_.workspace.urls,
        ElementsAre(AllOf(StartsWith("mailto:"), HasSubstr("body=Picture%20%26%20no%20sound%0A"))));
    EXPECT_TRUE(open<RatingWindow>().empty());
    platform_.folder.write("config/org.reelvane.Reelvane/org.reelvane.Reelvane.ini", "stored");
    for (const bool attached : {false, true}) {
        button(rating(), "I Have a Problem")->click();
        rating().findChild<QCheckBox*>()->setChecked(attached);
        button(rating(), "Write the Mail…")->click();
        EXPECT_EQ(platform_.workspace.urls.back().find("c3RvcmVk") != std::string::npos, attached);
    }
}

TEST_F(AuxiliaryWindowsTest, ThePromptIsTurnedOffOnlyByTheSecondButton) {
    for (const auto answer : {kFirstButton, kSecondButton}) {
        platform_.alerts.answers = {{.button = answer}};
        button(rating(), "Do Not Ask Again…")->click();
        EXPECT_EQ(platform_.preferences.defaultInt("vantor_dontaskagain"),
                  answer == kSecondButton ? 1 : 0);
        EXPECT_TRUE(open<RatingWindow>().empty());
    }
    EXPECT_THAT(platform_.alerts.shown.back().buttons,
                ElementsAre("Cancel", "Turn off feedback dialoge"));
}

TEST_F(AuxiliaryWindowsTest, AboutTellsTheVersionOfFfmpegOrWhatToDoAboutIt) {
    using Case = std::tuple<LaunchError, std::string, int, std::string>;
    for (const auto& [error, output, status, expected] : std::vector<Case>{
             {LaunchError::None, "ffmpeg version 5.1.9-0+deb12u1 Copyright (c)\nbuilt", 0,
              "ffmpeg: 5.1.9-0+deb12u1\n"},
             {LaunchError::None, "ffmpeg version n7.0\nbuilt", 1, "does not run as ffmpeg"},
             {LaunchError::None, "sh: 1: no", 0, "does not run as ffmpeg"},
             {LaunchError::NotFound, "", 0, "is missing. Install it with"}}) {
        platform_.processLauncher.nextError = error;
        windows_.openAbout();
        if (error == LaunchError::None) {
            platform_.processLauncher.children.back().print(output.substr(0, 9));
            platform_.processLauncher.children.back().exit(status, output.substr(9));
        }
        auto* const about = open<AboutDialog>().front();
        EXPECT_EQ(nameless(*about), QStringList());
        button(*about, "Copy")->click();
        EXPECT_THAT(QGuiApplication::clipboard()->text().toStdString(),
                    AllOf(StartsWith("Reelvane\n"), HasSubstr("1.2"), HasSubstr(expected)));
        about->close();
    }
    platform_.processLauncher.nextError = LaunchError::None;
    windows_.openAbout();
    open<AboutDialog>().front()->close();
    EXPECT_TRUE(open<AboutDialog>().empty());
    EXPECT_EQ(platform_.processLauncher.children.back().listener, nullptr) << "asked too late";
}

}  // namespace reelvane
