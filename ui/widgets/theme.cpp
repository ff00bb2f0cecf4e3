#include "ui/widgets/theme.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <utility>

#include <QApplication>
#include <QFont>
#include <QFontInfo>
#include <QPainter>
#include <QProxyStyle>
#include <QStyle>
#include <QStyleOption>

namespace reelvane {
namespace {

constexpr double kDisabledContrast = 1.5;  // a little less than Qt's own light palette has
constexpr double kDisabledShare = 0.5;
constexpr double kSelectedShare = 0.22;
constexpr double kHoveredShare = 0.05;
constexpr double kReadable = 4.6;
constexpr double kVisible = 3.2;
constexpr double kHighContrast = 20;  // of 21, which are black and white
constexpr qreal kCornerRadius = 2;

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

QColor outline(const QStyleOption& option) {
    const auto group =
        option.state.testFlag(QStyle::State_Enabled) ? QPalette::Active : QPalette::Disabled;
    auto colour = option.palette.color(group, QPalette::WindowText);
    colour.setAlphaF(0.55F);  // 3 to 1 against the window
    return colour;
}

bool isIndicator(QStyle::PrimitiveElement element) {
    return element == QStyle::PE_IndicatorCheckBox || element == QStyle::PE_IndicatorRadioButton;
}

/// Where the style marks a button itself, in the colour of the focus.
bool isMarked(const QStyleOption& option) {
    const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    return option.state.testFlag(QStyle::State_HasFocus) ||
           (button != nullptr && button->features.testFlag(QStyleOptionButton::DefaultButton));
}

bool needsOutline(QStyle::PrimitiveElement element, const QStyleOption& option) {
    if (isIndicator(element)) return isDark(option.palette);
    return element == QStyle::PE_PanelButtonCommand && isHighContrast(option.palette) &&
           !isMarked(option);
}

/// The program's style with plain outlines round check boxes and radio buttons: on a dark window
/// the style that Qt falls back on draws them darker still, and nobody sees an empty one. In high
/// contrast buttons and pop-up menus have them too.
class OutlinedStyle final : public QProxyStyle {
public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        if (!needsOutline(element, *option)) return;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(outline(*option));
        painter->setBrush(Qt::NoBrush);
        const auto rect = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
        if (element == PE_IndicatorRadioButton) {
            painter->drawEllipse(rect);
        } else {
            painter->drawRoundedRect(rect, kCornerRadius, kCornerRadius);
        }
        painter->restore();
    }
};

/// Only Fusion needs them; other styles bring a dark look of their own.
void useOutlines() {
    if (QApplication::style()->name() != "fusion") return;
    QApplication::setStyle(new OutlinedStyle);
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): Qt has taken it over
}

/// Qt 6.4 takes emoji from the first font that has any, which is mostly one with outlines. It asks
/// substitutes before those, and passes over one that is not installed. The first is the font that
/// stands for a family such as "Sans Serif", else the emoji's digits and blanks would be taken.
void useColourEmoji() {
    const auto font = QApplication::font();
    QFont::insertSubstitutions(font.family(),
                               {QFontInfo(font).family(), QStringLiteral("Noto Color Emoji")});
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

QPalette darkPalette() {
    const QColor window(0x2b, 0x2b, 0x2e);
    const QColor base(0x1f, 0x1f, 0x22);
    const QColor button(0x3a, 0x3a, 0x3e);
    const QColor text(0xf0, 0xf0, 0xf0);
    const QColor faint(0x8c, 0x8c, 0x90);
    QPalette palette(text, button, button.lighter(150), window.darker(160), button.darker(120),
                     text, Qt::white, base, window);
    palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x26, 0x29));
    palette.setColor(QPalette::ToolTipBase, button);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, QColor(0xa4, 0xa4, 0xa8));
    palette.setColor(QPalette::Highlight, QColor(0x1f, 0x62, 0xb4));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x78, 0xb4, 0xff));
    palette.setColor(QPalette::LinkVisited, QColor(0xc3, 0xa2, 0xf0));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, faint);
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, button);
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, faint);
    return palette;
}

QPalette withVisibleDisabled(QPalette palette) {
    for (const auto& [role, ground] : {std::pair(QPalette::WindowText, QPalette::Window),
                                       std::pair(QPalette::Text, QPalette::Base),
                                       std::pair(QPalette::ButtonText, QPalette::Button)}) {
        const auto behind = palette.color(QPalette::Disabled, ground);
        if (contrast(palette.color(QPalette::Disabled, role), behind) >= kDisabledContrast) {
            continue;
        }
        const auto text = palette.color(QPalette::Active, role);
        palette.setColor(QPalette::Disabled, role, mixed(behind, text, kDisabledShare));
    }
    return palette;
}

PaletteChange paletteChange(bool prefersDark, bool isDark, bool isOurDark) {
    if (prefersDark && !isDark) return PaletteChange::UseDark;
    if (!prefersDark && isOurDark) return PaletteChange::UseOwn;
    return PaletteChange::None;
}

Theme::Theme(DesktopAppearance& appearance)
    : appearance_(appearance),
      subscription_(appearance.observe([this] { follow(); })) {
    useOutlines();  // the desktop may bring a dark palette of its own
    useColourEmoji();
    follow();
}

void Theme::follow() {
    takePalette();
    if (isOurDark_) return;
    const auto palette = QApplication::palette();
    const auto visible = withVisibleDisabled(palette);
    if (visible != palette) QApplication::setPalette(visible);
}

void Theme::takePalette() {
    switch (paletteChange(appearance_.prefersDark(), isDark(QApplication::palette()), isOurDark_)) {
        case PaletteChange::None:
            return;
        case PaletteChange::UseDark:
            QApplication::setPalette(darkPalette());
            isOurDark_ = true;
            return;
        case PaletteChange::UseOwn:
            QApplication::setPalette(QPalette());
            isOurDark_ = false;
            return;
    }
}

}  // namespace reelvane
