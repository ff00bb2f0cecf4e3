#include "support/time_text.h"

#include <cmath>

#include "support/make_string.h"

namespace reelvane {

std::string formattedTimeFromTimeInterval(double seconds) {
    if (!std::isfinite(seconds)) return "?";
    // Adding zero turns a negative zero into a plain one.
    const double minutes = std::trunc(seconds / 60) + 0.0;
    const double rest = std::trunc(std::fmod(seconds, 60)) + 0.0;
    if (minutes == 0) return makeString("%.0fs", rest);
    return makeString("%.0fm %.0fs", minutes, rest);
}

}  // namespace reelvane
