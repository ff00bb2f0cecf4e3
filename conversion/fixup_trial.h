#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "media/mkv_file_info.h"

namespace reelvane {

class ConverterVersion;
class Vantor;

/// True for converters that insert the "aac_adtstoasc" filter by themselves: all since 4.0, and
/// those whose version names no release, since they are newer still.
[[nodiscard]] bool insertsFilters(std::string_view version);

/// The arguments of a one-second trial conversion that copies this AAC track.
[[nodiscard]] std::vector<std::string> fixupTrialArguments(const MKVFileInfo& file,
                                                           int audioStreamIndex,
                                                           const std::filesystem::path& output);

/// True when the converter asks for that filter to copy this AAC track into an MP4. Where its
/// version does not tell, one second of the movie is converted on trial, into a file without a
/// name, and for ten seconds at most. Blocks that long: in the background.
[[nodiscard]] bool needFixup(Vantor& vantor, ConverterVersion& version, const MKVFileInfo& file,
                             int audioStreamIndex);

}  // namespace reelvane
