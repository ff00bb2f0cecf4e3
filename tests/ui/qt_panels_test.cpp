#include "ui/windows/qt_panels.h"

#include <gmock/gmock.h>
#include <memory>

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <QTimer>

#include "tests/fakes/fake_dispatcher.h"
#include "tests/fakes/temporary_folder.h"
#include "tests/ui/names.h"
#include "ui/widgets/qt_text.h"

namespace reelvane {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class QtPanelsTest : public testing::Test {
protected:
    QtPanelsTest() {
        // File dialogs remember themselves there.
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           displayPath(folder_.path()));
        window_->show();
        panels_.setParent(PanelParent::MainWindow, window_.get());
    }

    void open(const std::string& below = "") {
        panels_.open({.allowedTypes = {"mkv"}, .folder = folder_.path() / below},
                     [this](auto paths) { answers_.push_back(std::move(paths)); });
    }
    void save(const std::string& name) {
        panels_.save({.folder = folder_.path(), .fileName = name, .extension = "mp4"},
                     [this](const auto& path) {
                         answers_.push_back(path ? std::vector{*path} : std::vector<fs::path>());
                     });
    }
    [[nodiscard]] FilePanel* panel() {
        dispatcher_.runPending();  // it is shown when its folder has been found
        for (auto* const widget : QApplication::topLevelWidgets()) {
            auto* const found = dynamic_cast<FilePanel*>(widget);
            if (found != nullptr && found->isVisible()) return found;
        }
        return nullptr;
    }
    void accept() { QMetaObject::invokeMethod(panel(), "accept"); }
    /// The panel asks something more, which is answered.
    void acceptAnd(QMessageBox::StandardButton button) {
        QTimer::singleShot(0, [button] {
            auto* const asked = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(asked, nullptr);
            asked->button(button)->click();
        });
        accept();
    }
    void waitForAnswers(std::size_t count) {
        dispatcher_.runPending();
        ASSERT_TRUE(QTest::qWaitFor([&] { return answers_.size() >= count; }));
        QApplication::processEvents();  // a second answer would come now
        ASSERT_EQ(answers_.size(), count);
    }

    TemporaryFolder folder_;
    std::unique_ptr<QWidget> window_ = std::make_unique<QWidget>();
    FakeDispatcher dispatcher_;
    QtPanels panels_{dispatcher_};
    std::vector<std::vector<fs::path>> answers_;
};

}  // namespace

TEST_F(QtPanelsTest, AnswersWhatWasChosenByteForByteAndOnce) {
    const auto file = folder_.write("dir \xC3\xBC #1 100% %20?.mkv");
    open();
    panel()->selectFile(displayPath(file));
    accept();
    waitForAnswers(1);
    EXPECT_THAT(answers_.front(), ElementsAre(file));
}

TEST_F(QtPanelsTest, IsCancelledWithItsWindowAndByTheUser) {
    open();
    panel()->reject();
    waitForAnswers(1);
    open();
    window_->hide();  // before the panel is there
    waitForAnswers(2);
    EXPECT_EQ(panel(), nullptr);
    window_->show();
    save("a.mp4");
    ASSERT_NE(panel(), nullptr);
    window_.reset();
    waitForAnswers(3);
    EXPECT_THAT(answers_, testing::Each(IsEmpty()));
}

TEST_F(QtPanelsTest, ASecondRequestWaitsForTheFirst) {
    open();
    save("b.mp4");
    panel()->reject();
    waitForAnswers(1);
    accept();
    waitForAnswers(2);
    EXPECT_THAT(answers_, ElementsAre(IsEmpty(), ElementsAre(folder_.path() / "b.mp4")));
}

TEST_F(QtPanelsTest, ANameWithoutItsExtensionGetsItBeforeTheQuestionWhetherToReplace) {
    const auto target = folder_.write("My.Movie.mp4");
    save("Movie.mp4");
    EXPECT_EQ(panel()->findChild<QLineEdit*>("fileNameEdit")->selectedText(), "Movie");
    panel()->findChild<QLineEdit*>("fileNameEdit")->setText("My.Movie");
    acceptAnd(QMessageBox::No);
    EXPECT_NE(panel(), nullptr);
    acceptAnd(QMessageBox::Yes);
    waitForAnswers(1);
    EXPECT_THAT(answers_.front(), ElementsAre(target));
}

TEST_F(QtPanelsTest, WhatADesktopsPanelDidNotAskIsAskedAndThePanelComesBackUnlessTheUserAgrees) {
    const auto target = folder_.write("Movie.mp4");
    const auto chooseAnd = [this](const char* button) {
        panel()->selectFile("Movie");
        QMetaObject::invokeMethod(panel(), "done", Q_ARG(int, QDialog::Accepted));
        QTimer::singleShot(0, [button] {
            auto* const box = QApplication::activeModalWidget();
            ASSERT_NE(box, nullptr);
            EXPECT_FALSE(partNamed<QPushButton>(*box, "Replace")->isDefault());
            partNamed<QPushButton>(*box, button)->click();
        });
        dispatcher_.runPending();
    };
    save("Film.mp4");
    chooseAnd("Cancel");
    ASSERT_NE(panel(), nullptr);
    EXPECT_EQ(panel()->selectedFiles(), QStringList(displayPath(target)));
    EXPECT_THAT(answers_, IsEmpty());
    chooseAnd("Replace");
    waitForAnswers(1);
    EXPECT_THAT(answers_.front(), ElementsAre(target));
}

TEST_F(QtPanelsTest, StartsInWhatIsLeftOfItsFolderAndAtHomeWhereTheDiskIsSilent) {
    open("gone/since");
    EXPECT_EQ(panel()->directory().path(), displayPath(folder_.path()));
    panel()->reject();
    waitForAnswers(1);
    dispatcher_.isSilent = true;
    open();
    EXPECT_EQ(panel(), nullptr);
    dispatcher_.advance(std::chrono::seconds(3));
    EXPECT_EQ(panel()->directory(), QDir::home());
}

TEST(FilePanel, OffersEveryTypeInWhateverCase) {
    const QDir::Filters any = QDir::Files;
    const TemporaryFolder folder;
    for (const auto* const name : {"a.mkv", "b.MkV", "c.MP4", "d.doc"}) folder.write(name);
    const auto filter = nameFilter("Movies", {"mkv", "mp4"});
    const auto patterns = filter.section('(', 1).chopped(1).split(' ');
    EXPECT_EQ(
        QDir(displayPath(folder.path())).entryList(patterns, any | QDir::CaseSensitive).size(), 3);
}

TEST(FilePanel, AnExtensionIsAddedOnce) {
    for (const auto* const name : {"/a/x.mp4", "/a/x.mkv.mp4", "/a/.mp4.mp4"}) {
        EXPECT_EQ(withExtension(name, "mp4"), name);
        EXPECT_EQ(withExtension(fs::path(name).replace_extension(), "mp4"), name);
    }
    EXPECT_EQ(withExtension("/a/x.MP4", "mp4"), "/a/x.MP4");
    EXPECT_EQ(withExtension("/a/x.y.mp4", "m4v"), "/a/x.y.m4v");
}

}  // namespace reelvane
