#include "app/launch_corrections.h"

#include "app/preference_keys.h"
#include "app/preference_table.h"
#include "conversion/conversion_settings.h"
#include "support/make_string.h"
#include "support/preferences.h"

namespace reelvane {
namespace {

constexpr int kUsagesBeforeSpeedHint = 4;

void resetIfExcluded(Preferences& preferences, std::string_view key) {
    const auto& entry = *findPreference(key);
    if (preferences.defaultInt(key) == entry.excluded) {
        preferences.setDefaultInt(key, defaultInteger(entry));
    }
}

void resetIfOutside(Preferences& preferences, std::string_view key) {
    const auto& entry = *findPreference(key);
    const auto value = preferences.defaultInt(key);
    if (value < entry.minimum || value > entry.maximum) {
        preferences.setDefaultInt(key, defaultInteger(entry));
    }
}

}  // namespace

std::string versionUsagesKey(std::string_view version) {
    return makeString("vantor_%@_usages", version);
}

void correctMenuValues(Preferences& preferences) {
    resetIfExcluded(preferences, kExternalSubtitleEncodingKey);
    resetIfOutside(preferences, kCustomUnknownHandlingKey);
}

bool speedHintIsDue(const Preferences& preferences, std::string_view version) {
    return preferences.defaultInt(kWelcomeShownKey) == 0 &&
           preferences.defaultInt(versionUsagesKey(version)) >= kUsagesBeforeSpeedHint &&
           conversionPresetOf(preferences.defaultInt(kConversionPresetKey)) ==
               ConversionPreset::Compatible;
}

void upgradeDestinationIndex(Preferences& preferences) {
    if (preferences.defaultInt(kHasUpgradedFromPre13Key) != 0) return;
    // The caller's choice for this run is numbered for the present menu, and hides the stored
    // value; the next run without such a choice does the step.
    if (preferences.isSetForThisRun(kDefaultDestinationKey)) return;
    // The former menu had a separator in second place: a 1 was written for the present one.
    if (const auto destination = preferences.defaultInt(kDefaultDestinationKey); destination > 1) {
        preferences.setDefaultInt(kDefaultDestinationKey, destination + 1);
    }
    preferences.setDefaultInt(kHasUpgradedFromPre13Key, 1);
}

void clampDefaultDestination(Preferences& preferences, std::size_t folders) {
    const auto count = static_cast<int>(folders);
    if (preferences.defaultInt(kDefaultDestinationKey) > count + 2) {
        preferences.setDefaultInt(kDefaultDestinationKey, count + 1);
    }
    resetIfExcluded(preferences, kDefaultDestinationKey);
}

}  // namespace reelvane
