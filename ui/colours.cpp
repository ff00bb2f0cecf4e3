#include "ui/colours.h"

#include <algorithm>
#include <cmath>

namespace reelvane {
namespace {

constexpr double kSelectedShare = 0.22;
constexpr double kHoveredShare = 0.05;
constexpr double kReadable = 4.6;

/// One channel as the eye weighs it.
double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

}  // namespace

double contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax(luminance(one), luminance(other));
    return (lighter + 0.05) / (darker + 0.05);
}

QColor mixed(const QColor& ground, const QColor& over, double share) {
    const auto channel = [share](float below, float above) {
        return static_cast<float>(below + (above - below) * share);
    };
    return QColor::fromRgbF(channel(ground.redF(), over.redF()),
                            channel(ground.greenF(), over.greenF()),
                            channel(ground.blueF(), over.blueF()));
}

QColor selectedGround(const QPalette& palette) {
    return mixed(palette.color(QPalette::Base), palette.color(QPalette::Highlight), kSelectedShare);
}

QColor hoveredGround(const QPalette& palette) {
    return mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), kHoveredShare);
}

QColor quietText(const QPalette& palette) {
    const auto text = palette.color(QPalette::Text);
    const auto base = palette.color(QPalette::Base);
    const auto reads = [&palette](const QColor& colour) {
        return std::min({contrast(colour, palette.color(QPalette::Base)),
                         contrast(colour, palette.color(QPalette::Window)),
                         contrast(colour, selectedGround(palette)),
                         contrast(colour, hoveredGround(palette))}) >= kReadable;
    };
    for (const double share : {0.65, 0.7, 0.75, 0.8, 0.85, 0.9}) {
        if (const auto colour = mixed(base, text, share); reads(colour)) return colour;
    }
    return text;
}

}  // namespace reelvane
