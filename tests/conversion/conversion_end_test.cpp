#include <algorithm>
#include <gmock/gmock.h>

#include "tests/conversion/job_fixture.h"

namespace reelvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using State = ConversionJobState;

TEST_F(JobTest, ASuccessKeepsTheOutputAndAnnouncesIt) {
    startAndWrite();
    platform.dispatcher.advance(std::chrono::seconds(5));
    finish("frame=1 bitrate=1");
    EXPECT_EQ(job->progress(), 100);
    EXPECT_EQ(job->log().searched(), "frame=1 bitrate=1") << "the rest of the pipe is not filtered";
    EXPECT_THAT(controller.told, ElementsAre("runFinished"));
    EXPECT_THAT(platform.powerAssertions.held, IsEmpty());
    platform.dispatcher.advance(std::chrono::seconds(60));
    EXPECT_EQ(job->stateInfoString(), "Status: Finished [Conversion took: 5s]");
    const auto& notification = controller.notifications.at(0);
    EXPECT_EQ(notification.title, "Reelvane Conversion Finished");
    EXPECT_EQ(notification.text, "Reelvane has finished converting the file movie.mkv.");
    EXPECT_EQ(notification.actionTitle, "Show");
    EXPECT_EQ(notification.path, output);
    job->remove();
    EXPECT_TRUE(exists(output) && exists(source) && !exists(progressFile));
}

TEST_F(JobTest, AFailureLeavesNoOutput) {
    controller.settings.autoRemove = controller.settings.autoClean = true;
    startAndWrite();
    child().exit(1, "strange");
    EXPECT_EQ(job->state(), State::Failed);
    EXPECT_TRUE(exists(source) && !exists(output) && !exists(progressFile));
    EXPECT_THAT(controller.told, ElementsAre("runFailed"));
    platform.dispatcher.runPending();
    EXPECT_THAT(platform.alerts.shown, IsEmpty()) << "explained when the user asks";
    EXPECT_EQ(controller.notifications.at(0).text,
              "Reelvane has failed to convert the file movie.mkv.");
    EXPECT_FALSE(controller.notifications[0].actionTitle);
}

TEST_F(JobTest, SubtitlesAreBlamedOnlyWhereTheRunTookThem) {
    controller.settings.disableBuiltinSubtitles = false;
    job->fileInfo().subtitleTrackIDs = {2};
    startAndWrite();
    child().exit(1, "strange");
    controller.settings.disableBuiltinSubtitles = true;  // too late for this run
    EXPECT_THAT(job->diagnosis().message, HasSubstr("subtitles embedded into the movie"));
    startAndWrite();
    child().exit(1, "strange");
    EXPECT_TRUE(job->diagnosis().offersReport);
}

TEST_F(JobTest, AReportIsMailedOnlyWhereTheUserAsksForItAndWithHisPreferencesOnlyIfHeLetsThem) {
    platform.folder.write("config/org.reelvane.Reelvane/org.reelvane.Reelvane.ini", "stored");
    startAndWrite();
    child().print("one & two\nthree\n");
    child().exit(1);
    const auto& urls = platform.workspace.urls;
    platform.alerts.answers = {{.button = kSecondButton, .index = 1}};
    job->reveal();
    platform.dispatcher.runPending();
    EXPECT_THAT(urls, IsEmpty()) << "cancelled";
    EXPECT_THAT(platform.alerts.shown.back().buttons, ElementsAre("Send to support", "Cancel"));
    EXPECT_EQ(platform.alerts.shown.back().accessory.index, 1);
    for (const int attached : {0, 1}) {
        platform.alerts.answers = {{.button = kFirstButton, .index = attached}};
        job->reveal();
        platform.dispatcher.runPending();
        EXPECT_THAT(urls.back(), HasSubstr("subject=Reelvane%20v1.2%20Problem%20Report&body="));
        EXPECT_THAT(urls.back(), HasSubstr("one%20%26%20two%0Athree%0A%20"));
        EXPECT_EQ(urls.back().ends_with("c3RvcmVk"), attached != 0);
    }
}

TEST_F(JobTest, AFullDiskIsToldAtOnceEvenIfTheJobGoesMeanwhile) {
    startAndWrite();
    platform.alerts.whileOpen = [this] { job.reset(); };
    child().exit(1, "No space left on device");
    EXPECT_EQ(job->state(), State::Failed) << "before anybody is told";
    platform.dispatcher.runPending();
    EXPECT_THAT(lastAlert(), HasSubstr("not enough free space left on the destination volume"));
    EXPECT_THAT(controller.told, ElementsAre("runFailed"));
}

