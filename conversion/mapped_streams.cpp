#include "conversion/mapped_streams.h"

#include <algorithm>
#include <string_view>

#include "support/strings.h"

namespace reelvane {
namespace {

/// "0:1" out of "[0:1]volume=1.50[out]", which makes the stream "[out]"; empty without a filter.
std::string_view filteredStream(const std::vector<std::string>& arguments) {
    const auto option = std::ranges::find(arguments, "-filter_complex");
    if (option == arguments.end() || std::next(option) == arguments.end()) return {};
    const auto begin = Fennimar::partAfter(*std::next(option), "[");
    return begin ? Fennimar::partBefore(*begin, "]") : std::string_view();
}

}  // namespace

std::vector<std::string> mappedStreams(const std::vector<std::string>& arguments) {
    std::vector<std::string> mapped;
    for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
        if (arguments[i] == "-map") mapped.push_back(arguments[i + 1]);
    }
    return mapped;
}

std::vector<std::optional<int>> sourceStreams(const std::vector<std::string>& arguments) {
    std::vector<std::optional<int>> sources;
    for (const auto& stream : mappedStreams(arguments)) {
        const std::string_view source =
            stream.starts_with('[') ? filteredStream(arguments) : std::string_view(stream);
        auto& index = sources.emplace_back();
        if (source.starts_with("0:")) index = Fennimar::leadingInteger(source.substr(2));
    }
    return sources;
}

}  // namespace reelvane
