#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/logging.h"

namespace reelvane {
namespace {

TEST(BoundedText, KeepsBeginAndEndAndCountsWhatLayBetween) {
    const struct {
        std::vector<std::string> pieces;
        std::string text;
        std::uint64_t omitted;
    } rows[] = {
        {{}, "", 0},
        {{"abcd", "efgh"}, "abcdefgh", 0},
        {{"abcdefgh"}, "abcdefgh", 0},
        {{"abcdefghi"}, "ab\n[5 bytes were left out here]\nhi", 5},
        {{"abcdefghi", "jk"}, "ab\n[5 bytes were left out here]\nhijk", 5},
        {{"abcdefghi", "jklm", "n"}, "ab\n[10 bytes were left out here]\nmn", 10},
    };
    for (const auto& row : rows) {
        BoundedText bounded(2);
        for (const auto& piece : row.pieces) bounded.append(piece);
        EXPECT_EQ(bounded.text(), row.text);
        EXPECT_EQ(bounded.omittedBytes(), row.omitted);
    }
}

}  // namespace
}  // namespace reelvane
