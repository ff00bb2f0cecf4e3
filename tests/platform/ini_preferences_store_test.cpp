#include "platform/ini_preferences_store.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "support/localization.h"
#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

using testing::HasSubstr;
using testing::Optional;

/// Starts a process that plays this part.
pid_t startProcess(const std::function<bool()>& part) {
    const pid_t process = ::fork();
    if (process == 0) ::_exit(part() ? 0 : 1);
    return process;
}

bool endedWell(pid_t process) {
    int status = -1;
    return ::waitpid(process, &status, 0) == process && status == 0;
}

bool set(PreferencesStore& store, const std::string& key, const std::string& value) {
    return store.edit([&](PreferenceValues& values) { values[key] = value; });
}

struct IniStore : testing::Test {
    TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "p.ini";
    IniPreferencesStore store{file};
};

TEST_F(IniStore, KeysAndValuesMayBeAnyBytes) {
    PreferenceValues everything{{"", ""}, {"a=b", "  two  "}, {"[g]", R"(C:\new\xFF\s\q \\n)"}};
    for (int byte = 0; byte < 256; ++byte) {
        const std::string one(1, static_cast<char>(byte));
        everything.emplace(one, one + one);
        everything.emplace("key" + one, "in" + one + "side\\");
    }
    ASSERT_TRUE(store.edit([&](PreferenceValues& values) { values = everything; }));
    IniPreferencesStore(file).edit([&](PreferenceValues& read) { EXPECT_EQ(read, everything); });
}

TEST_F(IniStore, AValueStandsAsItIsAndOneOfAnEarlierVersionIsReadAsItWasMeant) {
    const std::string before = R"([Preferences]
%=C:\\new
%46ileFormat=\stwo\s
list=(a\\\\;b\\;c;)
odd=\\{0A}\\\\{41}\\x41\x01\xFF\\
)";
    const std::string now = R"([Preferences]
%=C:\new
%46ileFormat=\{20}two\{20}
list=(a\\;b\;c;)
odd=\{5C}{0A}\\{5C}{41}\x41\{01}\{FF}\
FileFormat=2
n=1
)";
    const PreferenceValues meant{{"", R"(C:\new)"},
                                 {"FileFormat", " two "},
                                 {"list", R"((a\\;b\;c;))"},
                                 {"odd", R"(\{0A}\\{41}\x41)" + std::string("\x01\xFF\\")}};
    const auto expectMeant = [&meant](PreferenceValues values) { EXPECT_EQ(values, meant); };
    folder.write("p.ini", before);
    EXPECT_TRUE(store.edit(expectMeant));
    EXPECT_EQ(contentOf(file), before);
    EXPECT_TRUE(set(store, "n", "1"));
    EXPECT_EQ(contentOf(file), now);
    EXPECT_TRUE(store.edit([](PreferenceValues& values) { values.erase("n"); }));
    EXPECT_TRUE(IniPreferencesStore(file).edit(expectMeant));
}

TEST_F(IniStore, WhatOthersWroteSurvivesAnEdit) {
    folder.write("p.ini",
                 "# by hand\n\n[Other]\nx=1\n\n[Preferences]\n# why\nName[de]=N\n"
                 "Path=C:\\dir\nold=1\ngone=2\n");
    EXPECT_THAT(store.value("Path"), Optional(std::string("C:\\dir")));
    ASSERT_TRUE(store.edit([](PreferenceValues& values) {
        values["old"] = "3";
        values.erase("gone");
    }));
    EXPECT_EQ(contentOf(file),
              "# by hand\n\n[Other]\nx=1\n\n[Preferences]\n# why\nName[de]=N\nPath=C:\\dir\nold=3\n"
              "FileFormat=2\n");
}

/// Counts one shared key up, and writes keys of its own.
bool countUp(IniPreferencesStore& store, const std::string& name, int times) {
    bool well = true;
    for (int i = 0; i < times; ++i) {
        well &= store.edit([&](PreferenceValues& values) {
            auto& number = values["count"];
            number = std::to_string(number.empty() ? 1 : std::stoi(number) + 1);
            values[name + std::to_string(i / 10)] = number;
        });
    }
    return well;
}

TEST_F(IniStore, ProcessesAndThreadsAtOnceLoseNothing) {
    const auto other = startProcess([&] { return countUp(store, "child", 50); });
    std::thread thread([&] { EXPECT_TRUE(countUp(store, "thread", 50)); });
    EXPECT_TRUE(countUp(store, "parent", 50));
    thread.join();
    EXPECT_TRUE(endedWell(other));
    EXPECT_TRUE(store.edit([](PreferenceValues& all) { EXPECT_EQ(all.size(), 3U * 5 + 1); }));
    EXPECT_THAT(store.value("count"), Optional(std::string("150")));
}

TEST_F(IniStore, AHolderThatNeverEndsIsWaitedForOnce) {
    IniPreferencesStore patient(file, {.time = std::chrono::milliseconds(50)});
    int told = 0;
    patient.setHeldHandler([&told] { ++told; });
    ASSERT_TRUE(set(patient, "before", "1"));
    {
        const FileDescriptor holder(::open((file.native() + ".lock").c_str(), O_RDONLY));
        ASSERT_EQ(::flock(holder.get(), LOCK_EX), 0);
        EXPECT_FALSE(set(patient, "meanwhile", "1"));
        EXPECT_FALSE(set(patient, "meanwhile", "2"));
        EXPECT_EQ(told, 1);
        EXPECT_THAT(patient.problem(kUntranslated), Optional(HasSubstr("Another program holds")));
        EXPECT_THAT(patient.value("before"), Optional(std::string("1")));
        const FileDescriptor cancel(::eventfd(1, EFD_CLOEXEC));
        IniPreferencesStore cancelled(
            file, {.time = std::chrono::hours(1), .cancelDescriptor = cancel.get()});
        EXPECT_FALSE(set(cancelled, "meanwhile", "3"));
    }
    EXPECT_TRUE(set(patient, "after", "1"));
}

TEST_F(IniStore, ADamagedFileIsSetAside) {
    folder.write("p.ini.damaged", "earlier");
    folder.write("p.ini", "[Preferences]\nno pair\n");
    EXPECT_EQ(store.value("a"), std::nullopt);
    EXPECT_THAT(store.problem(kUntranslated), Optional(HasSubstr(file.native() + ".damaged-1\"")));
    EXPECT_TRUE(set(store, "a", "2"));
    EXPECT_EQ(contentOf(file), "[Preferences]\nFileFormat=2\na=2\n");
    EXPECT_EQ(contentOf(file.native() + ".damaged"), "earlier");
    EXPECT_EQ(contentOf(file.native() + ".damaged-1"), "[Preferences]\nno pair\n");
}

TEST_F(IniStore, AWriteCutShortLeavesTheOldFileAndNothingElse) {
    ASSERT_TRUE(set(store, "a", "1"));
    const auto process = startProcess([&] {
        // The file size limit stands for a full disk: the write stops in the middle.
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{.rlim_cur = 1000, .rlim_max = 1000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        return !set(store, "b", std::string(5000, 'x')) && store.value("b") == std::nullopt;
    });
    EXPECT_TRUE(endedWell(process));
    EXPECT_EQ(contentOf(file), "[Preferences]\nFileFormat=2\na=1\n");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 2)
        << "the file and its lock";
}

}  // namespace
}  // namespace reelvane