TEST_F(JobTest, CleaningUpHappensBeforeTheNextJob) {
    controller.settings.autoClean = true;
    startAndWrite();
    finish();
    EXPECT_THAT(controller.told, ElementsAre("removeJob", "runFinished"));
    EXPECT_TRUE(exists(source) && exists(output) && !child().terminated);
}

/// AutoRemove is on, and the converter that compares prints this.
class RemovalTest : public JobTest {
protected:
    RemovalTest() {
        controller.settings.autoRemove = true;
        platform.processLauncher.answer = [this](const ProcessRequest& request) {
            const bool readsOutput = std::ranges::count(request.arguments, output.native()) > 0;
            if (readsOutput && whileComparing) whileComparing(request);
            return FinishedProcess{.output = digest, .exitStatus = status};
        };
    }
    std::string digest = "murmur3=8f13\nframe=  600 fps=0.0 q=-1.0 Lsize=0kB\n";
    int status = 0;
    bool isAside = false;
    std::function<void(const ProcessRequest&)> whileComparing;  ///< the source has been read
};

TEST_F(RemovalTest, TheSourceGoesOnceItsPictureHasBeenCompared) {
    controller.settings.autoClean = controller.settings.quitAfterConversion = true;
    whileComparing = [this](const ProcessRequest& request) {
        EXPECT_TRUE(request.background && job->isComparing());
        EXPECT_EQ(job->state(), State::Finished);
        EXPECT_THAT(controller.told, ElementsAre("runFinished"))
            << "neither cleaned up nor quit before";
    };
    startAndWrite();
    finish();
    EXPECT_THAT(platform.processLauncher.runs, testing::SizeIs(2));
    EXPECT_THAT(platform.workspace.recycled, ElementsAre(source));
    EXPECT_THAT(controller.told, ElementsAre("runFinished", "removeJob", "sourceDecided"));
    EXPECT_TRUE(exists(output) && !child().terminated);
}

TEST_F(RemovalTest, NoSourceGoesWhileItsJobIsSetAside) {
    whileComparing = [this](const ProcessRequest& request) {
        if (std::exchange(isAside, true)) return;
        job->setAside();
        EXPECT_TRUE(request.stop.stop_requested() && controller.turns.isIdle());
    };
    for (const bool comesBack : {false, true}) {
        isAside = false;
        startAndWrite();
        finish();
        EXPECT_THAT(platform.workspace.recycled, IsEmpty());
        comesBack ? job->bringBack() : job->remove();
        platform.dispatcher.runPending();
        EXPECT_EQ(platform.workspace.recycled.size(), comesBack ? 1U : 0U) << "compared anew";
        std::filesystem::remove(output);
        if (!comesBack) setUpJob();
    }
}

TEST_F(RemovalTest, ASourceIsDeletedForGoodOnlyWhereTheUserSaidSo) {
    controller.settings.autoRemoveType = 1;
    startAndWrite();
    child().exit(1);
    EXPECT_TRUE(exists(source));
    startAndWrite();
    finish();
    EXPECT_TRUE(!exists(source) && exists(output) && platform.workspace.recycled.empty());
    EXPECT_EQ(job->warning(), "");
}

TEST_F(RemovalTest, WhateverIsNotTheSameKeepsTheSourceAndSaysSo) {
    controller.settings.autoClean = true;
    const auto meanwhile = [this](std::function<void()> fault) {
        whileComparing = [fault](const auto&) { fault(); };
    };
    const std::vector<std::pair<const char*, std::function<void()>>> rows = {
        {"does not say how long", [&] { job->fileInfo().runtimeSeconds = 0; }},
        {"does not hold exactly the same picture",
         [&] { meanwhile([&] { digest = "murmur3=8f13\nframe=  599 "; }); }},
        {"does not hold exactly the same picture",
         [&] { meanwhile([&] { digest = "murmur3=8f14\nframe=  600 "; }); }},
        {"could not be compared", [&] { status = 1; }},
        {"could not be compared", [&] { digest += "movie.mkv: Input/output error"; }},
        {"could not be compared", [&] { digest = "murmur3=8f13"; }},
        {"was changed after", [&] { platform.folder.write("movie.mkv", "written anew"); }},
        {"was changed after",
         [&] { meanwhile([&] { platform.folder.write("movie.mkv", "still growing"); }); }},
        {"new file was changed",
         [&] { meanwhile([&] { platform.folder.write("movie.m4v", "another one"); }); }},
        {"could not be moved to the Trash: no room",
         [&] { platform.workspace.trashProblem = "no room"; }},
    };
    for (const auto& [reason, fault] : rows) {
        std::filesystem::remove(output);
        record.identity = fileVersionOf(source);
        setUpJob();
        digest = "murmur3=8f13\nframe=  600 ";
        status = 0;
        whileComparing = {};
        startAndWrite();
        fault();
        finish();
        EXPECT_TRUE(exists(source) && platform.workspace.recycled.empty()) << reason;
        EXPECT_THAT(job->warning(), HasSubstr(reason));
        EXPECT_FALSE(job->isComparing());
        EXPECT_THAT(controller.told, testing::Not(testing::Contains("removeJob")))
            << "the words stay";
    }
}

