#pragma once

#include <map>

#include "conversion/conversion_settings.h"
#include "ui/preferences/preference_page.h"
#include "ui/ui_context.h"
#include "ui/widgets/qt_text.h"

namespace reelvane {

/// How sound is converted. Below the conversion style stand the settings of that style alone.
class AudioPage final : public PreferencePage {
public:
    AudioPage(const UiContext& context, QWidget* parent);

    [[nodiscard]] std::vector<std::string_view> keys() const override;
    void showStored() override;

private:
    void addStyles();
    [[nodiscard]] PreferenceColumn* makeCompatible();
    [[nodiscard]] PreferenceColumn* makeFast();
    [[nodiscard]] PreferenceColumn* makeCustom();
    /// Shows the settings of the present conversion style.
    void selectConversionStyle();
    void addTracks();
    void addQuality();

    UiContext context_;
    QWidget* customContainer_ = nullptr;
    std::map<ConversionPreset, PreferenceColumn*> containers_;  ///< the settings of each style
};

}  // namespace reelvane
