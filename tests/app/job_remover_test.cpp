#include "app/job_remover.h"

#include "tests/app/app_fixture.h"

namespace reelvane {
namespace {

using enum ConversionJobState;

class JobRemoverTest : public AppFixture {
protected:
    void remove(const std::vector<std::size_t>& rows) {
        std::vector<ConversionJob*> jobs;
        for (const auto row : rows) jobs.push_back(app_->queue().taskArray().at(row).get());
        app_->queueControl().removeJobs(jobs);
        settle();
    }
    void undo() {
        app_->queueControl().undoRemoval();
        settle();
    }
    [[nodiscard]] const std::optional<Removal>& undoable() const {
        return app_->queueControl().undoableRemoval().get();
    }
    [[nodiscard]] auto& child(std::size_t number) {
        return platform_.processLauncher.children.at(number);
    }
    [[nodiscard]] bool exists(const char* name) const {
        return fs::exists(platform_.folder.path() / name);
    }
};

TEST_F(JobRemoverTest, WhatWasRemovedTogetherComesBackTogetherAndWhereItStood) {
    add({movie("a.mkv"), movie("b.mkv"), movie("c.mkv"), movie("d.mkv")});
    remove({0, 3, 2});
    EXPECT_THAT(rows(), ElementsAre("c.mkv"));
    EXPECT_EQ(job(0).state(), Converting) << "the queue goes on";
    EXPECT_EQ(undoable()->jobs, 3);
    EXPECT_TRUE(undoable()->losesWork);
    EXPECT_TRUE(child(0).suspended && !child(0).terminated);
    EXPECT_TRUE(exists("a.m4v"));
    add({movie("e.mkv")});
    set(kInsertJobsAtBottom.key, 1);
    add({movie("f.mkv")});
    undo();
    EXPECT_FALSE(undoable());
    EXPECT_THAT(rows(), ElementsAre("e.mkv", "d.mkv", "c.mkv", "b.mkv", "a.mkv", "f.mkv"));
    EXPECT_EQ(job(4).state(), Paused) << "another one converts";
    platform_.dispatcher.advance(2 * kUndoTime);
    EXPECT_FALSE(child(0).terminated);
    EXPECT_EQ(output(3), "b.m4v");
}

TEST_F(JobRemoverTest, ARunningConversionGoesOnWhereNothingElseIsAtWork) {
    add({movie("a.mkv")});
    EXPECT_EQ(platform_.powerAssertions.held.size(), 1);
    remove({0});
    EXPECT_THAT(platform_.powerAssertions.held, IsEmpty());
    undo();
    EXPECT_EQ(job(0).state(), Converting);
    EXPECT_FALSE(child(0).suspended);
    finish(0);
    EXPECT_EQ(job(0).state(), Finished);
}

TEST_F(JobRemoverTest, WhatNobodyWantsBackEndsAfterTenSecondsOrWithTheNextRemovalOrTheProgram) {
    const std::vector<std::pair<const char*, std::function<void()>>> ends = {
        {"time", [this] { platform_.dispatcher.advance(kUndoTime); }},
        {"another removal", [this] { remove({0}); }},
        {"the movie again", [this] { add({movie("a.mkv")}); }},
        {"quitting", [this] {
             EXPECT_TRUE(app_->lifecycle().applicationShouldTerminate()) << "without a question";
             app_->applicationWillTerminate();
         }}};
    for (const auto& [name, end] : ends) {
        platform_.processLauncher.children.clear();
        launch();
        add({movie("a.mkv")});
        const auto output = platform_.processLauncher.children[0].request.arguments.back();
        app_->queueControl().togglePause();
        add({movie("b.mkv")});
        remove({1});
        platform_.dispatcher.advance(kUndoTime - std::chrono::seconds(1));
        EXPECT_TRUE(fs::exists(output) && !child(0).terminated) << name;
        end();
        settle();
        EXPECT_TRUE(child(0).terminated && !fs::exists(output)) << name;
        EXPECT_TRUE(exists("a.mkv"));
        const auto left = rows().size();
        undo();
        EXPECT_EQ(rows().size(), left + (name == ends[1].first ? 1 : 0)) << name;
    }
}

TEST_F(JobRemoverTest, ARunThatEndsWhileItsJobIsAwayIsFollowedUpWhenItIsBack) {
    for (const bool comesBack : {true, false}) {
        for (const bool whileRead : {true, false}) {
            platform_.processLauncher.children.clear();
            platform_.notifications.delivered.clear();
            launch();
            add({movie("a.mkv")});
            platform_.folder.write("a.m4v", SmallMp4{}.bytes());
            if (whileRead) child(0).exit(0);
            app_->queueControl().removeJobs({app_->queue().taskArray().front().get()});
            if (!whileRead) child(0).exit(0);
            settle();
            EXPECT_THAT(platform_.notifications.delivered, IsEmpty());
            if (comesBack) {
                undo();
                EXPECT_EQ(job(0).state(), Finished);
            } else {
                platform_.dispatcher.advance(kUndoTime);
                settle();
            }
            EXPECT_EQ(exists("a.m4v"), comesBack) << "as the user was told";
            EXPECT_EQ(platform_.notifications.delivered.size(), comesBack ? 1 : 0);
            fs::remove(platform_.folder.path() / "a.m4v");
        }
    }
}

TEST_F(JobRemoverTest, NothingIsDeletedOnTheMainThread) {
    add({movie("a.mkv"), movie("b.mkv")});
    app_->queue().taskArray().back()->remove();
    EXPECT_TRUE(exists("a.m4v"));
    platform_.dispatcher.runBackground();
    EXPECT_FALSE(exists("a.m4v"));
    settle();
    child(1).exit(1);
    EXPECT_TRUE(exists("b.m4v"));
    settle();
    EXPECT_FALSE(exists("b.m4v"));
}

}  // namespace
}  // namespace reelvane
