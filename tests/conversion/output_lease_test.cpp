#include "conversion/output_lease.h"

#include <gmock/gmock.h>

#include "tests/fakes/fake_job_controller.h"
#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using Keeping = RunFiles::Keeping;

class OutputLeaseTest : public testing::Test {
protected:
    [[nodiscard]] OutputLease take(const fs::path& output, OutputClaim claim = OutputClaim::None) {
        auto taken = OutputLease::take(
            keeper_, {.fileName = "a.mkv", .destinationURL = output, .outputClaim = claim},
            {"", "/dev/null/no", folder_.path() / "progress"});
        EXPECT_EQ(taken.refusal, OutputLease::Refusal::None);
        return std::move(taken.lease);
    }
    [[nodiscard]] std::vector<std::string> left() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator(folder_.path())) {
            if (!entry.is_directory()) names.push_back(entry.path().filename());
        }
        std::ranges::sort(names);
        return names;
    }

    TemporaryFolder folder_;
    fs::path output_ = folder_.path() / "a.mp4";
    std::shared_ptr<FakeKeeper> keeper_ = std::make_shared<FakeKeeper>();
    bool made_ = fs::create_directory(folder_.path() / "progress");
};

TEST_F(OutputLeaseTest, WhatIsNotKeptGoesAndATakenNameIsExchanged) {
    {
        const auto first = take(output_);
        const auto second = take(output_);
        EXPECT_EQ(second.files()->destination().filename(), "a-0.mp4");
        EXPECT_EQ(second.files()->workPath(), second.files()->destination());
        EXPECT_EQ(keeper_->noted, second.files()->workPath());
        EXPECT_THAT(left(), ElementsAre("a-0.mp4", "a.mkv-0.log", "a.mkv.log", "a.mp4"));
        EXPECT_EQ(first.files()->keep(), Keeping::Kept);
        EXPECT_EQ(second.files()->keep(), Keeping::Kept);
        auto third = take(output_);
        const auto files = third.files();
        third.end();
        EXPECT_EQ(files->keep(), Keeping::Unwanted);
    }
    EXPECT_THAT(left(), ElementsAre("a-0.mp4", "a.mp4"));
    EXPECT_TRUE(keeper_->notedBeforeMade);
}

TEST_F(OutputLeaseTest, WhatIsReplacedStaysUntilTheNewFileIsProven) {
    const auto old = folder_.write("a.mp4", "old");
    for (const bool proven : {false, true}) {
        {
            const auto lease = take(old, OutputClaim::Chosen);
            EXPECT_EQ(lease.files()->destination(), old);
            EXPECT_EQ(lease.files()->workPath().filename(), "a.unfinished.mp4");
            folder_.write("a.unfinished.mp4", "new");
            EXPECT_EQ(contentOf(old), "old");
            if (proven) {
                EXPECT_EQ(lease.files()->keep(), Keeping::Kept);
                EXPECT_EQ(lease.files()->keptPath(), old);
            }
        }
        EXPECT_EQ(contentOf(old), proven ? "new" : "old");
        EXPECT_THAT(left(), ElementsAre("a.mp4"));
    }
    fs::remove(old);
    const auto gone = take(old, OutputClaim::Chosen);
    EXPECT_EQ(gone.files()->workPath(), old) << "nothing is there to be replaced";
    fs::remove(old);
    fs::create_directory(old);
    const auto unreplaced = take(old, OutputClaim::Chosen);
    EXPECT_EQ(unreplaced.files()->keep(), Keeping::Unreplaced);
}

TEST_F(OutputLeaseTest, TheVeryFileIsMeantWhateverLiesAtItsPath) {
    const auto moved = folder_.path() / "moved.mp4";
    const auto moveAway = [&] { fs::rename(output_, moved); };
    struct Row {
        const char* what;
        std::function<void()> meddle;
        Keeping keeping;
        std::vector<std::string> kept;
        std::vector<std::string> discarded;
    };
    const std::vector<Row> rows = {
        {"deleted", [&] { fs::remove(output_); }, Keeping::Gone, {}, {}},
        {"replaced by another program's file",
         [&] { fs::rename(folder_.write("other", "other"), output_); },
         Keeping::Gone,
         {"a.mp4"},
         {"a.mp4"}},
        {"moved by the user", moveAway, Keeping::Kept, {"moved.mp4"}, {}},
        {"moved, and another put in its place",
         [&] { moveAway(), folder_.write("a.mp4", "other"); },
         Keeping::Kept,
         {"a.mp4", "moved.mp4"},
         {"a.mp4"}}};
    for (const auto& row : rows) {
        for (const bool keep : {true, false}) {
            SCOPED_TRACE(row.what);
            {
                const auto lease = take(output_);
                folder_.write("a.mp4", "own");
                row.meddle();
                if (keep) {
                    EXPECT_EQ(lease.files()->keep(), row.keeping);
                }
                if (row.keeping == Keeping::Kept) {
                    EXPECT_EQ(contentOf(lease.files()->heldPath()), "own");
                }
            }
            EXPECT_EQ(left(), keep ? row.kept : row.discarded);
            for (const auto& name : left()) fs::remove(folder_.path() / name);
        }
    }
}

}  // namespace
}  // namespace reelvane
