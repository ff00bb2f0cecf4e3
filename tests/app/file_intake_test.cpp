#include "app/file_intake.h"

#include "tests/app/app_fixture.h"

namespace reelvane {
namespace {

class FileIntakeTest : public AppFixture {
protected:
    [[nodiscard]] std::vector<std::string> probed() const {
        std::vector<std::string> names;
        for (const auto& run : platform_.processLauncher.runs)
            names.push_back(fs::path(run.arguments.at(1)).filename());
        return names;
    }
    FileIntake& intake() { return app_->intake(); }
};

TEST_F(FileIntakeTest, ProbesOneFileAtATimeInTheOrderGiven) {
    set(kAutoAddKey, 0);
    open({movie("a.mkv"), platform_.folder.path()});
    EXPECT_EQ(intake().topConstraint().get(), kSheetShown);
    open({movie("b.mkv"), movie("c.mkv")});
    EXPECT_EQ(intake().fileInfo()->fileName, "a.mkv") << "what is shown is not pushed aside";
    EXPECT_EQ(intake().waitingCount().get(), 2);
    intake().addToQueue();
    EXPECT_TRUE(intake().awaitsDisk().get());
    settle();
    EXPECT_EQ(intake().presentFile().filename(), "b.mkv");
    EXPECT_EQ(intake().waitingCount().get(), 1);
    intake().cancelAdd();
    EXPECT_TRUE(intake().isScanning().get());
    intake().addToQueue();
    settle();
    EXPECT_EQ(rows().size(), 1) << "nothing to add while scanning";
    intake().cancelAdd();
    EXPECT_THAT(probed(), ElementsAre("a.mkv", "b.mkv", "c.mkv"));
    EXPECT_EQ(intake().topConstraint().get(), kSheetHidden);
    EXPECT_FALSE(intake().isBusy());
    intake().addToQueue();
    settle();
    EXPECT_EQ(rows().size(), 1) << "a cancelled file is gone";
}

TEST_F(FileIntakeTest, AFileThatIsLeftMeanwhileIsNeitherShownNorAdded) {
    set(kAutoAddKey, 0);
    launch().openFiles({movie("slow.mkv"), movie("a.mkv")});
    intake().cancelAdd();  // while it is probed
    settle();
    EXPECT_EQ(intake().fileInfo()->fileName, "a.mkv");
    intake().addToQueue();
    platform_.dispatcher.runBackground();
    intake().cancelAdd();  // while its place is looked for
    settle();
    EXPECT_THAT(rows(), IsEmpty());
    set(kAutoAddKey, 1);
    add({movie("a.mkv")});
    EXPECT_EQ(output(0), "a.m4v") << "the place that was found is free again";
}

TEST_F(FileIntakeTest, PairsASubtitleAgainLaterInTheRun) {
    const auto subtitle = movie("Film.en.srt");
    open({movie("Film.mkv"), subtitle});
    add({movie("Film.mp4"), movie("Film 2.mkv")});
    ASSERT_THAT(rows(), ElementsAre("Film 2.mkv", "Film.mp4", "Film.mkv"));
    EXPECT_FALSE(job(0).fileInfo().subtitleFileURL);
    for (const std::size_t row : {1, 2}) {
        EXPECT_EQ(job(row).fileInfo().subtitleFileURL, subtitle);
        EXPECT_THAT(job(row).fileInfo().informationString, HasSubstr("+1)"));
    }
}

TEST_F(FileIntakeTest, TellsOfARefusedFileAndTakesTheNext) {
    launch();
    bool idle = false;
    const auto watch = intake().observeIdle([&] { idle = !intake().isBusy(); });
    open({platform_.folder.path() / "gone.mkv", movie("a.mkv")});
    EXPECT_THAT(refused_, ElementsAre("gone.mkv"));
    EXPECT_THAT(refusalTexts_.front(), HasSubstr("doesn't seem to be a valid MKV"));
    EXPECT_THAT(rows(), ElementsAre("a.mkv"));
    EXPECT_TRUE(idle);
}

TEST_F(FileIntakeTest, AlertsOnceForAMissingToolAndDropsTheBatch) {
    platform_.processLauncher.nextError = LaunchError::NotFound;
    open({movie("a.mkv"), movie("b.mkv"), movie("c.mkv")});
    EXPECT_THAT(refused_, ElementsAre("a.mkv", "b.mkv", "c.mkv"));
    EXPECT_EQ(platform_.alerts.shown.size(), 1);
    EXPECT_FALSE(intake().isBusy());
    EXPECT_EQ(intake().waitingCount().get(), 0);
    EXPECT_EQ(terminated_, 0);
    platform_.processLauncher.nextError = LaunchError::NoResources;
    open({movie("a.mkv")});
    EXPECT_THAT(platform_.alerts.shown.back().buttons, ElementsAre("Exit"));
    EXPECT_EQ(terminated_, 1);
}

TEST_F(FileIntakeTest, FollowsTheCallersChoices) {
    const auto folder = platform_.folder.path() / "to";
    fs::create_directory(folder);
    const auto subtitle = movie("other.srt");
    launch({.destinationFolder = folder, .audioTrackIndex = 1, .subtitleFile = subtitle});
    open({movie("x/a.mkv"), movie("y/a.mkv")});
    EXPECT_THAT(rows(), ElementsAre("a.mkv", "a.mkv"));
    EXPECT_EQ(job(1).fileInfo().destinationURL, folder / "a.m4v");
    EXPECT_EQ(job(0).fileInfo().destinationURL, folder / "a-0.m4v") << "a promised name is taken";
    EXPECT_EQ(job(0).audioTrackIndex(), 1);
    EXPECT_EQ(job(0).fileInfo().subtitleFileURL, subtitle);
    EXPECT_THAT(job(0).fileInfo().informationString, HasSubstr("+1)"));
    launch({.audioTrackIndex = 2});
    open({movie("b.mkv")});
    EXPECT_THAT(rows(), IsEmpty());
    EXPECT_THAT(refusalTexts_,
                ElementsAre(HasSubstr("index 2. Please choose an index from 0 to 1")));
}

}  // namespace
}  // namespace reelvane
