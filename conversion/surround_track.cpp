#include "conversion/surround_track.h"

#include <algorithm>
#include <string_view>

#include "support/strings.h"

namespace reelvane {

namespace {

constexpr std::string_view kSurroundMark = "[5.1]";

const AudioEntry* surroundSource(std::span<const AudioEntry> entries, const AudioEntry& selected) {
    const auto& text = selected.text;
    if (Fennimar::contains(text, kSurroundMark) &&
        (Fennimar::contains(text, "(ac3)") || Fennimar::contains(text, "(dts)"))) {
        return &selected;
    }
    for (const std::string_view codec : {"ac3", "dts"}) {
        const auto found = std::ranges::find_if(entries, [&](const AudioEntry& entry) {
            return Fennimar::contains(entry.text, kSurroundMark) &&
                   languageOf(entry.text) == languageOf(text) && codecOf(entry.text) == codec;
        });
        if (found != entries.end()) return &*found;
    }
    return nullptr;
}

}  // namespace

std::optional<SurroundTrack> additionalSurroundTrack(std::span<const AudioEntry> entries,
                                                     std::size_t selected,
                                                     const ConversionSettings& settings) {
    if (settings.audio.conversionPreset != 0 || !settings.includeSurroundTrack) return {};
    const auto* source = surroundSource(entries, entries[selected]);
    if (source == nullptr) return {};
    const std::string codec(codecOf(source->text));
    return SurroundTrack{.streamIndex = streamIndexOf(source->text),
                         .codec = codec,
                         .transcode = codec == "dts" && settings.includeSurroundTrackTranscoded};
}

}  // namespace reelvane
