#include "conversion/surround_track.h"

#include <algorithm>
#include <string_view>

#include "media/languages.h"
#include "support/strings.h"

namespace reelvane {

namespace {

constexpr std::string_view kSurroundMark = "[5.1]";

std::optional<std::size_t> surroundSource(std::span<const AudioEntry> entries,
                                          std::size_t selected) {
    const auto& text = entries[selected].text;
    if (Fennimar::contains(text, kSurroundMark) &&
        (Fennimar::contains(text, "(ac3)") || Fennimar::contains(text, "(dts)"))) {
        return selected;
    }
    const auto language = bibliographicCode(languageOf(text));
    for (const std::string_view codec : {"ac3", "dts"}) {
        const auto found = std::ranges::find_if(entries, [&](const AudioEntry& entry) {
            return Fennimar::contains(entry.text, kSurroundMark) &&
                   bibliographicCode(languageOf(entry.text)) == language &&
                   codecOf(entry.text) == codec;
        });
        if (found != entries.end()) return static_cast<std::size_t>(found - entries.begin());
    }
    return {};
}

}  // namespace

std::optional<SurroundTrack> additionalSurroundTrack(std::span<const AudioEntry> entries,
                                                     std::size_t selected,
                                                     const ConversionSettings& settings) {
    if (settings.audio.conversionPreset != ConversionPreset::Compatible ||
        !settings.includeSurroundTrack) {
        return {};
    }
    const auto source = surroundSource(entries, selected);
    if (!source) return {};
    const bool isDTS = codecOf(entries[*source].text) == "dts";
    return SurroundTrack{.entry = *source,
                         .transcode = isDTS && settings.includeSurroundTrackTranscoded};
}

}  // namespace reelvane
