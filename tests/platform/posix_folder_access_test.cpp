#include "platform/posix_folder_access.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

using testing::ElementsAre;

TEST(PosixFolderAccess, ABookmarkIsThePathOfAFolder) {
    const TemporaryFolder folder;
    const auto kept = folder.write("k\xff pt/file").parent_path();
    PosixFolderAccess access;
    const auto bookmark = access.createBookmark(kept / "").bookmark;
    EXPECT_EQ(bookmark, kept.native());
    EXPECT_EQ(access.resolveBookmark(*bookmark).folder, kept);
    for (const auto& bad : {kept / "gone", kept / "file", std::filesystem::path("relative")}) {
        EXPECT_FALSE(access.resolveBookmark(bad).error.empty()) << bad;
    }
}

TEST(PosixFolderAccess, AccessStartsWhereTheFolderCanBeListedAndWritten) {
    const TemporaryFolder folder;
    PosixFolderAccess access;
    EXPECT_TRUE(access.startAccessing(folder.path()));
    EXPECT_FALSE(access.startAccessing(folder.path() / "gone"));
    const auto user = ::geteuid();
    permissions(folder.path(), std::filesystem::perms{0555});
    // For root nothing is forbidden.
    ASSERT_EQ(::seteuid(user == 0 ? 65534 : user), 0);
    EXPECT_FALSE(access.startAccessing(folder.path()));
    ASSERT_EQ(::seteuid(user), 0);
    permissions(folder.path(), std::filesystem::perms::all);
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
