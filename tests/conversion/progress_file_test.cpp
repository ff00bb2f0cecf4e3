#include "conversion/progress_file.h"

#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>

#include "conversion/job_start.h"
#include "support/posix_io.h"
#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

TEST(ProgressText, TheEarliestPositionCounts) {
    EXPECT_EQ(earliestOutTime("frame=1\nout_time_ms=10000000\nx\nout_time_ms=20000000\n"), 10);
    EXPECT_EQ(earliestOutTime("out_time_ms=0\nout_time_ms=5000000\n"), std::nullopt);
    EXPECT_EQ(earliestOutTime("out_time_ms=-5000000\n"), std::nullopt);
    EXPECT_EQ(earliestOutTime(" out_time_ms=5000000\nout_time=1\n"), std::nullopt);
}

TEST(ProgressText, BytesCountWhereNoTimeIsReported) {
    const struct {
        const char* text;
        std::optional<int> runtime;
        std::uint64_t inputBytes;
        std::optional<double> percent;
    } rows[] = {
        {"total_size=5000\nout_time_ms=10000000\nout_time=00:00:10.0\n", 100, 10000, 10},
        {"out_time_ms=101000000\n", 100, 10000, 100},
        {"total_size=5000\nout_time_us=N/A\nout_time_ms=N/A\nout_time=N/A\n", 100, 10000, 50},
        {"total_size=1000\nout_time_ms=N/A\ntotal_size=2000\n", 100, 10000, 20},
        {"total_size=12000\nout_time_ms=-9223372036854775808\n", 100, 10000, 100},
        {"total_size=5000\nout_time_ms=10000000\n", std::nullopt, 10000, 50},
        {"total_size=5000\nout_time_ms=10000000\n", 0, 10000, 50},
        {"total_size=N/A\nout_time_ms=N/A\n", 100, 10000, std::nullopt},
        {"total_size=5000\n", 100, 0, std::nullopt},
        {"", 100, 10000, std::nullopt},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(progressPercent(readProgress(row.text), row.runtime, row.inputBytes), row.percent)
            << row.text;
    }
}

TEST(ProgressReader, ReadsOnlyWhatIsNew) {
    const TemporaryFolder folder;
    const auto path = folder.write("p.log", "");
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    ProgressReader reader;
    EXPECT_EQ(reader.readNew(file.get()).outTime, std::nullopt) << "nothing yet";
    folder.write("p.log", "out_time_ms=1000000\n");
    EXPECT_EQ(reader.readNew(file.get()).outTime, 1);
    EXPECT_EQ(reader.readNew(file.get()).outTime, std::nullopt);
    std::ofstream(path, std::ios::app) << "out_time_ms=2000000\n";
    EXPECT_EQ(reader.readNew(file.get()).outTime, 2);
    EXPECT_EQ(reader.readNew(-1).outTime, std::nullopt);
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
