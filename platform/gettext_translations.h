#pragma once

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/plural_rule.h"
#include "support/ports/translations.h"

namespace reelvane {

/// The texts of a compiled gettext catalogue.
struct TranslationCatalogue {
    /// By the text that they translate, or its singular: its one form, or one for each plural.
    std::unordered_map<std::string, std::vector<std::string>> forms{};
    PluralRule pluralRule{};
};

/// Absent when the bytes are no catalogue. Format: GNU gettext manual, "The Format of GNU MO
/// Files".
[[nodiscard]] std::optional<TranslationCatalogue> parseCatalogue(std::string_view bytes);

/// Translations from gettext catalogues, "<language>.mo" in one folder, read at the first text.
/// They are read here and not by the C library, whose locale then stays "C" so that numbers are
/// read and written the same everywhere, and which needs the language's locale to be installed.
/// The first language that the user prefers (`LANGUAGE`, `LC_ALL`, `LC_MESSAGES`, `LANG`) and that
/// has a catalogue wins; the texts themselves are English.
class GettextTranslations final : public Translations {
public:
    explicit GettextTranslations(std::filesystem::path folder);

    /// "de": the language of the texts, as its catalogue is named; empty: English.
    [[nodiscard]] const std::string& language() const;
    [[nodiscard]] std::string localized(std::string_view text) const override;
    [[nodiscard]] std::string localized(std::string_view singular, std::string_view plural,
                                        std::uint64_t count) const override;

private:
    using Choice = std::pair<std::string, TranslationCatalogue>;
    [[nodiscard]] const Choice& choice() const;

    std::filesystem::path folder_;
    mutable std::once_flag read_;
    mutable Choice choice_;  ///< made once, by the first call from any thread
};

}  // namespace reelvane
