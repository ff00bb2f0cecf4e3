#include "ui/launch_arguments.h"

#include <gmock/gmock.h>

namespace reelvane {

using testing::ElementsAre;

TEST(LaunchArguments, FilesAreTakenAsTheDesktopOrAShellNamesThem) {
    const auto parsed = parseLaunchArguments({"Film.mkv", "/a/\xFF x.mkv", "../up.mkv",
                                              "file:///m/%C3%BC%FF%20%23.mkv", "--", "-odd.mkv"},
                                             "/here/now");
    EXPECT_THAT(parsed.files, ElementsAre("/here/now/Film.mkv", "/a/\xFF x.mkv", "/here/up.mkv",
                                          "/m/\xC3\xBC\xFF #.mkv", "/here/now/-odd.mkv"));
    EXPECT_FALSE(parsed.problem);
    EXPECT_EQ(parseLaunchArguments({"-h"}, "/").action, LaunchArguments::Action::PrintHelp);
    EXPECT_TRUE(parseLaunchArguments({"--nonsense", "a.mkv"}, "/").problem);
}

}  // namespace reelvane
