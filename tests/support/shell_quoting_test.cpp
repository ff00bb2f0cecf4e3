#include <gtest/gtest.h>
#include <vector>

#include "support/make_string.h"

namespace reelvane {
namespace {

TEST(ShellQuoting, AShellReadsBackWhatWasMeant) {
    EXPECT_EQ(shellQuoted("-map"), "-map");
    EXPECT_EQ(shellQuoted(""), "''");
    EXPECT_EQ(shellQuoted("[0:1]volume=0.50[out]"), "'[0:1]volume=0.50[out]'");
    EXPECT_EQ(shellQuoted("it's"), R"('it'\''s')");
    EXPECT_EQ(shellQuoted("a\nb\x01'\\"), R"($'a\nb\001\'\\')");
    EXPECT_EQ(shellQuoted("\xFF é"), R"($'\377 é')");
    EXPECT_EQ(shellQuoted("\u202E'é"), R"($'\342\200\256\'é')") << "nothing steers a terminal";
    EXPECT_EQ(shellQuotedLine(std::vector<std::string>{"-i", "a b"}), "-i 'a b'");
}

}  // namespace
}  // namespace reelvane
