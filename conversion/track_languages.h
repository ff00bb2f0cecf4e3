#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "media/mkv_file_info.h"
#include "mp4/field_patch.h"
#include "mp4/mp4_movie.h"

namespace reelvane {

/// The language of each stream that an argument list maps, as the source names it: "ger", "pt-BR";
/// empty where it names none. A filtered sound track has the language of what went into the filter.
[[nodiscard]] std::vector<std::string> sourceLanguages(const MKVFileInfo& record,
                                                       const std::vector<std::string>& arguments);

/// What an MP4 file can say of a source's language: three letters (ISO 639-2). They pass as they
/// are, "de" and "de-AT" become "ger"; empty for anything else.
[[nodiscard]] std::string mp4Language(std::string_view language);

/// The fields to set so that each track has its source's language, where MP4 can say it: the
/// converter loses two-letter codes, regions and the language of what it has filtered. Pure.
[[nodiscard]] std::vector<FieldPatch> languagePatches(const Mp4Movie& movie,
                                                      const std::vector<std::string>& languages);

/// The languages that MP4 cannot say, each once.
[[nodiscard]] std::vector<std::string> lostLanguages(const std::vector<std::string>& languages);

}  // namespace reelvane
