#include "app/file_intake.h"

#include <sys/stat.h>

#include "tests/app/app_fixture.h"

namespace reelvane {
namespace {

constexpr const char* kCue = "1\n00:00:01,000 --> 00:00:02,000\nHi\n";
/// "C'est l'été à la mer" and "Où êtes-vous", as DOS wrote them.
constexpr const char* kDosText = "C'est l'\x82t\x82 \x85 la mer\nO\x97 \x88tes-vous\n";

class FileIntakeTest : public AppFixture {
protected:
    [[nodiscard]] std::vector<std::string> probed() const {
        std::vector<std::string> names;
        for (const auto& run : platform_.processLauncher.runs)
            names.push_back(fs::path(run.arguments.back()).filename());
        return names;
    }
    FileIntake& intake() { return app_->intake(); }
};

TEST_F(FileIntakeTest, ProbesOneFileAtATimeInTheOrderGiven) {
    set(kAutoAdd.key, 0);
    open({movie("a.mkv")});
    EXPECT_EQ(intake().state(), IntakeState::AwaitingUser);
    open({movie("b.mkv"), movie("c.mkv")});
    EXPECT_EQ(intake().fileInfo()->fileName, "a.mkv") << "what is shown is not pushed aside";
    EXPECT_EQ(intake().waitingCount().get(), 2);
    intake().addToQueue();
    EXPECT_TRUE(intake().awaitsDisk().get());
    settle();
    EXPECT_EQ(intake().presentFile().filename(), "b.mkv");
    EXPECT_EQ(intake().waitingCount().get(), 1);
    intake().cancelAdd();
    EXPECT_EQ(intake().state(), IntakeState::Reading);
    intake().addToQueue();
    settle();
    EXPECT_EQ(rows().size(), 1) << "nothing to add while scanning";
    intake().cancelAdd();
    EXPECT_THAT(probed(), ElementsAre("a.mkv", "b.mkv", "c.mkv"));
    EXPECT_EQ(intake().state(), IntakeState::Idle);
    EXPECT_FALSE(intake().isBusy());
    intake().addToQueue();
    settle();
    EXPECT_EQ(rows().size(), 1) << "a cancelled file is gone";
}

TEST_F(FileIntakeTest, AFileThatIsLeftMeanwhileIsNeitherShownNorAdded) {
    set(kAutoAdd.key, 0);
    open({movie("first.mkv"), movie("slow.mkv"), movie("a.mkv")});
    intake().cancelAdd();
    ASSERT_EQ(intake().state(), IntakeState::Reading);
    intake().cancelAdd();
    settle();
    EXPECT_EQ(intake().fileInfo()->fileName, "a.mkv");
    intake().addToQueue();
    platform_.dispatcher.runBackground();
    intake().cancelAdd();  // while its place is looked for
    settle();
    EXPECT_THAT(rows(), IsEmpty());
    set(kAutoAdd.key, 1);
    add({movie("a.mkv")});
    EXPECT_EQ(output(0), "a.m4v") << "the place that was found is free again";
}

TEST_F(FileIntakeTest, PairsASubtitleAgainLaterInTheRunButWithNoOtherMovie) {
    const auto subtitle = platform_.folder.write("Film.en.srt", kCue);
    open({movie("Film.mkv"), subtitle});
    add({movie("Film.mkv"), movie("Film.mp4"), movie("Film 2.mkv")});
    ASSERT_THAT(rows(), ElementsAre("Film 2.mkv", "Film.mp4", "Film.mkv", "Film.mkv"));
    for (const std::size_t row : {0, 1}) EXPECT_FALSE(job(row).fileInfo().subtitleFileURL);
    for (const std::size_t row : {2, 3}) {
        EXPECT_EQ(job(row).fileInfo().subtitleFileURL, subtitle);
        EXPECT_THAT(job(row).fileInfo().informationString, HasSubstr("+1)"));
        EXPECT_EQ(job(row).fileInfo().subtitleFormat.demuxer, "srt");
    }
}

TEST_F(FileIntakeTest, LeavesOutWhatIsNoSubtitlesAndSaysSo) {
    const auto playlist = platform_.folder.write("a.srt", "#EXTM3U\n/other.ts\n");
    const auto gone = platform_.folder.path() / "a.de.srt";
    const auto usable = platform_.folder.write("a.eng.srt", kCue);
    const auto unknown = platform_.folder.write("b.srt", std::string(kCue) + kDosText);
    open({movie("a.mkv"), playlist, gone, usable, movie("b.mkv"), unknown});
    EXPECT_EQ(job(1).fileInfo().subtitleFileURL, usable);
    EXPECT_FALSE(job(0).fileInfo().subtitleFileURL) << "nobody can be asked";
    EXPECT_THAT(platform_.alerts.shown, IsEmpty()) << "two movies are held up by no alert";
    EXPECT_THAT(job(1).fileInfo().warnings,
                ElementsAre(HasSubstr("'a.srt' is left out: it is a play")));
    EXPECT_THAT(job(0).fileInfo().warnings,
                ElementsAre(HasSubstr("'b.srt' is left out: its character")));
    open({movie("c.mkv"), platform_.folder.write("c.srt", "#EXTM3U\n/other.ts\n")});
    EXPECT_THAT(lastAlert(), HasSubstr("'c.srt' is left out: it is a play"));
    set(kExternalSubtitleEncoding.key, 8);
    open({movie("b.mkv")});
    EXPECT_EQ(job(0).fileInfo().subtitleFileURL, unknown) << "the preferences say what it is";
}

TEST_F(FileIntakeTest, AsksForAnEncodingThatCannotBeTold) {
    set(kAutoAdd.key, 0);
    const auto unknown = platform_.folder.write("b.srt", std::string(kCue) + kDosText);
    open({movie("b.mkv"), unknown, movie("b.mp4")});
    EXPECT_EQ(intake().fileInfo()->subtitleFormat.samples.size(), 2);
    intake().addToQueue();
    settle();
    EXPECT_THAT(rows(), IsEmpty()) << "the answer comes first";
    intake().chooseSubtitleEncoding("CP850");
    intake().addToQueue();
    settle();
    EXPECT_EQ(job(0).fileInfo().subtitleFormat.encoding.name, "CP850");
    EXPECT_FALSE(intake().fileInfo()->subtitleFileURL) << "of b.mp4";
    intake().cancelAdd();
    open({movie("b.mkv")});
    intake().detachSubtitle();
    EXPECT_THAT(intake().fileInfo()->informationString, Not(HasSubstr("+1)")));
    intake().addToQueue();
    settle();
    EXPECT_FALSE(job(0).fileInfo().subtitleFileURL);
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

TEST_F(FileIntakeTest, ABatchIsHeldUpByNoAlert) {
    const auto hevc = [this](std::string_view name) { return movie(name); };
    platform_.processLauncher.answer = [this](const ProcessRequest& request) {
        auto report = report_;
        const auto codec = fs::path(request.arguments.back()).stem().native();
        report.replace(report.find("h264 (High)"), 11, codec.substr(0, 4));
        return FinishedProcess{.output = report, .exitStatus = 1};
    };
    open({hevc("hevc.mkv")});
    ASSERT_EQ(platform_.alerts.shown.size(), 1U);
    EXPECT_TRUE(platform_.alerts.shown[0].suppressionTitle) << "a single movie keeps its alert";
    open({hevc("hevc 1.mkv"), hevc("vp9 .mkv"), hevc("hevc 2.mkv")});
    platform_.dispatcher.advance(std::chrono::seconds(1));
    EXPECT_EQ(platform_.alerts.shown.size(), 1U);
    EXPECT_THAT(rows(), ElementsAre("hevc 2.mkv", "hevc 1.mkv", "hevc.mkv"));
    EXPECT_THAT(job(0).fileInfo().warnings, ElementsAre(HasSubstr("videocodec: hevc")));
    ASSERT_EQ(intake().refusedFiles().list().size(), 1U);
    EXPECT_EQ(intake().refusedFiles().list()[0].file.filename(), "vp9 .mkv");
    EXPECT_THAT(intake().refusedFiles().list()[0].reason, HasSubstr("invalid video codec (vp9"));

    set("_wrongvideowarning_1.2_asked", 1);
    open({hevc("hevc 3.mkv"), hevc("hevc 4.mkv")});
    EXPECT_THAT(job(0).fileInfo().warnings, IsEmpty()) << "the user wants no more of these";

    // One file after another, as another program may send them: the second is no second alert.
    platform_.alerts.whileOpen = [&, first = true]() mutable {
        if (std::exchange(first, false)) open({hevc("vp9 3.mkv")});
    };
    open({hevc("vp9 2.mkv")});
    platform_.dispatcher.advance(std::chrono::seconds(1));
    EXPECT_EQ(platform_.alerts.shown.size(), 2U);
    EXPECT_EQ(intake().refusedFiles().list().back().file.filename(), "vp9 3.mkv");
}

TEST_F(FileIntakeTest, FoldersAreSearchedAndWhatIsNoMovieIsNamed) {
    for (const auto* const name :
         {"tv/Show 10.mkv", "tv/Show 2.mkv", "tv/s1/e1.mp4", "tv/Show 2.srt", "tv/notes.txt",
          "tv/.hidden/a.mkv", "empty/notes.txt", "readme.txt"}) {
        platform_.folder.write(name, kCue);
    }
    const auto& folder = platform_.folder.path();
    fs::create_directory_symlink(folder / "tv", folder / "tv/again");
    launch();
    open({folder / "tv", movie("a.mkv"), folder / "tv/s1/e1.mp4"});
    EXPECT_THAT(rows(), ElementsAre("e1.mp4", "a.mkv", "Show 10.mkv", "Show 2.mkv"));
    EXPECT_TRUE(job(3).fileInfo().subtitleFileURL);
    EXPECT_THAT(platform_.alerts.shown, IsEmpty());

    platform_.folder.write("tv/p.sub", std::string_view("\x00\x00\x01\xBA rest", 9));
    ASSERT_EQ(::mkfifo((folder / "tv/pipe.srt").c_str(), 0600), 0);
    open({folder / "tv/p.sub"});
    EXPECT_THAT(lastAlert(), HasSubstr("'p.sub' is left out: its subtitles are pictures"));
    open({folder / "tv/pipe.srt"});
    EXPECT_THAT(lastAlert(), HasSubstr("'pipe.srt' is left out: it is no regular file"));
    open({folder / "tv/Show 2.srt"});
    EXPECT_THAT(lastAlert(), HasSubstr("There is no movie yet for the subtitle file 'Show 2.srt'"));
    platform_.alerts.shown.clear();

    open({folder / "readme.txt"});
    EXPECT_THAT(lastAlert(), HasSubstr("'readme.txt' is left out, because"));
    open({folder / "empty"});
    EXPECT_THAT(lastAlert(), HasSubstr("no movie in the folder 'empty'"));
    open({folder / "empty", folder / "gone", movie("b.mkv")});
    EXPECT_EQ(platform_.alerts.shown.size(), 2U);
    const auto& list = intake().refusedFiles().list();
    ASSERT_EQ(list.size(), 2U);
    EXPECT_THAT(list[1].reason, HasSubstr("no file 'gone'"));
    EXPECT_EQ(rows().front(), "b.mkv");
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
    const auto subtitle = platform_.folder.write("other.srt", kCue);
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
