#pragma once

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "support/ports/translations.h"

/// What depends on the program that runs: its translations, its resources, its identifier. All are
/// safe from any thread.
namespace reelvane {

class Vantor;

/// The translation of a text into the user's language; the text itself when there is none.
[[nodiscard]] std::string localized(const Vantor& vantor, std::string_view text);

/// The translation of a text whose English is the same for every count; other languages may have
/// several forms of it.
[[nodiscard]] inline std::string localizedForCount(const Translations& translations,
                                                   std::string_view text, std::uint64_t count) {
    return translations.localized(text, text, count);
}

/// Marks a text that is translated where it is shown, so that the catalogues get it.
[[nodiscard]] constexpr std::string_view localizable(std::string_view text) {
    return text;
}

/// Marks a text that is deliberately not translated.
// NOLINTNEXTLINE(readability-identifier-naming): the library's name for it
[[nodiscard]] constexpr std::string_view LocalizationNotNeeded(std::string_view text) {
    return text;
}

/// The path of a resource, whether or not it is there.
[[nodiscard]] std::filesystem::path resourceURL(const Vantor& vantor, std::string_view name);

/// Makes a new private folder among the temporary files, "IDENTIFIER.XXXXXX" with other letters for
/// each X; absent when that fails. The caller removes it.
[[nodiscard]] std::optional<std::filesystem::path> makeTempFolder(const Vantor& vantor);

/// One property of an object, as a text; absent: it has no value.
using DescribedProperty = std::pair<std::string_view, std::optional<std::string>>;
/// "\nKEY: VALUE" for each property, in order; "(null)" stands for a missing value.
[[nodiscard]] std::string makeDescription(std::initializer_list<DescribedProperty> properties);

/// The texts as they stand, in English: for what scripts read. Any thread.
class Untranslated final : public Translations {
public:
    [[nodiscard]] std::string localized(std::string_view text) const override {
        return std::string(text);
    }
    [[nodiscard]] std::string localized(std::string_view singular, std::string_view plural,
                                        std::uint64_t count) const override {
        return std::string(count == 1 ? singular : plural);
    }
};

/// One for all: it holds nothing.
inline const Untranslated kUntranslated{};

}  // namespace reelvane
