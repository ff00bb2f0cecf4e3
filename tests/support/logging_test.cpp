#include "support/logging.h"

#include <atomic>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "tests/fakes/fake_platform.h"

namespace reelvane {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Pair;
using testing::UnorderedElementsAre;

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// The ring positions live as long as the process, so a test finds a slot by its message.
std::vector<std::string> keysOf(const PreferenceValues& values, const std::string& message) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : values) {
        if (value.ends_with(" message: " + message)) keys.push_back(key);
    }
    return keys;
}

TEST(Log, KeepsTheLastTenMessagesOfEachLevel) {
    FakePlatform platform;
    vn_log_level(kLogDebug, "other level");
    for (int i = 0; i < 11; ++i) vn_log_level(kLogAlert, "number %i", i);
    const auto& values = platform.store.values;
    EXPECT_TRUE(keysOf(values, "number 0").empty());
    ASSERT_EQ(keysOf(values, "number 10").size(), 1U);
    EXPECT_EQ(keysOf(values, "other level").size(), 1U);
    EXPECT_EQ(values.size(), 11U);
    for (int place = 0; place < 10; ++place) {
        const auto found = values.find("vantor_asl_lev1_pos" + std::to_string(place));
        ASSERT_NE(found, values.end()) << place;
        EXPECT_THAT(found->second,
                    MatchesRegex("date: [0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:"
                                 "[0-9]{2} \\+0000 message: number [0-9]+"));
    }
}

TEST(Log, KeepsFortyThreeMessagesInTheRingOfItsOwn) {
    FakePlatform platform;
    for (int i = 0; i < 44; ++i) log_to_prefs("entry " + std::to_string(i));
    EXPECT_EQ(platform.store.values.size(), 43U);
    EXPECT_TRUE(keysOf(platform.store.values, "entry 0").empty());
    EXPECT_TRUE(platform.store.values.contains("vantor_logtoprefs_pos42"));
}

TEST(Log, TellsTheSystemOfLevelsThatItKnows) {
    {
        FakePlatform platform;
        vn_log_level(kLogError, "%@ of %i", "one", 2);
        vn_log_level(8, "beyond");
        EXPECT_THAT(platform.systemLog.written, UnorderedElementsAre(Pair(3, "one of 2")));
        EXPECT_EQ(platform.store.values.size(), 1U);
    }
    vn_log_level(kLogError, "the sinks are gone");  // must not reach for them
}

TEST(Log, SurvivesASinkThatLogs) {
    class LoggingStore final : public PreferencesStore {
    public:
        [[nodiscard]] std::optional<std::string> value(std::string_view /*key*/) const override {
            return std::nullopt;
        }
        bool edit(const std::function<void(PreferenceValues&)>& /*change*/) override {
            ++edits;
            vn_log_level(kLogError, "cannot write");
            return false;
        }
        void synchronize() override {}
        int edits = 0;
    };
    LoggingStore store;
    Preferences preferences(store);
    FakeSystemLog system;
    log_set_sinks({.preferences = &preferences, .systemLog = &system});
    vn_log_level(kLogNotice, "outer");
    log_set_sinks({});
    EXPECT_EQ(store.edits, 1);
    EXPECT_THAT(system.written, UnorderedElementsAre(Pair(3, "cannot write"), Pair(5, "outer")));
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
            for (int n = 0; n < 200; ++n) vn_log_level(kLogInfo, "n");
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
    EXPECT_EQ(contentOf(file), "");
    vn_log_level(kLogNotice, "hello");
    const auto line = contentOf(file);
    EXPECT_THAT(line, MatchesRegex("[A-Z][a-z]{2} [0-9]{2} [0-9]{2}:[0-9]{2}  Reelvane.*\n"));
    EXPECT_THAT(line, EndsWith("Reelvane[" + std::to_string(::getpid()) + "] <Notice>: hello\n"));
    vn_log_level(kLogNotice, "odd \xFF byte");
    EXPECT_THAT(contentOf(file), HasSubstr("<Error>: could not open create data from string "));
    EXPECT_THAT(contentOf(file), HasSubstr("odd \uFFFD byte"));
    log_set_sinks({});
}

TEST(LogCapture, CutsALargeFileToItsEndAndSaysWhenItCannotOpen) {
    const TemporaryFolder folder;
    const auto content = std::string(50, 'a') + std::string(100, 'b');
    const auto cut = folder.write("cut", content);
    const auto whole = folder.write("whole", content);
    const auto small = folder.write("small", "abc");
    vn_log_enablecapturetofile(cut, 100);
    vn_log_enablecapturetofile(whole, 0);
    vn_log_enablecapturetofile(small, 100);
    EXPECT_EQ(contentOf(cut), std::string(100, 'b'));
    EXPECT_EQ(contentOf(whole), content);
    EXPECT_EQ(contentOf(small), "abc");
    FakeSystemLog system;
    log_set_sinks({.systemLog = &system});
    vn_log_enablecapturetofile(folder.path() / "no" / "file", 0);
    log_set_sinks({});
    ASSERT_EQ(system.written.size(), 1U);
    EXPECT_EQ(
        system.written.front().second,
        "could not open file " + (folder.path() / "no" / "file").native() + " for log file usage");
    EXPECT_EQ(contentOf(small), "abc");  // nothing is captured any more
}

}  // namespace
}  // namespace reelvane
