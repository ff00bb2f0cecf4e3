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

void setVariable(const char* name, const char* value) {
    if (value == nullptr) {
        ::unsetenv(name);
    } else {
        ::setenv(name, value, 1);
    }
}

TEST(LinuxHost, LanguagesComeFromTheEnvironmentBestFirst) {
    using Names = std::vector<std::string>;
    // LANGUAGE, LC_ALL, LC_MESSAGES, LANG
    const std::vector<std::pair<std::array<const char*, 4>, Names>> cases = {
        {{nullptr, nullptr, nullptr, nullptr}, {}},
        {{"pt_BR:pt:en", nullptr, "sr@latin", "en_US.UTF-8"}, {"pt", "en", "sr"}},
        {{"", "C.UTF-8", "POSIX", "C"}, {}},
        {{"::fr", "zh-Hant", nullptr, "ast_ES"}, {"fr", "zh", "ast"}},
    };
    for (const auto& [values, languages] : cases) {
        setVariable("LANGUAGE", values[0]);
        setVariable("LC_ALL", values[1]);
        setVariable("LC_MESSAGES", values[2]);
        setVariable("LANG", values[3]);
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

TEST(LinuxHost, UserFoldersFollowTheConventions) {
    const TemporaryFolder home;
    const auto& root = home.path();
    setVariable("HOME", root.c_str());
    setVariable("XDG_CONFIG_HOME", nullptr);
    setVariable("XDG_DATA_HOME", "relative is ignored");
    auto folders = LinuxHost().folders();
    EXPECT_EQ(folders.documents, root / "Documents");
    EXPECT_EQ(folders.desktop, root / "Desktop");
    EXPECT_EQ(folders.applicationData, root / ".local/share");
    EXPECT_EQ(folders.configuration, root / ".config");

    home.write("conf/user-dirs.dirs",
               "# made by a tool\nXDG_DOCUMENTS_DIR=\"$HOME/Meine \\\"Doks\\\"\"\n"
               "XDG_DESKTOP_DIR=\"/srv/desk\"\n");
    setVariable("XDG_CONFIG_HOME", (root / "conf").c_str());
    setVariable("XDG_DATA_HOME", "/data");
    folders = LinuxHost().folders();
    EXPECT_EQ(folders.documents, root / "Meine \"Doks\"");
    EXPECT_EQ(folders.desktop, "/srv/desk");
    EXPECT_EQ(folders.applicationData, "/data");

    home.write("conf/user-dirs.dirs",
               "XDG_DOCUMENTS_DIR=\"elsewhere\"\nXDG_DESKTOP_DIR=\"$HOME/\"\n");
    setVariable("HOME", nullptr);
    folders = LinuxHost().folders();
    EXPECT_EQ(folders.home, folders.accountHome);
    EXPECT_EQ(folders.documents, folders.accountHome / "Documents");
    EXPECT_EQ(folders.desktop, folders.accountHome);
}

}  // namespace
}  // namespace reelvane
