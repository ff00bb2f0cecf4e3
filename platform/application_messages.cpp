#include "platform/application_messages.h"

#include <array>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace reelvane {
namespace {

/// By GLib's own names: in the environment, and in the platform data.
constexpr auto kTokens = std::to_array<std::pair<const char*, const char*>>(
    {{"XDG_ACTIVATION_TOKEN", "activation-token"}, {"DESKTOP_STARTUP_ID", "desktop-startup-id"}});

std::optional<std::filesystem::path> localFile(const char* uri) {
    char* host = nullptr;
    const GLibText name(g_filename_from_uri(uri, &host, nullptr));
    const GLibText ownedHost(host);
    if (!name) return std::nullopt;
    const std::string_view on = host != nullptr ? host : "";
    if (!on.empty() && on != "localhost" && on != g_get_host_name()) return std::nullopt;
    return name.get();
}

}  // namespace

std::string applicationObjectPath(const std::string& identifier) {
    std::string path = "/" + identifier;
    for (char& c : path) {
        if (c == '.') c = '/';
        if (c == '-') c = '_';
    }
    return path;
}

GVariant* platformData() {
    GVariantBuilder data;
    g_variant_builder_init(&data, G_VARIANT_TYPE_VARDICT);
    for (const auto& [variable, key] : kTokens) {
        const char* const token = std::getenv(variable);
        if (token == nullptr || *token == '\0') continue;
        g_variant_builder_add(&data, "{sv}", key, g_variant_new_string(validUtf8(token).c_str()));
    }
    return g_variant_builder_end(&data);
}

std::string activationToken(GVariant* platformData) {
    for (const auto& [variable, key] : kTokens) {
        const char* token = nullptr;
        if (g_variant_lookup(platformData, key, "&s", &token) != FALSE) return token;
    }
    return {};
}

GVariant* urisOf(const std::vector<std::filesystem::path>& files) {
    GVariantBuilder uris;
    g_variant_builder_init(&uris, G_VARIANT_TYPE_STRING_ARRAY);
    for (const auto& file : files) {
        std::error_code error;
        const auto absolute = std::filesystem::absolute(file, error);
        const GLibText uri(g_filename_to_uri(absolute.c_str(), nullptr, nullptr));
        if (uri) g_variant_builder_add(&uris, "s", uri.get());
    }
    return g_variant_builder_end(&uris);
}

LocalFiles localFilesOf(GVariant* uris) {
    LocalFiles found;
    GVariantIter items;
    g_variant_iter_init(&items, uris);
    const char* uri = nullptr;
    while (g_variant_iter_next(&items, "&s", &uri) != FALSE) {
        if (auto file = localFile(uri)) {
            found.files.push_back(std::move(*file));
        } else {
            found.otherURIs.emplace_back(uri);
        }
    }
    return found;
}

}  // namespace reelvane
