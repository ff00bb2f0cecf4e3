#include "platform/executable_bundle.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

TEST(ExecutableBundle, TheEnvironmentMayNameAnotherFfmpeg) {
    const TemporaryFolder folder;
    const auto tool = folder.write("second/tool");
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
    folder.write("first/tool");  // not executable
    const auto* const before = std::getenv("PATH");
    const std::string searched = before == nullptr ? "" : before;
    ::setenv("PATH", ((folder.path() / "first:") += folder.path() / "second").c_str(), 1);
    const std::vector<std::pair<const char*, std::filesystem::path>> cases = {
        {"", "/bundle/resources/ffmpeg"},
        {"/opt/x/ffmpeg", "/opt/x/ffmpeg"},
        {"build/ffmpeg", std::filesystem::current_path() / "build/ffmpeg"},
        {"tool", tool},
        {"missing", folder.path() / "first/missing"},
    };
    for (const auto& [value, expected] : cases) {
        ::setenv("REELVANE_FFMPEG", value, 1);
        EXPECT_EQ(ExecutableBundle("/bundle/program").pathForResource("ffmpeg"), expected) << value;
    }
    ::unsetenv("REELVANE_FFMPEG");
    ::setenv("PATH", searched.c_str(), 1);
}

}  // namespace
}  // namespace reelvane
