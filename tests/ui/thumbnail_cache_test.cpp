#include "ui/jobs/thumbnail_cache.h"

#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <string_view>
#include <sys/stat.h>

#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

namespace fs = std::filesystem;
using namespace std::string_view_literals;

QImage picture() {
    QImage image(512, 256, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

mode_t modeOf(const fs::path& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

TEST(ThumbnailUri, IsTheOneThatGLibMakes) {
    const std::pair<std::string, std::string> rows[] = {
        {"/home/jens/photos/me.png", "file:///home/jens/photos/me.png"},
        {"/a/./b/..//c.mkv", "file:///a/c.mkv"},
        {"/a/\xFF\xFE x.mkv", "file:///a/%FF%FE%20x.mkv"},
        {"/\xC3\xBC #1/a%20b?.mkv", "file:///%C3%BC%20%231/a%2520b%3F.mkv"},
        {"/a!$&'()*+,:=@~_-.mkv", "file:///a!$&'()*+,:=@~_-.mkv"},
        {"/F;[x]{y}|^`\"<>\\.mkv", "file:///F%3B%5Bx%5D%7By%7D%7C%5E%60%22%3C%3E%5C.mkv"}};
    for (const auto& [file, uri] : rows) EXPECT_EQ(thumbnailUri(file), uri);
}

TEST(ThumbnailCache, AThumbnailLiesWhereOtherProgramsLookForTheUsersEyesAlone) {
    const TemporaryFolder folder;
    const ThumbnailOriginal original{"file:///home/jens/photos/me.png", 1234567890, 42};
    const ThumbnailCache cache(folder.path() / "new/cache", "reelvane", "1.0");
    cache.store(picture(), original, {{"Thumb::Movie::Length", "77"}});
    cache.storeFailure(original);
    const auto root = folder.path() / "new/cache/thumbnails";
    const std::string name = "c6ee772d9e49320e97ec29a7eb5b1697.png";  // the standard's own example
    for (const fs::path made : {"large", "fail/reelvane-1.0"}) {
        EXPECT_EQ(modeOf(root / made), 0700U);
        EXPECT_EQ(modeOf(root / made / name), 0600U) << made;
        const auto count = std::distance(fs::directory_iterator(root / made), {});
        EXPECT_EQ(count, 1) << "a temporary file stays behind";
    }
    const auto png = contentOf(root / "large" / name);
    for (const auto text :
         {"tEXtThumb::URI\0file:///home/jens/photos/me.png"sv, "tEXtThumb::MTime\0001234567890"sv,
          "tEXtThumb::Size\00042"sv, "tEXtThumb::Movie::Length\00077"sv}) {
        EXPECT_NE(png.find(text), std::string::npos) << text;
    }
}

TEST(ThumbnailCache, AThumbnailIsGoodOnlyForTheFileAsItWas) {
    const TemporaryFolder folder;
    const ThumbnailOriginal original{"file:///a.mkv", 100, 42};
    const ThumbnailCache cache(folder.path(), "reelvane", "1.0");
    cache.store(picture(), original);
    cache.storeFailure(original);
    EXPECT_FALSE(cache.find(original).isNull());
    EXPECT_TRUE(cache.hasFailed(original));
    EXPECT_FALSE(ThumbnailCache(folder.path(), "reelvane", "1.1").hasFailed(original));
    for (const auto& changed :
         {ThumbnailOriginal{original.uri, 99, 42}, ThumbnailOriginal{original.uri, 100, 43}}) {
        EXPECT_TRUE(cache.find(changed).isNull());
        EXPECT_FALSE(cache.hasFailed(changed));
    }
    const auto large = folder.path() / "thumbnails/large";
    fs::rename(large, folder.path() / "thumbnails/x-large");
    EXPECT_EQ(cache.find(original).size(), QSize(256, 128)) << "another program's, and larger";
}

TEST(ThumbnailCache, OnlyReadableFilesOutsideOfItHaveThumbnails) {
    const TemporaryFolder folder;
    const ThumbnailCache cache(folder.path(), "reelvane", "1.0");
    EXPECT_EQ(cache.originalOf(folder.write("a.mkv", "12"))->size, 2U);
    EXPECT_FALSE(cache.originalOf(folder.write("thumbnails/large/a.png")));
    EXPECT_FALSE(cache.originalOf(folder.path()));
    EXPECT_FALSE(cache.originalOf(folder.path() / "none"));
}

}  // namespace
}  // namespace reelvane
