#include "app/unfinished_outputs.h"

#include <fcntl.h>
#include <optional>
#include <string>
#include <tuple>
#include <unistd.h>

#include "support/preference_text.h"
#include "tests/app/app_fixture.h"

namespace reelvane {
namespace {

class UnfinishedOutputsTest : public AppFixture {
protected:
    static constexpr int kGone = 4000001;
    static constexpr int kOther = 4000002;

    /// Stores what programs said that were at work before this one starts.
    void remember(const std::vector<UnfinishedOutput>& unfinished) {
        std::vector<std::string> entries{"written by hand"};
        for (const auto& each : unfinished) entries.push_back(unfinishedOutputText(each));
        platform_.preferences.setDefaultArray(kUnfinishedOutput.key, entries);
    }
    [[nodiscard]] std::vector<UnfinishedOutput> stored() const {
        std::vector<UnfinishedOutput> found;
        for (const auto& text : get(platform_.preferences, kUnfinishedOutput)) {
            found.push_back(unfinishedOutputFromText(text).value_or(UnfinishedOutput{}));
        }
        return found;
    }
    /// Of a program that is gone and has left both files.
    [[nodiscard]] UnfinishedOutput entry(std::string_view output, std::string_view progressFile,
                                         const std::string& content = "half") const {
        return {.processID = kGone,
                .startTime = "then",
                .scope = platform_.host.scope,
                .output = ownFileAt(platform_.folder.write(output, content)),
                .progressFile = ownFileAt(platform_.folder.write(progressFile))};
    }
};

TEST_F(UnfinishedOutputsTest, OnlyWhatACrashedProgramLeftBehindIsDeleted) {
    platform_.host.processes[kOther] = "then";
    fs::create_symlink(movie("Kept.mkv"), platform_.folder.path() / "link.m4v");
    auto foreign = entry("foreign.m4v", "foreign.log");
    foreign.output.birthMark = foreign.progressFile.birthMark = "1@2.3";
    auto unmarked = entry("unmarked.m4v", "unmarked.log");
    unmarked.output.birthMark = "";
    auto reused = entry("reused.m4v", "reused.log");
    reused.processID = kOther;
    reused.startTime = "earlier";
    auto atWork = entry("atwork.m4v", "atwork.log");
    atWork.processID = kOther;
    auto linked = entry("half\xFF;\n.m4v", "half.log");
    linked.output.path = platform_.folder.path() / "link.m4v";
    auto away = entry("away.m4v", "away.log");
    away.output.path = platform_.folder.path() / "unplugged/away.m4v";
    auto ended = entry("ended.m4v", "ended.log", SmallMp4{}.bytes());
    ended.unwanted = true;
    remember({ended, foreign, unmarked, reused, atWork, linked, away,
              entry("half\xFF;\n.m4v", "half.log"),
              entry("whole.m4v", "whole.log", SmallMp4{}.bytes())});
    launch();
    std::set<std::string> left;
    for (const auto& entry : fs::directory_iterator(platform_.folder.path())) {
        if (entry.path().has_extension()) left.insert(entry.path().filename());
    }
    EXPECT_THAT(left, ElementsAre("Kept.mkv", "atwork.log", "atwork.m4v", "away.m4v", "foreign.log",
                                  "foreign.m4v", "link.m4v", "unmarked.m4v", "whole.m4v"));
    EXPECT_THAT(stored(), ElementsAre(atWork, away)) << "a disk that is away may come back";
    std::string log;
    for (const auto& [priority, text] : platform_.systemLog.written) log += text + "\n";
    EXPECT_THAT(log, AllOf(HasSubstr("deleted"), HasSubstr("reused.m4v"), HasSubstr("kept"),
                           HasSubstr("whole.m4v"), HasSubstr("alone"), Not(HasSubstr("atwork"))));
}

TEST_F(UnfinishedOutputsTest, ADamagedListIsForgottenInOneGo) {
    for (const int words : {2000, 2'000'000}) {
        platform_.preferences.setDefaultArray(kUnfinishedOutput.key,
                                              std::vector<std::string>(words, "x"));
        launch();
        EXPECT_FALSE(platform_.preferences.defaultObject(kUnfinishedOutput.key)) << words;
    }
}

TEST_F(UnfinishedOutputsTest, AnAbortLeavesNothingOfItsOwnBehind) {
    const auto other = entry("other.m4v", "other.log");
    open({movie("Film.mkv")});
    const auto own = stored().back();
    EXPECT_TRUE(isStillThere(own.output) && isStillThere(own.progressFile));
    app_->applicationIsAborting();
    EXPECT_FALSE(fs::exists(own.output.path) || fs::exists(own.progressFile.path));
    EXPECT_TRUE(fs::exists(other.output.path));
    EXPECT_THAT(stored(), IsEmpty());
    EXPECT_THAT(app_->outputs().leftBehind(), IsEmpty());
}

TEST_F(UnfinishedOutputsTest, AProcessThatCannotBeSeenIsNotGone) {
    using Lock = ProgressLock;
    const ProcessScope here = platform_.host.scope;
    struct Row {
        ProcessScope there;
        bool gone, goneWhenHeld, goneWhenFree;
    };
    const std::vector<Row> rows = {
        {here, true, false, true},
        {{"this", "today", "container"}, false, false, true},
        {{"this", "today", ""}, false, false, true},
        {{"container", "today", "outside"}, true, false, true},
        {{"this", "yesterday", "outside"}, true, false, true},
        {{"this", "yesterday", "container"}, true, false, true},
        {{"other", "yesterday", "outside"}, false, false, false},
        {{"", "yesterday", "outside"}, false, false, false},
        {{"this", "", "outside"}, false, false, false},
    };
    for (const auto& row : rows) {
        const UnfinishedOutput unfinished{.processID = 1, .startTime = "then", .scope = row.there};
        const auto gone = [&](Lock lock) { return isGone(unfinished, here, {}, lock); };
        EXPECT_EQ(std::tuple(gone(Lock::Unknown), gone(Lock::Held), gone(Lock::Free)),
                  std::tuple(row.gone, row.goneWhenHeld, row.goneWhenFree))
            << row.there.machine << row.there.boot << row.there.pidNamespace;
    }
}

TEST_F(UnfinishedOutputsTest, TheLockOfARunningConversionKeepsItsOutput) {
    const auto progressFile = platform_.folder.write("running");
    std::optional running(FileDescriptor(::open(progressFile.c_str(), O_WRONLY | O_CLOEXEC)));
    lockProgress(running->get());
    auto elsewhere = entry("running.m4v", "other.log");
    elsewhere.scope.pidNamespace = "container";
    elsewhere.progressFile = ownFileAt(progressFile);
    remember({elsewhere});
    launch();
    EXPECT_TRUE(fs::exists(elsewhere.output.path));
    EXPECT_THAT(stored(), ElementsAre(elsewhere));
    running.reset();  // the container is gone, the file is not
    launch();
    EXPECT_FALSE(fs::exists(elsewhere.output.path) || fs::exists(elsewhere.progressFile.path));
}

TEST_F(UnfinishedOutputsTest, NothingIsJudgedWhereNoProcessCanBeSeen) {
    platform_.host.processes.clear();
    const auto half = entry("half.m4v", "half.log");
    remember({half});
    launch();
    EXPECT_TRUE(fs::exists(half.output.path));
    open({movie("Film.mkv")});
    EXPECT_EQ(stored().size(), 2U);
}

TEST_F(UnfinishedOutputsTest, EveryRunIsRememberedUntilItsEnd) {
    auto other = entry("other.m4v", "other.log");
    other.processID = kOther;
    remember({other});
    platform_.host.processes[kOther] = "then";
    const auto outputs = [this] {
        std::vector<std::string> names;
        for (const auto& each : stored()) names.push_back(each.output.path.filename());
        return names;
    };
    open({movie("A.mkv"), movie("B.mkv"), movie("C.mkv")});
    EXPECT_THAT(outputs(), ElementsAre("other.m4v", "C.m4v"));
    EXPECT_EQ(stored().back().processID, ::getpid());
    EXPECT_TRUE(isStillThere(stored().back().progressFile));
    EXPECT_TRUE(isStillThere(stored().back().output));
    finish(0);
    EXPECT_THAT(outputs(), ElementsAre("other.m4v", "B.m4v"));
    fail(1);
    EXPECT_THAT(outputs(), ElementsAre("other.m4v", "A.m4v"));
    app_->applicationWillTerminate();
    EXPECT_THAT(outputs(), ElementsAre("other.m4v"));
}

}  // namespace
}  // namespace reelvane
