#include "platform/ini_preferences_store.h"

#include <csignal>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

using std::filesystem::path;
using testing::HasSubstr;
using testing::Optional;
using testing::UnorderedElementsAre;

std::vector<std::string> namesIn(const path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename());
    }
    return names;
}

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
    path file = folder.path() / "p.ini";
    IniPreferencesStore store{file};
};

TEST_F(IniStore, AnAbsentFileIsMadeByTheFirstChangeForThisUserAlone) {
    file = folder.path() / "config/Some.Program/Some.Program.ini";
    IniPreferencesStore absent(file);
    EXPECT_FALSE(absent.value("a") || absent.problem());
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "config"));
    EXPECT_TRUE(absent.edit([](PreferenceValues&) {}));
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_TRUE(set(absent, "a", "1"));
    EXPECT_THAT(absent.value("a"), Optional(std::string("1")));
    using std::filesystem::perms;
    EXPECT_EQ(status(file).permissions(), perms::owner_read | perms::owner_write);
    EXPECT_EQ(status(file.parent_path()).permissions(), perms::owner_all);
    EXPECT_THAT(namesIn(file.parent_path()),
                UnorderedElementsAre("Some.Program.ini", "Some.Program.ini.lock"));
}

TEST_F(IniStore, KeysAndValuesMayBeAnyBytes) {
    PreferenceValues everything;
    for (const auto* const key :
         {"", "%", "%%3D", "%25", "%=", "%4", "_a/b [x]_asked", "vantor_asl_lev%i_pos%i", "#c",
          "[g]", "Name[de]", " a ", "a\nb", "\xFF", "ü", "Encoding", "a=b", "x\\n"}) {
        everything.emplace(key, std::string("value of ") + key);
    }
    for (int byte = 0; byte < 256; ++byte) {
        const std::string one(1, static_cast<char>(byte));
        everything.emplace("byte" + std::to_string(byte), one + one);
        everything.emplace("key" + one, "in" + one + "side\\");
    }
    everything["utf8"] = "Größe 大きさ \xC3";
    everything["blanks"] = "  two  ";
    everything["escapes"] = R"(C:\new\xFF\s\q \\n)";
    everything["empty"] = "";
    ASSERT_TRUE(store.edit([&](PreferenceValues& values) { values = everything; }));
    IniPreferencesStore(file).edit([&](PreferenceValues& read) { EXPECT_EQ(read, everything); });
    EXPECT_THAT(contentOf(file), HasSubstr("\nvantor_asl_lev%i_pos%i=value of "));
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
    EXPECT_EQ(
        contentOf(file),
        "# by hand\n\n[Other]\nx=1\n\n[Preferences]\n# why\nName[de]=N\nPath=C:\\dir\nold=3\n");
}

