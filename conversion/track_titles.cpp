#include "conversion/track_titles.h"

#include <algorithm>

#include "conversion/mapped_streams.h"

namespace reelvane {

std::vector<std::string> lostTitles(const MKVFileInfo& record,
                                    const std::vector<std::string>& arguments,
                                    const Mp4Movie& movie) {
    std::vector<std::string> lost;
    const auto sources = sourceStreams(arguments);
    const auto count = std::min(movie.tracks.size(), sources.size());
    for (std::size_t i = 0; i < count; ++i) {
        if (!sources[i] || movie.tracks[i].hasTitle) continue;
        const auto title = record.trackTitles.find(*sources[i]);
        if (title == record.trackTitles.end()) continue;
        if (std::ranges::find(lost, title->second) == lost.end()) lost.push_back(title->second);
    }
    return lost;
}

}  // namespace reelvane
