#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "media/probe_report.h"

namespace reelvane {

class Translations;
class Vantor;

/// Something that the user is told about a file. With a key it can be silenced.
struct VettingAlert {
    std::string key{};  ///< the suppression identifier; empty: an error with a plain alert
    std::string title{};
    std::string message{};  ///< in the user's language
    std::string button{};
    bool delayed = false;  ///< shown 0.1 s later; otherwise at once
};

/// What the checks found, in the order in which they ran.
struct Verdict {
    bool accepted = false;
    std::vector<VettingAlert> alerts{};
};

/// Judges a report: refused codecs, 10-bit video, too large a picture, too many reference frames,
/// Dolby Vision that others cannot show, sound of no known kind, no usable video. Pure.
[[nodiscard]] Verdict vet(const Translations& translations, const ProbeReport& report,
                          std::string_view fileName, std::string_view appName);

/// The file is a link that is not followed, or that leads nowhere.
[[nodiscard]] VettingAlert aliasAlert(const Translations& translations, std::string_view fileName);
/// The file is put together from parts of its tracks, which no conversion carries over.
[[nodiscard]] VettingAlert cutMovieAlert(const Translations& translations,
                                         std::string_view fileName);
/// The file has no video that could be converted, or is no movie at all.
[[nodiscard]] VettingAlert invalidFileAlert(const Translations& translations,
                                            std::string_view fileName, std::string_view appName);

/// The most reference frames tolerated for a picture of this size: the picture-area budget of
/// 8388608 pixels divided by the area, rounded down. Absent: unbounded (no readable size).
[[nodiscard]] std::optional<int> referenceFrameBudget(std::string_view resolution);

/// Shows the alert as its kind and delay say. Any thread.
void raise(Vantor& vantor, const VettingAlert& alert);

}  // namespace reelvane
