#pragma once

namespace reelvane {

/// Which settings the preferences show.
enum class ConversionStyleView { Compatible, Fast, Custom };

/// The view of a `ConversionPreset`; like the conversion itself, what is neither compatible nor
/// custom counts as fast.
[[nodiscard]] constexpr ConversionStyleView conversionStyleView(int conversionPreset) {
    switch (conversionPreset) {
        case 0:
            return ConversionStyleView::Compatible;
        case 2:
            return ConversionStyleView::Custom;
        default:
            return ConversionStyleView::Fast;
    }
}

}  // namespace reelvane
