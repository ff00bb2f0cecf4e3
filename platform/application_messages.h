#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/gio_handles.h"

/// What the messages of the interface org.freedesktop.Application are made of.
namespace reelvane {

inline constexpr auto kApplicationInterface = "org.freedesktop.Application";
inline constexpr auto kApplicationDescription =
    R"(<node><interface name='org.freedesktop.Application'>
<method name='Activate'><arg type='a{sv}' name='platform_data' direction='in'/></method>
<method name='Open'><arg type='as' name='uris' direction='in'/>
<arg type='a{sv}' name='platform_data' direction='in'/></method>
<method name='ActivateAction'><arg type='s' name='action_name' direction='in'/>
<arg type='av' name='parameter' direction='in'/>
<arg type='a{sv}' name='platform_data' direction='in'/></method>
</interface></node>)";

/// As the desktop entry specification makes it from the name.
[[nodiscard]] std::string applicationObjectPath(const std::string& identifier);

/// The token that this process was started with, as the platform data of a message (floating).
[[nodiscard]] GVariant* platformData();
/// The token in a message's platform data, or empty.
[[nodiscard]] std::string activationToken(GVariant* platformData);

/// The files as absolute URIs (floating), which keep every byte of the names.
[[nodiscard]] GVariant* urisOf(const std::vector<std::filesystem::path>& files);
struct LocalFiles {
    std::vector<std::filesystem::path> files{};
    std::vector<std::string> otherURIs{};  ///< those that name no file of this machine
};
[[nodiscard]] LocalFiles localFilesOf(GVariant* uris);

}  // namespace reelvane
