#include "app/unfinished_outputs.h"

#include <string>

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
        platform_.preferences.setDefaultArray(kUnfinishedOutputKey, entries);
    }
    [[nodiscard]] std::vector<UnfinishedOutput> stored() const {
        std::vector<UnfinishedOutput> found;
        const auto& preferences = platform_.preferences;
        for (const auto& text :
             preferences.defaultArray(kUnfinishedOutputKey).value_or(std::vector<std::string>{})) {
            found.push_back(unfinishedOutputFromText(text).value_or(UnfinishedOutput{}));
        }
        return found;
    }
    [[nodiscard]] fs::path write(std::string_view name, const std::string& content = "half") const {
        return platform_.folder.write(name, content);
    }
};

TEST_F(UnfinishedOutputsTest, OnlyWhatACrashedProgramLeftBehindIsDeleted) {
    platform_.host.processes[kOther] = "then";
    const auto folder = platform_.folder.path() / "folder.m4v";
    fs::create_directory(folder);
    fs::create_symlink(movie("Kept.mkv"), platform_.folder.path() / "link.m4v");
    const UnfinishedOutput atWork{kOther, "then", write("atwork.m4v"), write("atwork.log")};
    remember({{kGone, "then", write("half\xFF;\n.m4v"), write("half.log")},
              {kOther, "earlier", write("reused.m4v"), write("reused.log")},
              atWork,
              {kGone, "then", write("whole.m4v", SmallMp4{}.bytes()), write("whole.log")},
              {kGone, "then", folder, "/nowhere.log"},
              {kGone, "then", platform_.folder.path() / "link.m4v", "/nowhere.log"},
              {kGone, "then", "/nowhere.m4v", "/nowhere.log"}});
    launch();
    std::set<std::string> left;
    for (const auto& entry : fs::directory_iterator(platform_.folder.path())) {
        if (entry.path().has_extension()) left.insert(entry.path().filename());
    }
    EXPECT_THAT(left, ElementsAre("Kept.mkv", "atwork.log", "atwork.m4v", "folder.m4v", "link.m4v",
                                  "whole.m4v"));
    EXPECT_THAT(stored(), ElementsAre(atWork));
    std::string log;
    for (const auto& [priority, text] : platform_.systemLog.written) log += text + "\n";
    EXPECT_THAT(log, AllOf(HasSubstr("deleted"), HasSubstr("reused.m4v"), HasSubstr("kept"),
                           HasSubstr("whole.m4v"), Not(HasSubstr("atwork"))));
}

TEST_F(UnfinishedOutputsTest, NothingIsJudgedWhereNoProcessCanBeSeen) {
    platform_.host.processes.clear();
    const auto output = write("half.m4v");
    remember({{kGone, "then", output, "/nowhere.log"}});
    launch();
    EXPECT_TRUE(fs::exists(output));
    open({movie("Film.mkv")});
    EXPECT_EQ(stored().size(), 2U);
}

TEST_F(UnfinishedOutputsTest, EveryRunIsRememberedUntilItsEnd) {
    remember({{kOther, "then", "/other.m4v", "/other.log"}});
    platform_.host.processes[kOther] = "then";
    const auto outputs = [this] {
        std::vector<std::string> names;
        for (const auto& each : stored()) names.push_back(each.output.filename());
        return names;
    };
    open({movie("A.mkv"), movie("B.mkv"), movie("C.mkv")});
    EXPECT_THAT(outputs(), ElementsAre("other.m4v", "C.m4v"));
    EXPECT_EQ(stored().back().processID, ::getpid());
    EXPECT_TRUE(fs::exists(stored().back().progressFile));
    finish(0);
    EXPECT_THAT(outputs(), ElementsAre("other.m4v", "B.m4v"));
    fail(1);
    EXPECT_THAT(outputs(), ElementsAre("other.m4v", "A.m4v"));
    app_->applicationWillTerminate();
    EXPECT_THAT(outputs(), ElementsAre("other.m4v"));
}

}  // namespace
}  // namespace reelvane
