#include "support/preferences_attachment.h"

#include <gtest/gtest.h>

#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

TEST(PreferencesAttachment, IsTheWholeFileInBase64) {
    EXPECT_EQ(Fennimar::base64(""), "");
    EXPECT_EQ(Fennimar::base64("f"), "Zg==");
    EXPECT_EQ(Fennimar::base64("fo"), "Zm8=");
    EXPECT_EQ(Fennimar::base64("foobar"), "Zm9vYmFy");
    const TemporaryFolder folder;
    using std::string_literals::operator""s;
    EXPECT_EQ(preferencesAttachment(folder.write("p.ini", "\0\xFB\xFF\n"s)), "APv/Cg==");
    EXPECT_EQ(preferencesAttachment(folder.path() / "missing"), "");
}

}  // namespace
}  // namespace reelvane
