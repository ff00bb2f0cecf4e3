#include "ui/windows/main_window.h"

#include <QAction>
#include <QListView>
#include <QPushButton>
#include <QStackedWidget>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

#include "tests/ui/names.h"
#include "tests/ui/ui_fixture.h"
#include "ui/jobs/poster_view.h"

namespace reelvane {
namespace {

class NoPosters final : public PosterFrames {
public:
    [[nodiscard]] Subscription request(const fs::path& /*movie*/, Arrived /*arrived*/) override {
        return {};
    }
    [[nodiscard]] QImage cached(const fs::path& /*movie*/) const override { return {}; }
};

struct MainWindowShown : UiFixture {
    MainWindowShown() {
        set(kAutoAdd.key, 1);
        window.show();
    }
    [[nodiscard]] QAction* command(const QKeySequence& shortcut) const {
        for (auto* const action : window.findChildren<QAction*>()) {
            if (action->shortcut() == shortcut) return action;
        }
        return nullptr;
    }
    [[nodiscard]] bool showsList() const {
        const auto* const pages = window.findChild<QStackedWidget*>();
        return qobject_cast<QListView*>(pages->currentWidget()) != nullptr;
    }

    NoPosters posters;
    int quits = 0;
    MainWindow window{context(), posters, [this] { ++quits; }};
};

TEST_F(MainWindowShown, FollowsTheQueueFromTheInvitationToTheListAndBack) {
    EXPECT_FALSE(showsList());
    add({movie("a.mkv"), movie("b.mkv")});
    EXPECT_TRUE(showsList());
    EXPECT_EQ(window.windowTitle(), "Reelvane  [2 Job(s), 1 Queued]");

    auto* const pause = command(Qt::CTRL | Qt::Key_P);
    ASSERT_NE(pause, nullptr);
    pause->trigger();
    EXPECT_EQ(pause->text(), "Resume Queue");
    EXPECT_EQ(window.windowTitle(), "Reelvane (Paused) [2 Job(s), 1 Queued]");
    app_->applicationWillTerminate();
    EXPECT_FALSE(showsList());
}

TEST_F(MainWindowShown, AMovieCanBeAddedToAPausedQueueThatIsStillEmpty) {
    set(kAutoAdd.key, 0);
    open({movie("a.mkv")});
    const auto* const pause = command(Qt::CTRL | Qt::Key_P);
    EXPECT_TRUE(pause->isEnabled());
    app_->intake().cancelAdd();
    EXPECT_FALSE(pause->isEnabled());
}

TEST_F(MainWindowShown, ClosingAsksWhileAConversionRunsAndRemembersTheFrame) {
    add({movie("a.mkv")});
    platform_.alerts.answers = {{.button = kSecondButton}, {.button = kFirstButton}};
    window.resize(701, 503);
    EXPECT_FALSE(window.close());
    EXPECT_EQ(lastAlert(), "Conversion is in progresss. Are you sure you want to quit?");
    EXPECT_EQ(quits, 0);
    EXPECT_TRUE(window.close());
    EXPECT_EQ(quits, 1);
    platform_.dispatcher.runPending();
    const MainWindow again(context(), posters, [] {});
    EXPECT_EQ(again.size(), QSize(701, 503));
}

TEST_F(MainWindowShown, TheKeyboardReachesTheCommandsAndTheyNeverGoOutOfSight) {
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    EXPECT_EQ(qobject_cast<QPushButton*>(window.focusWidget())->text(), "Add Movies…");
    for (const auto key : {Qt::Key_P, Qt::Key_L, Qt::Key_Z}) {
        EXPECT_FALSE(command(Qt::CTRL | key)->isEnabled()) << "there is nothing to do it to";
    }
    add({movie("a.mkv"), movie("b.mkv")});
    finish(0);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.focusWidget(), window.findChild<QStackedWidget*>()->currentWidget());
    const auto* const bar = window.findChild<QToolBar*>();
    const auto buttons = bar->findChildren<QToolButton*>(QString(), Qt::FindDirectChildrenOnly);
    QStringList reached;
    for (int i = 0; i < 20 && reached.size() < 4; ++i) {
        QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
        if (!bar->isAncestorOf(window.focusWidget())) continue;
        reached << qobject_cast<QToolButton*>(window.focusWidget())->text();
    }
    EXPECT_EQ(reached, QStringList({"Add", "Pause Queue", "Clean Up", "Preferences"}));
    QTest::keyClick(window.focusWidget(), Qt::Key_Backtab);
    QTest::keyClick(window.focusWidget(), Qt::Key_Backtab);
    for (const auto key : {Qt::Key_Return, Qt::Key_Space}) {
        const bool before = app_->queueControl().paused();
        QTest::keyClick(window.focusWidget(), key);
        EXPECT_EQ(app_->queueControl().paused(), !before);
    }
    for (const int width : {1200, 1, 1200}) {
        window.resize(width, 500);
        QCoreApplication::processEvents();
        for (auto* const button : buttons) {
            const bool isExtension = button->defaultAction() == nullptr;
            EXPECT_EQ(button->isVisible(), !isExtension) << width;
        }
    }
    EXPECT_EQ(window.contextMenuPolicy(), Qt::NoContextMenu) << "it would offer to hide the bar";
}

TEST_F(MainWindowShown, ABarOffersTheWayBackFromARemovalAndGivesTheKeyboardToTheList) {
    const auto button = [this](const char* text) -> QPushButton* {
        auto* const named = partNamed<QPushButton>(window, text);
        return named != nullptr && named->isVisible() ? named : nullptr;
    };
    add({movie("a.mkv"), movie("b.mkv")});
    app_->queueControl().removeJobs({app_->queue().taskArray().back().get()});
    settle();
    ASSERT_NE(button("Undo"), nullptr);
    EXPECT_THAT(button("Undo")->accessibleDescription().toStdString(),
                HasSubstr("“a.mkv” was removed; what was converted of it"));
    button("Undo")->setFocus();
    button("Undo")->click();
    EXPECT_EQ(button("Undo"), nullptr);
    EXPECT_EQ(window.focusWidget(), window.findChild<QStackedWidget*>()->currentWidget());
    EXPECT_THAT(rows(), ElementsAre("b.mkv", "a.mkv"));

    app_->queueControl().removeJobs({app_->queue().taskArray().back().get()});
    settle();
    command(QKeySequence::Undo)->trigger();
    EXPECT_EQ(rows().size(), 2U);
    add({movie("c.mkv")});
    fs::remove(platform_.folder.path() / "c.mkv");
    EXPECT_EQ(button("Start Queue"), nullptr);
    fail(1);
    ASSERT_NE(button("Start Queue"), nullptr) << "the movie that was next has vanished";
    button("Start Queue")->click();
    settle();
    EXPECT_EQ(button("Start Queue"), nullptr);
}

TEST_F(MainWindowShown, EverythingInItHasAName) {
    EXPECT_EQ(nameless(window), QStringList());
    set(kAutoAdd.key, 0);
    open({movie("a.mkv")});
    app_->intake().addToQueue();
    open({movie("b.mkv")});
    EXPECT_EQ(nameless(window), QStringList());
}

TEST_F(MainWindowShown, ThePicturesOfTheCommandsGrowWithTheLetters) {
    auto* const bar = window.findChild<QToolBar*>();
    const auto before = bar->iconSize();
    auto large = bar->font();
    large.setPointSize(40);
    bar->setFont(large);
    EXPECT_GT(bar->iconSize().height(), before.height());
    EXPECT_GE(bar->iconSize().height(), bar->fontMetrics().height());
}

}  // namespace
}  // namespace reelvane
