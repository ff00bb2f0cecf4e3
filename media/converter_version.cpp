#include "media/converter_version.h"

#include <utility>

#include "support/ports/child_process.h"
#include "support/strings.h"

namespace reelvane {

std::string versionInOutput(std::string_view output) {
    constexpr std::string_view kStart = "ffmpeg version ";
    if (!output.starts_with(kStart)) return {};
    output.remove_prefix(kStart.size());
    return std::string(output.substr(0, output.find_first_of(" \r\n")));
}

std::optional<int> majorVersion(std::string_view version) {
    if (version.starts_with('n')) version.remove_prefix(1);  // as the project's own tags do
    if (version.empty() || version.front() < '0' || version.front() > '9') return std::nullopt;
    return Fennimar::leadingInteger(version);
}

ConverterVersion::ConverterVersion(ProcessLauncher& launcher, std::filesystem::path ffmpeg)
    : launcher_(launcher),
      ffmpeg_(std::move(ffmpeg)) {}

const std::string& ConverterVersion::get() {
    std::call_once(asked_, [this] {
        const auto result = launcher_.run({.executable = ffmpeg_, .arguments = {"-version"}});
        if (result.finished) version_ = versionInOutput(result.finished->output);
    });
    return version_;
}

}  // namespace reelvane
