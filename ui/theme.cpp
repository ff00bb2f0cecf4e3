#include "ui/theme.h"

#include <utility>

#include <QApplication>
#include <QFont>
#include <QFontInfo>
#include <QStyle>

#include "ui/colours.h"
#include "ui/indicator_style.h"

namespace reelvane {
namespace {

constexpr double kDisabledContrast = 1.5;  // a little less than Qt's own light palette has
constexpr double kDisabledShare = 0.5;

/// Only Fusion needs them; other styles bring a dark look of their own.
void useOutlines() {
    if (QApplication::style()->name() != "fusion") return;
    QApplication::setStyle(new IndicatorStyle);
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
