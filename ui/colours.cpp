#include "ui/colours.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace reelvane {
namespace {

constexpr double kSelectedShare = 0.22;
constexpr double kHoveredShare = 0.05;
constexpr double kReadable = 4.6;
constexpr double kVisible = 3.2;
constexpr double kHighContrast = 20;  // of 21, which are black and white

/// One channel as the eye weighs it.
double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

/// The first of the mixtures of `colour` and the text's that stands out enough from every ground.
QColor firstVisible(const QPalette& palette, const QColor& colour,
                    std::initializer_list<double> sharesOfText, double least) {
    const auto text = palette.color(QPalette::Text);
    for (const double share : sharesOfText) {
        const auto mixture = mixed(colour, text, share);
        if (std::min({contrast(mixture, palette.color(QPalette::Base)),
                      contrast(mixture, palette.color(QPalette::Window)),
                      contrast(mixture, selectedGround(palette)),
                      contrast(mixture, hoveredGround(palette))}) >= least) {
            return mixture;
        }
    }
    return text;
}

}  // namespace

double contrast(const QColor& one, const QColor& other) {
    // A list, whose answer holds values; of two temporaries it would hold dangling references.
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

bool isDark(const QPalette& palette) {
    constexpr int kMiddleLightness = 128;
    return palette.color(QPalette::Window).lightness() < kMiddleLightness;
}

bool isHighContrast(const QPalette& palette) {
    const auto ground = palette.color(QPalette::Base);
    return palette.color(QPalette::Window) == ground &&
           contrast(palette.color(QPalette::Text), ground) >= kHighContrast;
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

QColor accent(const QPalette& palette) {
    return firstVisible(palette, palette.color(QPalette::Highlight),
                        {0, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6}, kVisible);
}

QColor quietText(const QPalette& palette) {
    if (isHighContrast(palette)) return palette.color(QPalette::Text);
    return firstVisible(palette, palette.color(QPalette::Base), {0.65, 0.7, 0.75, 0.8, 0.85, 0.9},
                        kReadable);
}

}  // namespace reelvane
