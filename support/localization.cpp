#include "support/localization.h"

#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): mkdtemp is POSIX
#include <system_error>

#include "support/make_string.h"
#include "support/ports/main_bundle.h"
#include "support/ports/translations.h"
#include "support/vantor.h"

namespace reelvane {

std::string localized(const Vantor& vantor, std::string_view text) {
    return vantor.ports().translations.localized(text);
}

std::filesystem::path resourceURL(const Vantor& vantor, std::string_view name) {
    return vantor.ports().mainBundle.pathForResource(name);
}

std::optional<std::filesystem::path> makeTempFolder(const Vantor& vantor) {
    std::error_code error;
    const auto parent = std::filesystem::temp_directory_path(error);
    if (error) return std::nullopt;
    auto pattern = (parent / (vantor.appBundleIdentifier() + ".XXXXXX")).native();
    if (::mkdtemp(pattern.data()) == nullptr) return std::nullopt;
    return pattern;
}

std::string makeDescription(std::initializer_list<DescribedProperty> properties) {
    std::string description;
    for (const auto& [key, value] : properties) {
        description += makeString("\n%@: %@", key, value.value_or("(null)"));
    }
    return description;
}

}  // namespace reelvane