TEST_F(IniStore, ReadersSeeEveryChangeOfOtherProcesses) {
    const IniPreferencesStore reader(file);
    for (int i = 0; i < 50; ++i) {  // same size, same clock tick, inode numbers up for reuse
        const auto text = std::to_string(100 + i);
        ASSERT_TRUE(set(store, "a", text));
        ASSERT_THAT(reader.value("a"), Optional(text));
    }
    std::filesystem::remove(file);
    EXPECT_EQ(reader.value("a"), std::nullopt);
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

TEST(IniPreferencesStore, ProcessesAndThreadsAtOnceLoseNothing) {
    ::setenv("TMPDIR", "/dev/shm", 1);  // no disk to wait for
    const TemporaryFolder folder;
    ::unsetenv("TMPDIR");
    IniPreferencesStore store(folder.path() / "p.ini");
    const auto other = startProcess([&] { return countUp(store, "child", 200); });
    std::thread thread([&] { EXPECT_TRUE(countUp(store, "thread", 200)); });
    EXPECT_TRUE(countUp(store, "parent", 200));
    thread.join();
    EXPECT_TRUE(endedWell(other));
    EXPECT_TRUE(store.edit([](PreferenceValues& all) { EXPECT_EQ(all.size(), 3U * 20 + 1); }));
    EXPECT_THAT(store.value("count"), Optional(std::string("600")));
}

TEST_F(IniStore, ASymbolicLinkIsFollowed) {
    std::filesystem::create_directory(folder.path() / "kept");
    std::filesystem::create_symlink("kept/real.ini", file);
    for (const auto* const value : {"1", "2"}) {
        ASSERT_TRUE(set(store, "a", value));
        EXPECT_TRUE(std::filesystem::is_symlink(file));
        EXPECT_EQ(contentOf(folder.path() / "kept/real.ini"),
                  std::string("[Preferences]\na=") + value + "\n");
    }
}

void expectSetAside(const path& file, const path& kept, bool byEdit) {
    SCOPED_TRACE(kept);
    const auto type = std::filesystem::symlink_status(file).type();
    IniPreferencesStore store(file);
    EXPECT_TRUE(byEdit ? set(store, "a", "1") : store.value("a") == std::nullopt);
    EXPECT_EQ(std::filesystem::symlink_status(kept).type(), type);
    EXPECT_THAT(store.problem(), Optional(testing::AllOf(HasSubstr('"' + file.native() + '"'),
                                                         HasSubstr('"' + kept.native() + '"'))));
    EXPECT_TRUE(set(store, "a", "2"));
    EXPECT_THAT(IniPreferencesStore(file).value("a"), Optional(std::string("2")));
}

TEST_F(IniStore, WhatCannotBeReadIsSetAside) {
    folder.write("p.ini.damaged", "earlier");
    const std::vector<std::function<void()>> damages = {
        [&] { folder.write("p.ini", "[Preferences]\nno pair\n"); },
        [&] { folder.write("p.ini", std::string(50, '\0')); },
        [&] { std::filesystem::create_directory(file); },
        [&] { ::mkfifo(file.c_str(), 0600); },
        [&] { std::filesystem::create_symlink("/dev/null", file); },
        [&] { std::filesystem::create_symlink("p.ini", file); },
    };
    for (std::size_t i = 0; i < damages.size(); ++i) {
        std::filesystem::remove_all(file);
        damages[i]();
        expectSetAside(file, file.native() + ".damaged-" + std::to_string(i + 1), i % 2 == 0);
    }
    EXPECT_EQ(contentOf(file.native() + ".damaged"), "earlier");
}

TEST_F(IniStore, WhereNothingCanBeWrittenTheOldFileStaysWhole) {
    const auto good = folder.write("good.ini", "[Preferences]\na=1\n");
    const auto bad = folder.write("bad.ini", "junk");
    folder.write("good.ini.lock", "");
    folder.write("bad.ini.lock", "");
    ::chmod(folder.path().c_str(), 0555);
    const auto process = startProcess([&] {
        // To the superuser no folder is read-only.
        if (::getuid() == 0 && ::setresuid(65534, 65534, 65534) != 0) return false;
        IniPreferencesStore readable(good);
        IniPreferencesStore damaged(bad);
        return !set(readable, "a", "2") && readable.value("a") == "1" && !set(damaged, "a", "2") &&
               damaged.value("a") == std::nullopt &&
               damaged.problem()->find("will not be saved") != std::string::npos;
    });
    EXPECT_TRUE(endedWell(process));
    ::chmod(folder.path().c_str(), 0755);
    EXPECT_EQ(contentOf(bad), "junk");
    EXPECT_EQ(contentOf(good), "[Preferences]\na=1\n");
    EXPECT_EQ(namesIn(folder.path()).size(), 4U);
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
    EXPECT_EQ(contentOf(file), "[Preferences]\na=1\n");
    EXPECT_THAT(namesIn(folder.path()), UnorderedElementsAre("p.ini", "p.ini.lock"));
}

}  // namespace
}  // namespace reelvane
