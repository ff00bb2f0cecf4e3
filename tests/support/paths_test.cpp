#include "support/paths.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>

#include "support/posix_io.h"
#include "tests/fakes/temporary_folder.h"

namespace Fennimar {
namespace {

namespace fs = std::filesystem;
using reelvane::TemporaryFolder;

TEST(UniqueFile, CountsFromZeroUntilANameIsFree) {
    const TemporaryFolder folder;
    const auto unique = [&](const char* name, const char* promised = "") {
        return uniqueFile(folder.path() / name,
                          [=](const auto& path) { return path.stem() == promised; })
            .filename();
    };
    EXPECT_EQ(unique("b.mkv"), "b.mkv");
    folder.write("b.mkv");
    EXPECT_EQ(unique("b.mkv"), "b-0.mkv");
    fs::create_symlink("/nowhere", folder.path() / "b-0.mkv");  // a dead link is taken
    EXPECT_EQ(unique("b.mkv"), "b-1.mkv");
    EXPECT_EQ(unique("b.mkv", "b-1"), "b-2.mkv");
    EXPECT_EQ(unique("new", "new"), "new-0.");
    folder.write(".hidden");
    EXPECT_EQ(unique(".hidden"), ".hidden-0.");
    std::string stem;
    for (int i = 0; i < 90; ++i) stem += "€";  // 270 bytes; file systems take 255
    const auto cut = stem.substr(0, 249);
    EXPECT_EQ(unique((stem + ".mp4").c_str()), cut + ".mp4");
    folder.write(cut + ".mp4");
    EXPECT_EQ(unique((stem + ".mp4").c_str()), cut + "-0.mp4");
}

TEST(NameCut, FallsOnACharacterAndKeepsTheExtension) {
    for (const auto& [name, maximum, reserved, cut] :
         {std::tuple("short.mp4", 255U, 2U, "short.mp4"),
          {"abcdef.mp4", 8, 0, "abcd.mp4"},
          {"abcdef.mp4", 8, 2, "ab.mp4"},
          {"aé€.mp4", 9, 0, "aé.mp4"},
          {"aéx.mp4", 6, 0, "a.mp4"},
          {"a.longextension", 6, 0, "a.long"},
          {"\xFF\xFE\xFD.ts", 5, 0, "\xFF\xFE.ts"}}) {
        EXPECT_EQ(withNameCut(fs::path("/d") / name, maximum, reserved).native(),
                  std::string("/d/") + cut)
            << name;
    }
}

TEST(PrivateFolder, IsTheOwnersAloneWhateverTheUmaskSays) {
    const TemporaryFolder folder;
    for (const mode_t mask : {0000U, 0022U, 0777U}) {
        const auto inner = folder.path() / std::to_string(mask) / "inner";
        const auto before = ::umask(mask);
        EXPECT_TRUE(reelvane::makePrivateFolder(inner));
        ::umask(before);
        for (const auto& made : {inner, inner.parent_path()}) {
            EXPECT_EQ(std::filesystem::status(made).permissions(),
                      std::filesystem::perms::owner_all);
        }
        EXPECT_TRUE(reelvane::makePrivateFolder(inner)) << "it is there already";
    }
    folder.write("file");
    EXPECT_FALSE(reelvane::makePrivateFolder(folder.path() / "file"));
    EXPECT_FALSE(reelvane::makePrivateFolder("/dev/null/x"));
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

}  // namespace
}  // namespace Fennimar
