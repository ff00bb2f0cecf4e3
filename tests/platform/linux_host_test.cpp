#include "platform/linux_host.h"

#include <array>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

#include "platform/account_database.h"
#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

using std::filesystem::path;
using testing::ElementsAre;

/// Sets a variable, or takes it away.
void setVariable(const char* name, const char* value) {
    value == nullptr ? ::unsetenv(name) : ::setenv(name, value, 1);
}

TEST(LinuxHost, LanguagesComeFromTheEnvironmentBestFirst) {
    using Names = std::vector<std::string>;
    const std::array variables{"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"};
    const std::vector<std::pair<std::array<const char*, 4>, Names>> cases = {
        {{}, {}},
        {{"pt_BR:pt:en", nullptr, "sr@latin", "en_US.UTF-8"}, {"pt", "en", "sr"}},
        {{"", "C.UTF-8", "POSIX", "C"}, {}},
        {{"::fr", "zh-Hant", nullptr, "ast_ES"}, {"fr", "zh", "ast"}},
    };
    for (const auto& [values, languages] : cases) {
        for (std::size_t i = 0; i < 4; ++i) setVariable(variables[i], values[i]);
        EXPECT_EQ(LinuxHost().preferredLanguages(), languages);
    }
}

TEST(LinuxHost, SystemFilesSayModelAndVersion) {
    const TemporaryFolder root;
    const LinuxHost host(root.path());
    EXPECT_EQ(host.machineModel(), "");
    EXPECT_EQ(host.operatingSystemVersion(), "");
    root.write("sys/class/dmi/id/product_name", "Box 3 \n");
    EXPECT_EQ(host.machineModel(), "Box 3");
    root.write("usr/lib/os-release", "PRETTY_NAME=Plain\n");
    EXPECT_EQ(host.operatingSystemVersion(), "Plain");
    root.write("etc/os-release",
               "# c\nNAME=\"X\"\nPRETTY_NAME=\"Some \\\"OS\\\" 12 (b)\"\nbroken=\"\n");
    EXPECT_EQ(host.operatingSystemVersion(), "Some \"OS\" 12 (b)");
}

std::vector<path> folders() {
    const auto all = LinuxHost().folders();
    return {all.documents, all.desktop, all.applicationData, all.configuration};
}

TEST(LinuxHost, UserFoldersFollowTheConventions) {
    const TemporaryFolder home;
    const auto& root = home.path();
    setVariable("HOME", root.c_str());
    setVariable("XDG_CONFIG_HOME", nullptr);
    setVariable("XDG_DATA_HOME", "relative is ignored");
    EXPECT_THAT(folders(), ElementsAre(root / "Documents", root / "Desktop", root / ".local/share",
                                       root / ".config"));
    home.write("conf/user-dirs.dirs",
               "# made by a tool\nXDG_DOCUMENTS_DIR=\"$HOME/Meine \\\"Doks\\\"\"\n"
               "XDG_DESKTOP_DIR=\"/srv/desk\"\n");
    setVariable("XDG_CONFIG_HOME", (root / "conf").c_str());
    setVariable("XDG_DATA_HOME", "/data");
    EXPECT_THAT(folders(),
                ElementsAre(root / "Meine \"Doks\"", "/srv/desk", "/data", root / "conf"));
    home.write("conf/user-dirs.dirs",
               "XDG_DOCUMENTS_DIR=\"elsewhere\"\nXDG_DESKTOP_DIR=\"$HOME/\"\n");
    setVariable("HOME", nullptr);
    const auto account = LinuxHost().folders().accountHome;
    EXPECT_EQ(LinuxHost().folders().home, account);
    EXPECT_THAT(folders(), ElementsAre(account / "Documents", account, "/data", root / "conf"));
}

}  // namespace
}  // namespace reelvane