TEST_F(RemovalTest, AJobThatLeavesMeanwhileLeavesItsSource) {
    startAndWrite();
    whileComparing = [this](const ProcessRequest& request) {
        job->remove();
        EXPECT_TRUE(request.stop.stop_requested());
    };
    finish();
    EXPECT_TRUE(exists(source) && exists(output) && platform.workspace.recycled.empty());
    EXPECT_TRUE(controller.turns.isIdle());
}

TEST_F(JobTest, AnExitStatusOfZeroIsNotYetSuccess) {
    controller.settings.autoRemove = true;
    const std::vector<std::pair<const char*, std::function<void()>>> rows = {
        {"is incomplete, so it was not kept", [this] { exitWell(); }},
        {"is incomplete", [this] { finish("av_interleaved: Error writing trailer"); }},
        {"not enough free space", [this] { finish("x: No space left on device"); }},
        {"is incomplete", [this] {
             SmallMp4 movie;
             movie.tracks.resize(1);  // of the two that were mapped
             platform.folder.write("movie.m4v", movie.bytes());
             exitWell();
         }}};
    for (const auto& [reason, end] : rows) {
        startAndWrite();
        end();
        EXPECT_EQ(job->state(), State::Failed) << reason;
        EXPECT_THAT(job->diagnosis().message, HasSubstr(reason));
        EXPECT_TRUE(exists(source) && !exists(output)) << reason;
        EXPECT_THAT(platform.workspace.recycled, IsEmpty());
        EXPECT_EQ(job->details(), "");
    }
}

TEST_F(JobTest, AShortOutputIsKeptAndSoIsItsSource) {
    controller.settings.autoRemove = true;
    job->fileInfo().runtimeSeconds = 125;
    startAndWrite();
    finish();
    EXPECT_EQ(job->state(), State::Finished);
    EXPECT_THAT(job->details(), HasSubstr("1m 40s, 2 tracks, "));
    EXPECT_THAT(job->details(), testing::Not(HasSubstr("verified")));
    EXPECT_EQ(controller.notifications.at(0).text,
              "movie.mkv ended after 1m 40s of 2m 5s: the source may be damaged.");
    EXPECT_TRUE(exists(source) && exists(output) && platform.workspace.recycled.empty());
}

TEST_F(JobTest, ADoubtfulRunIsKeptAndSoIsItsSource) {
    controller.settings.autoRemove = true;
    startAndWrite();
    finish("[matroska,webm @ 0x1] File ended prematurely");
    EXPECT_EQ(job->state(), State::Finished);
    EXPECT_THAT(job->warning(), HasSubstr("movie.mkv could not be read without errors"));
    EXPECT_EQ(job->warning(), controller.notifications.at(0).text +
                                  " movie.mkv was kept because the result may differ from it.");
    EXPECT_TRUE(exists(source) && exists(output) && platform.workspace.recycled.empty());
}

TEST_F(JobTest, RemovingARunningJobEndsItWithoutAWord) {
    platform.folderAccess.open.insert(platform.folder.path());
    startAndWrite();
    job->remove();
    EXPECT_TRUE(child().terminated);
    EXPECT_EQ(child().listener, nullptr);
    EXPECT_TRUE(exists(source) && !exists(output) && !exists(progressFile));
    EXPECT_THAT(platform.folderAccess.open, IsEmpty());
    EXPECT_THAT(controller.told, ElementsAre("removeJob"));
    std::filesystem::create_directory(output);
    job->remove();
    EXPECT_TRUE(exists(output)) << "a folder is never deleted";
}

}  // namespace
}  // namespace reelvane
