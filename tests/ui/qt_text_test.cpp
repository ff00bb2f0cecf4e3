#include "ui/widgets/qt_text.h"

#include <gtest/gtest.h>

namespace reelvane {

TEST(QtText, AFileKeepsTheBytesOfItsNameOnTheWayThroughAUrl) {
    for (const std::string name : {"/a/Film.mkv", "/dir \xC3\xBC #1/a%20b?.mkv",
                                   "/a/\xFF\xFE x.mkv", "/a/100% \\ \"q\".mkv"}) {
        const auto url = toUrl(name);
        EXPECT_EQ(toPath(url), name) << url.toEncoded().toStdString();
        EXPECT_EQ(toPath(QUrl::fromEncoded(url.toEncoded())), name);  // as another program sends it
    }
    EXPECT_EQ(toPath(QUrl("https://example.org/a.mkv")), std::nullopt);
}

}  // namespace reelvane
