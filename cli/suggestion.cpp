#include "cli/suggestion.h"

#include <algorithm>
#include <vector>

#include "support/make_string.h"
#include "support/strings.h"

namespace reelvane {

std::size_t editDistance(std::string_view one, std::string_view other) {
    const auto a = Fennimar::lowercased(one);
    const auto b = Fennimar::lowercased(other);
    // Three rows of the usual table are enough: the swap looks two rows back.
    std::vector<std::size_t> beforeLast(b.size() + 1);
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        beforeLast.swap(last);
        last.swap(row);
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t cost = a[i - 1] == b[j - 1] ? 0 : 1;
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + cost});
            const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (swapped) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
    }
    return row[b.size()];
}

std::string suggestion(std::string_view word, std::span<const std::string> candidates) {
    const std::string* nearest = nullptr;
    std::size_t least = 0;
    for (const auto& candidate : candidates) {
        const auto distance = editDistance(word, candidate);
        if (nearest != nullptr && distance >= least) continue;
        nearest = &candidate;
        least = distance;
    }
    // One slip in three characters is still a slip; more is another word.
    if (nearest == nullptr || least * 3 > std::max(word.size(), nearest->size())) return {};
    return makeString(" Did you mean '%@'?", *nearest);
}

}  // namespace reelvane
