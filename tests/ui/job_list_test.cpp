#include <random>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>

#include "tests/ui/names.h"
#include "tests/ui/ui_fixture.h"
#include "ui/jobs/details_popover.h"
#include "ui/jobs/job_list_model.h"
#include "ui/jobs/job_list_view.h"
#include "ui/jobs/poster_view.h"

namespace reelvane {
namespace {

/// Never finds a poster, and counts who waits for one.
class WantedPosters final : public PosterFrames {
public:
    [[nodiscard]] Subscription request(const fs::path& /*movie*/, Arrived /*arrived*/) override {
        ++wanted;
        return Subscription([this] { --wanted; });
    }
    [[nodiscard]] QImage cached(const fs::path& /*movie*/) const override { return {}; }

    int wanted = 0;
};

struct JobList : UiFixture {
    JobList() {
        set(kAutoAdd.key, 1);
        set(kInsertJobsAtBottom.key, 1);
        view.resize(600, 400);
        view.show();
        view.activateWindow();
        view.setFocus();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
    }

    JobQueue& queue() { return app_->queue(); }
    ConversionJob& jobAt(std::size_t row) { return *queue().taskArray().at(row); }
    /// A job of a movie that is not there, past all that adding does.
    ConversionJob& insert(JobQueue::InsertAt where = JobQueue::InsertAt::Bottom) {
        const auto name = std::to_string(++made_) + ".mkv";
        MKVFileInfo record{.fileName = name, .fileURL = platform_.folder.path() / name};
        return queue().insertJob(std::make_unique<ConversionJob>(platform_.vantor, app_->jobOwner(),
                                                                 std::move(record), 0),
                                 where);
    }
    JobRow* row(std::size_t number) {
        QApplication::processEvents();
        return view.rowOf(view.model()->index(static_cast<int>(number), 0));
    }
    void select(std::initializer_list<int> rows) {
        view.clearSelection();
        for (const int number : rows) {
            view.selectionModel()->setCurrentIndex(view.model()->index(number, 0),
                                                   QItemSelectionModel::Select);
        }
    }
    /// What the row offers to the mouse, by its spoken names; "-" marks what is disabled.
    std::vector<std::string> offered(std::size_t number) {
        std::vector<std::string> names;
        for (const auto* const button : row(number)->findChildren<QToolButton*>()) {
            if (!button->isVisible()) continue;
            names.push_back((button->isEnabled() ? "" : "-") +
                            button->accessibleName().toStdString());
        }
        return names;
    }
    QToolButton* button(std::size_t number, const QString& spoken) {
        return partNamed<QToolButton>(*row(number), spoken);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    /// Each visible part of the list shows its own job, and nothing else is shown.
    void expectRowsInPlace() {
        QApplication::processEvents();
        const int count = view.model()->rowCount();
        ASSERT_EQ(static_cast<std::size_t>(count), queue().taskArray().size());
        std::size_t visible = 0;
        for (int number = 0; number < count; ++number) {
            const auto place = view.visualRect(view.model()->index(number, 0));
            auto* const shown = view.rows().rowOf(jobAt(static_cast<std::size_t>(number)));
            const bool inSight = place.intersects(view.viewport()->rect());
            ASSERT_EQ(shown != nullptr && shown->isVisible(), inSight) << number;
            if (!inSight) continue;
            ++visible;
            EXPECT_EQ(shown->geometry(), place) << number;
            EXPECT_NE(partNamed<QLabel>(*shown, toQString(shown->job()->fileInfo().fileName)),
                      nullptr);
        }
        EXPECT_EQ(view.rows().rows().size(), visible);
        EXPECT_EQ(posters.wanted, static_cast<int>(visible));  // nobody else waits for one
    }

    WantedPosters posters;
    JobListView view{context(), posters};
    int made_ = 0;
};

TEST_F(JobList, FollowsWhoComesAndGoesWhereverItIsScrolled) {
    const QAbstractItemModelTester tester(view.model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    std::mt19937 random(1);
    for (int step = 0; step < 300; ++step) {
        const auto size = queue().taskArray().size();
        if (size == 0 || random() % 5 < 3) {
            insert(random() % 2 == 0 ? JobQueue::InsertAt::Top : JobQueue::InsertAt::Bottom);
        } else {
            const auto gone = queue().takeJob(jobAt(random() % size));
            EXPECT_EQ(view.rows().rowOf(*gone), nullptr);
        }
        if (step % 7 == 0) view.verticalScrollBar()->setValue(static_cast<int>(random() % 4000));
        if (step % 3 == 0) expectRowsInPlace();
    }
}

TEST_F(JobList, ShowsTenThousandJobsByAHandfulOfRows) {
    for (int i = 0; i < 10000; ++i) insert();
    auto& bar = *view.verticalScrollBar();
    QApplication::processEvents();
    for (const int value : {0, 40, bar.maximum() / 2, bar.maximum(), 17}) {
        bar.setValue(value);
        QApplication::processEvents();
        const int top = value / view.rows().rowHeight();
        ASSERT_NE(row(static_cast<std::size_t>(top)), nullptr);
        EXPECT_EQ(row(static_cast<std::size_t>(top))->job(), &jobAt(static_cast<std::size_t>(top)));
    }
    EXPECT_LE(view.findChildren<QToolButton*>().size(), 20 * 4);

    // Who reads somewhere in the middle goes on reading there.
    bar.setValue(bar.maximum() / 2);
    auto& read = *view.rows().rows().front()->job();
    const int before = view.rows().rowOf(read)->y();
    const auto selected = view.selectedCount();
    for (int i = 0; i < 3; ++i) insert(JobQueue::InsertAt::Top);
    EXPECT_NE(queue().takeJob(jobAt(1)), nullptr);
    QApplication::processEvents();
    ASSERT_NE(view.rows().rowOf(read), nullptr);
    EXPECT_EQ(view.rows().rowOf(read)->y(), before);
    EXPECT_EQ(view.selectedCount(), selected);

    app_->queueControl().togglePause();  // the movies are not there to be converted
    bar.setValue(0);
    view.selectionModel()->select({view.model()->index(0, 0), view.model()->index(499, 0)},
                                  QItemSelectionModel::Select);
    const auto& next = jobAt(500);
    press(Qt::Key_Delete);
    settle();
    EXPECT_EQ(&jobAt(0), &next);
    EXPECT_EQ(view.currentJob(), &next);
}

TEST_F(JobList, OffersWhatAJobsStateAllows) {
    add({movie("a.mkv"), movie("b.mkv"), movie("c.mkv")});
    finish(0);
    fail(1);
    EXPECT_THAT(offered(0), ElementsAre("Details of a.mkv", "Remove a.mkv", "Show a.mkv in Files"));
    EXPECT_THAT(offered(1),
                ElementsAre("Details of b.mkv", "Remove b.mkv", "Explain the failure of b.mkv"));
    EXPECT_THAT(offered(2), ElementsAre("Pause c.mkv", "Details of c.mkv", "Remove c.mkv",
                                        "Show c.mkv in Files"));
    add({movie("d.mkv")});
    EXPECT_THAT(offered(3), ElementsAre("-Start d.mkv", "Details of d.mkv", "Remove d.mkv"));
    button(2, "Pause c.mkv")->click();
    EXPECT_THAT(offered(2), ElementsAre("Continue c.mkv", "Details of c.mkv", "Remove c.mkv"));
    EXPECT_THAT(offered(3), Contains("Start d.mkv"));  // nothing converts any more
    button(3, "Start d.mkv")->click();
    settle();
    EXPECT_EQ(jobAt(3).state(), ConversionJobState::Converting);
    EXPECT_THAT(offered(2), Contains("-Continue c.mkv"));
    button(0, "Show a.mkv in Files")->click();
    EXPECT_THAT(platform_.workspace.revealed, ElementsAre(jobAt(0).fileInfo().destinationURL));
}

TEST_F(JobList, IsWorkedByItsKeys) {
    add({movie("a.mkv"), movie("b.mkv"), movie("c.mkv"), movie("d.mkv")});
    QTest::mouseClick(partNamed<QLabel>(*row(0), "a.mkv"), Qt::LeftButton);
    ASSERT_EQ(view.currentJob(), &jobAt(0)) << "the row's texts keep the mouse from the list";
    press(Qt::Key_Space);
    EXPECT_EQ(jobAt(0).state(), ConversionJobState::Paused);
    press(Qt::Key_Space);
    EXPECT_EQ(jobAt(0).state(), ConversionJobState::Converting);
    press(Qt::Key_Return);
    EXPECT_EQ(platform_.workspace.revealed.size(), 1U);
    app_->intake().openFiles({movie("e.mkv")});
    press(Qt::Key_Return);
    EXPECT_EQ(platform_.workspace.revealed.size(), 1U) << "it was meant for the movie being read";
    app_->intake().cancelAdd();

    // The tab key goes through the buttons of the current row only, and then on.
    std::vector<std::string> stations;
    for (int i = 0; i < 4; ++i) {
        press(Qt::Key_Tab);
        stations.push_back(QApplication::focusWidget()->accessibleName().toStdString());
    }
    EXPECT_THAT(stations, ElementsAre("Pause a.mkv", "Details of a.mkv", "Remove a.mkv",
                                      "Show a.mkv in Files"));
    press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &view);

    select({0, 1, 2});
    press(Qt::Key_Delete);
    settle();
    ASSERT_EQ(rows().size(), 1U);
    EXPECT_EQ(platform_.processLauncher.children.size(), 2U) << "one was started to be removed";
    EXPECT_EQ(view.currentJob(), &jobAt(0));
    EXPECT_EQ(view.selectedCount(), 1);
    app_->queueControl().undoRemoval();
    EXPECT_THAT(rows(), ElementsAre("a.mkv", "b.mkv", "c.mkv", "d.mkv"));
    button(0, "Remove a.mkv")->click();
    EXPECT_TRUE(app_->queueControl().undoableRemoval().get());
    app_->queueControl().undoRemoval();
    select({0, 1, 2, 3});
    const auto actions = view.jobActions();
    const auto* const selectAll = *std::ranges::find(actions, "Select All", &QAction::text);
    EXPECT_TRUE(selectAll->isEnabled());
    press(Qt::Key_Delete);
    settle();
    EXPECT_THAT(rows(), IsEmpty());
    EXPECT_FALSE(selectAll->isEnabled());
    EXPECT_THAT(platform_.alerts.shown, IsEmpty()) << "there is a way back instead";
}

TEST_F(JobList, InANarrowRowThePictureGivesWayToTheWords) {
    insert();
    for (const auto& [width, isShown] : {std::pair(280, false), std::pair(900, true)}) {
        view.resize(width, view.height());
        const auto* const name = partNamed<QLabel>(*row(0), "1.mkv");
        const auto parts = row(0)->findChildren<QWidget*>();
        const auto found = std::ranges::find_if(parts, [](const auto* part) {
            return dynamic_cast<const PosterView*>(part) != nullptr;
        });
        ASSERT_TRUE(name != nullptr && found != parts.end());
        const auto* const poster = *found;
        EXPECT_EQ(poster->isVisible(), isShown);
        EXPECT_FALSE(poster->isVisible() && poster->geometry().intersects(name->geometry()));
        EXPECT_LE(name->geometry().right(), button(0, "Details of 1.mkv")->x());
    }
}

TEST_F(JobList, LetsGoOfAJobThatLeavesUnderTheUsersHands) {
    add({movie("a.mkv"), movie("b.mkv"), movie("c.mkv")});
    const auto remove = [this] {
        jobAt(0).remove();
        platform_.dispatcher.runPending();  // it is destroyed
        QApplication::processEvents();
    };
    select({0});
    button(0, "Remove a.mkv")->setFocus();
    ASSERT_TRUE(button(0, "Remove a.mkv")->hasFocus());
    remove();
    EXPECT_EQ(QApplication::focusWidget(), &view);

    select({0});
    QContextMenuEvent open(QContextMenuEvent::Keyboard, {}, {});
    QApplication::sendEvent(view.viewport(), &open);
    auto* const menu = view.findChild<QMenu*>();
    ASSERT_TRUE(menu->isVisible());
    remove();
    EXPECT_FALSE(menu->isVisible()) << "it would act upon another job";

    select({0});
    view.activateWindow();  // no window manager gives it the keyboard back
    view.setFocus();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    press(Qt::Key_I, Qt::ControlModifier);
    const auto* const details = view.findChild<DetailsPopover*>();
    ASSERT_TRUE(details != nullptr && details->isVisible());
    remove();
    const auto labels = details->findChildren<QLabel*>();
    EXPECT_TRUE(std::ranges::any_of(labels, [](const auto* label) {
        return label->isVisible() && label->text().startsWith("This movie has left the list");
    }));
}

TEST(LogView, ShowsTheEndOfALongLogAndWhatIsAddedToIt) {
    LogView view(nullptr);
    std::string log = "begin";
    view.showLog(log);
    log += " Gr\xC3";
    view.follow(log);
    log +=
        "\xBC\xC3\x9F"
        "e";  // one of the characters has come in two parts
    view.follow(log);
    EXPECT_EQ(view.toPlainText().toStdString(),
              "begin Gr\xC3\xBC\xC3\x9F"
              "e");
    EXPECT_TRUE(view.showsAll());

    for (std::size_t i = 0; log.size() < 10'000'000; ++i)
        log += "\xC3\xA4line " + std::to_string(i);
    log += "end";
    view.follow(log);
    const auto shown = view.toPlainText().toStdString();
    EXPECT_LT(shown.size(), 100'000U);
    EXPECT_TRUE(log.ends_with(shown)) << "cut within a character";
    EXPECT_FALSE(view.showsAll());
}

}  // namespace
}  // namespace reelvane
