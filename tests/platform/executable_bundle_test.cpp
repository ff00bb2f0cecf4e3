#include "platform/executable_bundle.h"

#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

using std::filesystem::path;

TEST(ExecutableBundle, TheRunningExecutableLiesInIt) {
    ::unsetenv("REELVANE_FFMPEG");
    const ExecutableBundle bundle;
    EXPECT_TRUE(std::filesystem::equivalent(bundle.executablePath(), "/proc/self/exe"));
    EXPECT_EQ(bundle.bundlePath(), bundle.executablePath().parent_path());
    EXPECT_EQ(bundle.pathForResource("ffmpeg"), bundle.bundlePath() / "resources/ffmpeg");
}

TEST(ExecutableBundle, TheInformationFileAnswersByKey) {
    const TemporaryFolder folder;
    const ExecutableBundle bundle(folder.path() / "program");
    folder.write("resources/Info.ini", "[Info]\nName=Some Program\nStoreProductPage=\n");
    EXPECT_EQ(bundle.infoValue("Name"), "Some Program");
    EXPECT_EQ(bundle.infoValue("StoreProductPage"), std::nullopt);
    EXPECT_EQ(bundle.infoValue("Missing"), std::nullopt);
    EXPECT_EQ(ExecutableBundle("/no/such/program").infoValue("Name"), std::nullopt);
}

TEST(ExecutableBundle, TheEnvironmentMayNameAnotherFfmpeg) {
    const TemporaryFolder folder;
    const auto tool = folder.write("second/tool");
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
    folder.write("first/tool");  // not executable
    const auto* const before = std::getenv("PATH");
    const std::string searched = before == nullptr ? "" : before;
    ::setenv("PATH", ((folder.path() / "first:") += folder.path() / "second").c_str(), 1);
    const auto here = std::filesystem::current_path();
    const std::vector<std::pair<const char*, path>> cases = {
        {"", "/bundle/resources/ffmpeg"},
        {"/opt/x/ffmpeg", "/opt/x/ffmpeg"},
        {"build/ffmpeg", here / "build/ffmpeg"},
        {"tool", tool},
        {"missing", folder.path() / "first/missing"},
    };
    for (const auto& [value, expected] : cases) {
        ::setenv("REELVANE_FFMPEG", value, 1);
        const ExecutableBundle bundle("/bundle/program");
        EXPECT_EQ(bundle.pathForResource("ffmpeg"), expected) << value;
        EXPECT_EQ(bundle.pathForResource("ok.png"), "/bundle/resources/ok.png");
    }
    ::unsetenv("REELVANE_FFMPEG");
    ::setenv("PATH", searched.c_str(), 1);
}

}  // namespace
}  // namespace reelvane
