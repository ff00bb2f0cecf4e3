#include "platform/gettext_translations.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <glib.h>
#include <iterator>
#include <utility>

#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::uint32_t kMagic = 0x950412DE;

/// The numbers and texts of a catalogue, each read only where it lies inside the file.
class CatalogueReader {
public:
    explicit CatalogueReader(std::string_view bytes) : bytes_(bytes) {}

    /// False when it is no catalogue. It may be of either byte order.
    bool begin() {
        const auto magic = number(0);
        swapped_ = magic == GUINT32_SWAP_LE_BE(kMagic);
        return magic == kMagic || swapped_;
    }

    [[nodiscard]] std::optional<std::uint32_t> number(std::uint64_t offset) const {
        std::uint32_t value = 0;
        if (offset + sizeof value > bytes_.size()) return std::nullopt;
        std::memcpy(&value, bytes_.data() + offset, sizeof value);
        return swapped_ ? GUINT32_SWAP_LE_BE(value) : value;
    }

    /// What the table's entry points to: a text, or its plural forms.
    [[nodiscard]] std::optional<std::vector<std::string>> forms(std::uint64_t table,
                                                                std::uint64_t entry) const {
        const auto length = number(table + 8 * entry);
        const auto offset = number(table + 8 * entry + 4);
        if (!length || !offset || std::uint64_t{*offset} + *length > bytes_.size()) {
            return std::nullopt;
        }
        const auto parts = Fennimar::split(bytes_.substr(*offset, *length), {"\0", 1});
        return std::vector<std::string>(parts.begin(), parts.end());
    }

private:
    std::string_view bytes_;
    bool swapped_ = false;
};

std::optional<TranslationCatalogue> readCatalogue(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) return std::nullopt;
    return parseCatalogue(std::string(std::istreambuf_iterator<char>(stream), {}));
}

bool isEnglish(std::string_view language) {
    return language == "C" || language == "POSIX" || language == "en" ||
           language.starts_with("en_") || language.starts_with("en.") ||
           language.starts_with("en@");
}

std::pair<std::string, TranslationCatalogue> preferredCatalogue(
    const std::filesystem::path& folder) {
    for (const char* const* language = g_get_language_names(); *language != nullptr; ++language) {
        // A name is a folder's name at most, whatever the environment holds.
        if (std::string_view(*language).find('/') != std::string_view::npos) continue;
        auto catalogue = readCatalogue(folder / (std::string(*language) + ".mo"));
        if (catalogue) return {*language, std::move(*catalogue)};
        if (isEnglish(*language)) break;
    }
    return {};
}

}  // namespace

std::optional<TranslationCatalogue> parseCatalogue(std::string_view bytes) {
    constexpr std::uint64_t kCount = 8;
    constexpr std::uint64_t kOriginals = 12;
    constexpr std::uint64_t kTranslations = 16;
    CatalogueReader reader(bytes);
    if (!reader.begin()) return std::nullopt;
    const auto count = reader.number(kCount);
    const auto originals = reader.number(kOriginals);
    const auto translations = reader.number(kTranslations);
    if (!count || !originals || !translations) return std::nullopt;
    TranslationCatalogue catalogue;
    for (std::uint64_t entry = 0; entry < *count; ++entry) {
        const auto original = reader.forms(*originals, entry);
        auto translation = reader.forms(*translations, entry);
        if (!original || !translation) return std::nullopt;
        if (translation->front().empty()) continue;
        if (original->front().empty()) {
            catalogue.pluralRule = PluralRule(translation->front());  // the catalogue's own head
        } else {
            catalogue.forms.emplace(original->front(), *std::move(translation));
        }
    }
    return catalogue;
}

GettextTranslations::GettextTranslations(std::filesystem::path folder)
    : folder_(std::move(folder)) {}

const GettextTranslations::Choice& GettextTranslations::choice() const {
    std::call_once(read_, [this] { choice_ = preferredCatalogue(folder_); });
    return choice_;
}

const std::string& GettextTranslations::language() const {
    return choice().first;
}

std::string GettextTranslations::localized(std::string_view text) const {
    const auto& forms = choice().second.forms;
    const auto found = forms.find(std::string(text));
    return found == forms.end() ? std::string(text) : found->second.front();
}

std::string GettextTranslations::localized(std::string_view singular, std::string_view plural,
                                           std::uint64_t count) const {
    const auto& catalogue = choice().second;
    const auto found = catalogue.forms.find(std::string(singular));
    if (found == catalogue.forms.end()) return std::string(count == 1 ? singular : plural);
    const auto& forms = found->second;
    return forms[std::min(catalogue.pluralRule.form(count), forms.size() - 1)];
}

}  // namespace reelvane
