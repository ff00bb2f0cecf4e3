#include <gmock/gmock.h>

#include "app/opened_files.h"
#include "support/paths.h"
#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

using testing::ElementsAre;
using Paths = std::vector<std::filesystem::path>;

TEST(FileSorting, TellsMoviesAndTextSubtitlesApart) {
    TemporaryFolder folder;
    const auto pictures = folder.write("p.sub", std::string_view("\x00\x00\x01\xBA rest", 9));
    const auto text = folder.write("t.SUB", "{1}{2}Hi");
    const auto sorted = sortFiles(Paths{"/a.MKV", "/missing.sub", pictures, "/b.srt", "/c.txt",
                                        "/noext", "/d.ts", text, "/.mkv", "/e.smi"},
                                  Fennimar::readInt);
    EXPECT_THAT(sorted.movies, ElementsAre("/d.ts", "/a.MKV"));
    EXPECT_THAT(sorted.subtitles, ElementsAre("/b.srt", "/e.smi", "/missing.sub", text));
}

}  // namespace
}  // namespace reelvane
