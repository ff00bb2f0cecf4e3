#include "platform/posix_folder_access.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

using testing::ElementsAre;

TEST(PosixFolderAccess, ABookmarkIsThePath) {
    const TemporaryFolder folder;
    const auto kept = folder.path() / "k\xff pt";
    std::filesystem::create_directory(kept);
    PosixFolderAccess access;
    const auto bookmark = access.createBookmark(kept / ".." / kept.filename() / "").bookmark;
    EXPECT_EQ(bookmark, kept.native());
    EXPECT_EQ(access.resolveBookmark(*bookmark).folder, kept);
    EXPECT_EQ(access.createBookmark("/").bookmark, "/");
}

TEST(PosixFolderAccess, ABookmarkIsMadeOfAndFindsOnlyAFolder) {
    const TemporaryFolder folder;
    PosixFolderAccess access;
    const auto file = folder.write("file");
    for (const auto& bad :
         {folder.path().native() + "/gone", file.native(), std::string("relative"), std::string(),
          folder.path().native() + std::string("\0x", 2)}) {
        EXPECT_FALSE(access.resolveBookmark(bad).error.empty()) << bad;
    }
    EXPECT_FALSE(access.createBookmark(file).error.empty());
}

TEST(PosixFolderAccess, AccessStartsWhereTheFolderCanBeListedAndWritten) {
    const TemporaryFolder folder;
    PosixFolderAccess access;
    EXPECT_TRUE(access.startAccessing(folder.path()));
    access.stopAccessing(folder.path());
    EXPECT_FALSE(access.startAccessing(folder.path() / "gone"));
    EXPECT_FALSE(access.startAccessing(folder.write("file")));

    namespace fs = std::filesystem;
    const auto user = ::geteuid();
    const auto readable = fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read |
                          fs::perms::others_exec;
    fs::permissions(folder.path(), readable);
    // For root nothing is forbidden.
    ASSERT_EQ(::seteuid(user == 0 ? 65534 : user), 0);
    EXPECT_FALSE(access.startAccessing(folder.path()));
    ASSERT_EQ(::seteuid(user), 0);
    fs::permissions(folder.path(), fs::perms::all);
}

TEST(PosixFolderAccess, ASandboxGrantsOnlyThePortalsAndTheBookmarkedFolders) {
    const TemporaryFolder folder;
    ::setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
    const auto marker = folder.path() / "marker";
    PosixFolderAccess access(marker);
    static_cast<void>(access.createBookmark(folder.path()));
    EXPECT_FALSE(isSandboxed(marker));
    EXPECT_THAT(access.grantedFolders(), ElementsAre("/"));
    folder.write("marker");
    EXPECT_TRUE(isSandboxed(marker));
    EXPECT_THAT(access.grantedFolders(), ElementsAre(folder.path() / "doc", folder.path()));
}

}  // namespace
}  // namespace reelvane
