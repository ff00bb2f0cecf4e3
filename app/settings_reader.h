#pragma once

#include <string_view>

#include "conversion/conversion_settings.h"
#include "media/probe_report.h"

namespace reelvane {

class Preferences;

/// The preferences of one conversion, as they stand now. Any thread.
[[nodiscard]] ConversionSettings readConversionSettings(const Preferences& preferences);

/// The preferences of one probe, as they stand now. Any thread.
[[nodiscard]] ProbeOptions readProbeOptions(const Preferences& preferences);

/// The extension of the outputs, without a full stop.
[[nodiscard]] std::string_view outputExtension(const Preferences& preferences);

}  // namespace reelvane
