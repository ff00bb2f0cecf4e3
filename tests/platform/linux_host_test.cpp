#include "platform/linux_host.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

using std::filesystem::path;
using testing::ElementsAre;

TEST(LinuxHost, UserFoldersFollowTheConventions) {
    const TemporaryFolder home;
    const auto& root = home.path();
    home.write("conf/user-dirs.dirs",
               "# made by a tool\nXDG_DOCUMENTS_DIR=\"$HOME/Meine \\\"Doks\\\"\"\n"
               "XDG_DESKTOP_DIR=\"/srv/desk\"\n");
    ::setenv("HOME", root.c_str(), 1);
    const std::vector<std::tuple<std::string, std::string, std::vector<path>>> rows = {
        {"", "relative", {"Documents", "Desktop", ".local/share", ".config", ".cache"}},
        {root / "conf", "/data", {"Meine \"Doks\"", "/srv/desk", "/data", "conf", "/data"}}};
    for (const auto& [configuration, data, expected] : rows) {
        ::setenv("XDG_CONFIG_HOME", configuration.c_str(), 1);
        ::setenv("XDG_DATA_HOME", data.c_str(), 1);
        ::setenv("XDG_CACHE_HOME", data.c_str(), 1);
        const auto all = LinuxHost().folders();
        EXPECT_THAT((std::vector{all.documents, all.desktop, all.applicationData, all.configuration,
                                 all.cache}),
                    ElementsAre(root / expected[0], root / expected[1], root / expected[2],
                                root / expected[3], root / expected[4]));
    }
}

}  // namespace
}  // namespace reelvane
