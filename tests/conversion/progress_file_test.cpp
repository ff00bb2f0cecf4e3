#include "conversion/progress_file.h"

#include <fstream>
#include <gtest/gtest.h>
#include <set>

#include "conversion/free_space.h"
#include "tests/fakes/fake_platform.h"

namespace reelvane {
namespace {

TEST(ProgressText, TheEarliestPositionCounts) {
    EXPECT_EQ(earliestOutTime("frame=1\nout_time_ms=10000000\nx\nout_time_ms=20000000\n"), 10);
    EXPECT_EQ(earliestOutTime("out_time_ms=0\nout_time_ms=5000000\n"), std::nullopt);
    EXPECT_EQ(earliestOutTime("out_time_ms=-5000000\n"), std::nullopt);
    EXPECT_EQ(earliestOutTime(" out_time_ms=5000000\nout_time=1\n"), std::nullopt);
    EXPECT_EQ(progressPercent(10, 100), 10);
    EXPECT_EQ(progressPercent(101, 100), 100);
    EXPECT_EQ(progressPercent(10, 0), std::nullopt);
    EXPECT_EQ(progressPercent(10, std::nullopt), std::nullopt);
}

TEST(ProgressFile, ReadsOnlyWhatIsNew) {
    const TemporaryFolder folder;
    ProgressFile file(folder.path() / "p.log");
    EXPECT_EQ(file.readOutTime(), std::nullopt) << "not there yet";
    folder.write("p.log", "out_time_ms=1000000\n");
    EXPECT_EQ(file.readOutTime(), 1);
    EXPECT_EQ(file.readOutTime(), std::nullopt);
    std::ofstream(file.path(), std::ios::app) << "out_time_ms=2000000\n";
    EXPECT_EQ(file.readOutTime(), 2);
}

TEST(ProgressFile, NamesAreNeverShared) {
    const TemporaryFolder folder;
    std::set<std::filesystem::path> names;
    for (int i = 0; i < 12; ++i) {
        names.insert(ProgressFile::create(folder.path(), std::string(300, 'n'))->path());
    }
    EXPECT_EQ(names.size(), 12);
    for (const auto& name : names) EXPECT_TRUE(std::filesystem::exists(name)) << name;
}

TEST(ProgressFile, GoesToATemporaryFolderWhereTheUsualOnesCannotBeWritten) {
    FakePlatform platform;
    platform.host.userFolders.documents = platform.host.userFolders.applicationData = "/dev/null/x";
    auto file = ProgressFile::create(platform.vantor, "movie.mkv");
    ASSERT_TRUE(file);
    const auto path = file->path();
    EXPECT_EQ(path.filename(), "movie.mkv.log");
    EXPECT_EQ(progressLockOf(path), ProgressLock::Held);
    file->remove();
    EXPECT_FALSE(std::filesystem::exists(path.parent_path()));
    EXPECT_EQ(progressLockOf(path), ProgressLock::Unknown);
    EXPECT_FALSE(ProgressFile::create("/dev/null/x", "movie.mkv"));
}

TEST(FreeSpace, ExactlyEnoughPasses) {
    EXPECT_EQ(spaceProblem(10, {.freeSize = 10}), "");
    EXPECT_EQ(spaceProblem(10, {.freeSize = 20, .maximumFileSize = 10}), "");
    EXPECT_EQ(spaceProblem(10, {.freeSize = 9, .maximumFileSize = 9}),
              "There is not enough free space on your target disk for conversion.");
    EXPECT_EQ(spaceProblem(10, {.freeSize = 20, .maximumFileSize = 9}),
              "Your target disk doesn't support large files.");
    EXPECT_FALSE(volumeFacts("/missing"));
}

}  // namespace
}  // namespace reelvane
