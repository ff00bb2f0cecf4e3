#include "ui/sheet/file_sheet.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include "tests/ui/names.h"
#include "tests/ui/ui_fixture.h"
#include "ui/widgets/labels.h"

namespace reelvane {
namespace {

/// The sheet above a field to type in and a list, which has the keyboard.
class FileSheetTest : public UiFixture {
protected:
    FileSheetTest() {
        auto* const column = new QVBoxLayout(&window_);
        for (QWidget* const row : {static_cast<QWidget*>(sheet_), static_cast<QWidget*>(field_),
                                   static_cast<QWidget*>(list_)}) {
            column->addWidget(row);
        }
        window_.show();
        list_->setFocus();
    }
    void openAndSettle(const std::vector<fs::path>& files) {
        open(files);
        QCoreApplication::processEvents();
    }
    void press(Qt::Key key) {
        QTest::keyClick(window_.focusWidget(), key);
        platform_.dispatcher.runPending();
        QCoreApplication::processEvents();
    }
    [[nodiscard]] bool shows(const char* text) const {
        return std::ranges::any_of(sheet_->findChildren<ElidedLabel*>(), [text](const auto* label) {
            return label->isVisible() && label->text() == text;
        });
    }
    [[nodiscard]] QPushButton* focusedButton() const {
        return qobject_cast<QPushButton*>(window_.focusWidget());
    }

    QWidget window_;
    FileSheet* sheet_ = new FileSheet(context(), &window_);
    QLineEdit* field_ = new QLineEdit(&window_);
    QListWidget* list_ = new QListWidget(&window_);
};

TEST_F(FileSheetTest, AsksHowASubtitleFileIsWrittenAndCanLeaveItOut) {
    const std::string cue = "1\n00:00:01,000 --> 00:00:02,000\n";
    openAndSettle(
        {movie("a.mkv"), movie("b.mkv"),
         platform_.folder.write("a.srt", cue + "l'\x82t\x82 \x85 la\nO\x97 \x88tes-vous\n"),
         platform_.folder.write("b.srt", cue + "J'ai d\xE9j\xE0 mang\xE9, merci.\n")});
    auto* const encodings =
        qobject_cast<QComboBox*>(partNamed<QLabel>(*sheet_, "Encoding of the subtitles:")->buddy());
    EXPECT_EQ(window_.focusWidget(), encodings) << "this comes first";
    EXPECT_TRUE(shows("with subtitles a.srt") && shows("l'‚t‚ … la\nO— ˆtes-vous"));
    encodings->setCurrentIndex(encodings->findData("CP850"));
    Q_EMIT encodings->activated(encodings->currentIndex());
    EXPECT_TRUE(shows("with subtitles a.srt (CP850)") && shows("l'été à la\nOù êtes-vous"));
    press(Qt::Key_Return);
    EXPECT_TRUE(shows("with subtitles b.srt (CP1252)"));
    EXPECT_FALSE(encodings->isVisible());
    partNamed<QPushButton>(*sheet_, "Leave Out")->click();
    EXPECT_FALSE(shows("with subtitles b.srt (CP1252)"));
    EXPECT_NE(focusedButton(), nullptr) << "the keyboard stays in the sheet";
    press(Qt::Key_Return);
    ASSERT_THAT(rows(), ElementsAre("b.mkv", "a.mkv"));
    EXPECT_FALSE(job(0).fileInfo().subtitleFileURL);
}

TEST_F(FileSheetTest, AddsAndLeavesFilesByTheKeyboardAndGivesItBack) {
    EXPECT_TRUE(sheet_->isHidden());
    openAndSettle({movie("a.mkv"), movie("b.mkv"), movie("c.mkv"),
                   platform_.folder.write("a.en.srt", "1\n00:00:01,000 --> 00:00:02,000\nHi\n")});
    EXPECT_GE(sheet_->height(), sheetHeight(IntakeState::AwaitingUser));
    EXPECT_EQ(focusedButton()->text(), "Start Conversion");
    EXPECT_TRUE(shows("with subtitles a.en.srt") && shows("2 more waiting"));
    partNamed<QComboBox>(*sheet_, "Audio track")->setFocus();
    press(Qt::Key_Return);
    EXPECT_THAT(rows(), ElementsAre("a.mkv"));
    EXPECT_TRUE(shows("b.mkv"));
    press(Qt::Key_Escape);
    EXPECT_TRUE(shows("c.mkv"));
    press(Qt::Key_Backtab);
    EXPECT_EQ(focusedButton()->text(), "Cancel");
    press(Qt::Key_Return);
    EXPECT_THAT(rows(), ElementsAre("a.mkv")) << "Return means the button that has the keyboard";
    EXPECT_TRUE(sheet_->isHidden());
    EXPECT_EQ(window_.focusWidget(), list_);
}

TEST_F(FileSheetTest, EscapeLeavesAnOpenMenuBeforeItLeavesTheMovie) {
    openAndSettle({movie("a.mkv")});
    auto* const audio = partNamed<QComboBox>(*sheet_, "Audio track");
    window_.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window_));
    audio->showPopup();
    ASSERT_TRUE(audio->view()->isVisible());
    QTest::keyClick(audio->view(), Qt::Key_Escape);
    EXPECT_FALSE(audio->view()->isVisible());
    EXPECT_TRUE(app_->intake().isBusy()) << "the movie is thrown away";
    press(Qt::Key_Escape);
    EXPECT_FALSE(app_->intake().isBusy());
}

TEST_F(FileSheetTest, LeavesTheKeyboardToWhoTypes) {
    field_->setFocus();
    openAndSettle({movie("a.mkv")});
    EXPECT_EQ(window_.focusWidget(), field_);
    list_->setFocus();
    app_->intake().cancelAdd();
    openAndSettle({movie("b.mkv")});
    list_->hide();  // what had it goes with the list
    app_->intake().cancelAdd();
    EXPECT_EQ(window_.focusWidget(), field_);
}

TEST_F(FileSheetTest, ShowsTheFileWhileItIsReadAndSaysWhenItIsMute) {
    report_ = report_.substr(0, report_.find("    Stream #0:1"));
    app_->intake().openFiles({movie("a.mkv")});
    EXPECT_TRUE(shows("a.mkv") && shows("Looking into the file…"));
    EXPECT_TRUE(partNamed<QPushButton>(*sheet_, "Cancel")->isEnabled())
        << "a disk that does not answer may be left";
    EXPECT_FALSE(partNamed<QPushButton>(*sheet_, "Start Conversion")->isEnabled());
    platform_.dispatcher.runPending();
    EXPECT_FALSE(shows("Looking into the file…"));
    const auto* const audio = partNamed<QComboBox>(*sheet_, "Audio track");
    EXPECT_EQ(audio->placeholderText(), "No audio");
    EXPECT_EQ(partNamed<QComboBox>(*sheet_, "Destination")->currentText(),
              "Next to the Source File");
}

TEST_F(FileSheetTest, TurnsRoundOnItsWay) {
    appearance_.still = false;
    open({movie("a.mkv")});
    ASSERT_TRUE(QTest::qWaitFor([this] { return sheet_->height() > 0; }));
    const int reached = sheet_->height();
    app_->intake().cancelAdd();
    EXPECT_EQ(sheet_->height(), reached);
    EXPECT_TRUE(QTest::qWaitFor([this] { return sheet_->isHidden(); }));
}

}  // namespace
}  // namespace reelvane
