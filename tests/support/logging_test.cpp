#include "support/logging.h"

#include <algorithm>
#include <atomic>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "tests/fakes/fake_platform.h"

namespace reelvane {
namespace {

using testing::MatchesRegex;

/// The ring positions live as long as the process, so a test finds a slot by its message.
bool holds(const PreferenceValues& values, const std::string& message) {
    return std::ranges::any_of(
        values, [&](const auto& slot) { return slot.second.ends_with(" message: " + message); });
}

TEST(Log, KeepsTheLastTenMessagesOfEachLevelAndFortyThreeInTheRingOfItsOwn) {
    FakePlatform platform;
    auto& values = platform.store.values;
    vn_log_level(LogDebug, "other level");
    for (int i = 0; i < 11; ++i) vn_log_level(LogAlert, "number %i", i);
    platform.preferences.writeChanges();
    EXPECT_FALSE(holds(values, "number 0"));
    EXPECT_TRUE(holds(values, "number 1") && holds(values, "other level"));
    EXPECT_EQ(values.size(), 11U);
    EXPECT_THAT(values.at("vantor_asl_lev1_pos9"),
                MatchesRegex("date: [0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:"
                             "[0-9]{2} \\+0000 message: number [0-9]+"));
    values.clear();
    for (int i = 0; i < 44; ++i) log_to_prefs("entry " + std::to_string(i));
    platform.preferences.writeChanges();
    EXPECT_EQ(values.size(), 43U);
    EXPECT_FALSE(holds(values, "entry 0"));
    EXPECT_TRUE(values.contains("vantor_logtoprefs_pos42"));
}

TEST(Log, NoNameSteersTheLogOrForgesALineOfIt) {
    class LastLine final : public SystemLog {
    public:
        void write(int /*priority*/, const std::string& message) override { last = message; }
        std::string last;
    };
    LastLine systemLog;
    const TemporaryFolder folder;
    vn_log_enablecapturetofile(folder.path() / "log", 0);
    log_set_sinks({.systemLog = &systemLog});
    vn_log_level(LogNotice, "adding %@", "a\nNov 22 03:00 <Error>: b\x1b[2J\u202E\u061C.srt");
    log_set_sinks({});
    vn_log_enablecapturetofile("/dev/null", 0);
    const std::string safe = "adding a\n    Nov 22 03:00 <Error>: b\uFFFD[2J\uFFFD\uFFFD.srt";
    EXPECT_EQ(systemLog.last, safe);
    EXPECT_THAT(contentOf(folder.path() / "log"), testing::EndsWith(safe + "\n"));
}

TEST(Log, TakesMessagesFromManyThreadsWhileSinksComeAndGo) {
    class CountingLog final : public SystemLog {
    public:
        void write(int /*priority*/, const std::string& /*message*/) override { ++count; }
        std::atomic<int> count = 0;
    };
    CountingLog counting;
    log_set_sinks({.systemLog = &counting});
    std::vector<std::thread> threads;
    threads.reserve(3);
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([] {
            for (int n = 0; n < 200; ++n) vn_log_level(LogInfo, "n");
        });
    }
    for (int i = 0; i < 50; ++i) {
        CountingLog passing;  // dies as soon as it is no sink any more
        log_set_sinks({.systemLog = &passing});
        log_set_sinks({.systemLog = &counting});
        counting.count += passing.count;
    }
    for (auto& thread : threads) thread.join();
    log_set_sinks({});
    EXPECT_EQ(counting.count, 600);
}

TEST(LogCapture, MirrorsEveryMessageInItsLineForm) {
    const TemporaryFolder folder;
    log_set_sinks({.appName = "Reelvane"});
    const auto file = folder.path() / "capture.log";
    vn_log_enablecapturetofile(file, 100);
    vn_log_level(LogNotice, "hello");
    EXPECT_THAT(contentOf(file),
                MatchesRegex("[A-Z][a-z]{2} [0-9]{2} [0-9]{2}:[0-9]{2}  Reelvane\\[" +
                             std::to_string(::getpid()) + "\\] <Notice>: hello\n"));
    log_set_sinks({});
}

}  // namespace
}  // namespace reelvane
