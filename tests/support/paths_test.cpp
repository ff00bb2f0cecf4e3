#include "support/paths.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>

#include "support/strings.h"
#include "tests/fakes/temporary_folder.h"

namespace Fennimar {
namespace {

namespace fs = std::filesystem;
using reelvane::TemporaryFolder;

TEST(UniqueFile, CountsFromZeroUntilANameIsFree) {
    const TemporaryFolder folder;
    const auto movie = folder.path() / "b.mkv";
    EXPECT_EQ(uniqueFile(movie), movie);
    folder.write("b.mkv");
    EXPECT_EQ(uniqueFile(movie), folder.path() / "b-0.mkv");
    fs::create_symlink("/nowhere", folder.path() / "b-0.mkv");  // a dead link is taken
    EXPECT_EQ(uniqueFile(movie), folder.path() / "b-1.mkv");
    EXPECT_EQ(uniqueFile(movie, [](const fs::path& path) { return path.stem() == "b-1"; }),
              folder.path() / "b-2.mkv");
    EXPECT_EQ(
        uniqueFile(folder.path() / "new", [](const auto& path) { return path.filename() == "new"; })
            .filename(),
        "new-0.");
    folder.write(".hidden");
    EXPECT_EQ(uniqueFile(folder.path() / ".hidden").filename(), ".hidden-0.");
}

TEST(UniqueFile, KeepsNamesWithinWhatFileSystemsTake) {
    const TemporaryFolder folder;
    std::string stem;
    for (int i = 0; i < 90; ++i) stem += "€";  // 270 bytes
    const auto first = uniqueFile(folder.path() / (stem + ".mp4"));
    EXPECT_EQ(first.filename().native(), stem.substr(0, 249) + ".mp4");
    folder.write(first.filename().native());
    const auto second = uniqueFile(folder.path() / (stem + ".mp4"));
    EXPECT_EQ(second.filename().native(), stem.substr(0, 249) + "-0.mp4");
}

TEST(NameCut, FallsOnACharacterAndKeepsTheExtension) {
    struct Case {
        std::string name;
        std::size_t maximum;
        std::size_t reserved;
        std::string cut;
    };
    for (const auto& [name, maximum, reserved, cut] :
         {Case{"short.mp4", 255, 2, "short.mp4"}, Case{"abcdef.mp4", 8, 0, "abcd.mp4"},
          Case{"abcdef.mp4", 8, 2, "ab.mp4"}, Case{"aé€.mp4", 9, 0, "aé.mp4"},
          Case{"aéx.mp4", 6, 0, "a.mp4"}, Case{"a.longextension", 6, 0, "a.long"},
          Case{"\xFF\xFE\xFD.ts", 5, 0, "\xFF\xFE.ts"}}) {
        EXPECT_EQ(withNameCut("/d/" + name, maximum, reserved).native(), "/d/" + cut) << name;
    }
}

TEST(WriteablePath, IsTriedWithoutATrace) {
    const TemporaryFolder folder;
    EXPECT_TRUE(isWriteablePath(folder.path() / "fresh"));
    EXPECT_TRUE(fs::is_empty(folder.path()));
    EXPECT_FALSE(isWriteablePath(folder.path() / "missing" / "fresh"));
    const auto file = folder.write("there", "content");
    EXPECT_FALSE(isWriteablePath(file));
    EXPECT_EQ(fileSize(file), 7U);
    fs::create_symlink(folder.path() / "target", folder.path() / "link");
    EXPECT_FALSE(isWriteablePath(folder.path() / "link"));  // must not write through it
    EXPECT_FALSE(fs::exists(folder.path() / "target"));
}

TEST(FileTests, TellLinksFromFilesAndNothing) {
    const TemporaryFolder folder;
    const auto file = folder.write("file", std::string("\x01\x00\x00\x00rest", 8));
    const auto link = folder.path() / "link";
    const auto dead = folder.path() / "dead";
    fs::create_symlink(file, link);
    fs::create_symlink("/nowhere", dead);
    EXPECT_TRUE(fileExists(link));
    EXPECT_FALSE(fileExists(dead));
    EXPECT_TRUE(fileIsAlias(dead));
    EXPECT_FALSE(fileIsAlias(file));
    EXPECT_EQ(fileSize(folder.path() / "missing"), 0U);
    EXPECT_EQ(readInt(file), 1U);
    EXPECT_EQ(readInt(folder.write("three", "abc")), std::nullopt);
    EXPECT_EQ(readInt(folder.path()), std::nullopt);
    removeFile(dead);
    removeFile(folder.path());  // a folder stays
    EXPECT_FALSE(fileIsAlias(dead));
    EXPECT_TRUE(fileExists(folder.path()));
}

}  // namespace
}  // namespace Fennimar
