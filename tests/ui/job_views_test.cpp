#include <QApplication>

#include "tests/ui/ui_fixture.h"
#include "ui/jobs/details_popover.h"
#include "ui/widgets/labels.h"
#include "ui/widgets/theme.h"

namespace reelvane {
namespace {

TEST(LogView, ShowsTheEndOfALongLogAndWhatIsAddedToIt) {
    LogView view(nullptr);
    std::string log = "begin";
    view.showLog(log);
    log += " Gr\xC3";
    view.follow(log);
    log +=
        "\xBC\xC3\x9F"
        "e";  // one of the characters has come in two parts
    view.follow(log);
    EXPECT_EQ(view.toPlainText().toStdString(),
              "begin Gr\xC3\xBC\xC3\x9F"
              "e");
    EXPECT_TRUE(view.showsAll());

    for (std::size_t i = 0; log.size() < 10'000'000; ++i)
        log += "\xC3\xA4line " + std::to_string(i);
    log += "end";
    view.follow(log);
    const auto shown = view.toPlainText().toStdString();
    EXPECT_LT(shown.size(), 100'000U);
    EXPECT_TRUE(log.ends_with(shown)) << "cut within a character";
    EXPECT_FALSE(view.showsAll());
}

TEST(ElidedLabel, TakesAsManyLinesAsItNeedsAndMayHave) {
    ElidedLabel label(Qt::ElideRight, ElidedLabel::Rank::Quiet);
    label.setText("Several words that want some lines when there is little room");
    const int line = label.sizeHint().height();
    const int wide = label.sizeHint().width();
    label.setMostLines(2);
    EXPECT_EQ(label.heightForWidth(wide), line);
    for (const int share : {2, 4}) {
        const int height = label.heightForWidth(wide * 3 / 2 / share);
        EXPECT_EQ(height, line + label.fontMetrics().height());
    }
}

TEST(Colours, QuietTextAndMarksStandOutOnEveryGround) {
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 0.01);
    EXPECT_NEAR(contrast(Qt::white, Qt::black), 21, 0.01);
    auto highContrast = QPalette(Qt::black);
    highContrast.setColor(QPalette::Highlight, Qt::yellow);
    EXPECT_EQ(quietText(highContrast), QColor(Qt::white)) << "dimmed for who can least read it";
    EXPECT_EQ(quietText(QPalette(Qt::white)), QColor(Qt::black));
    EXPECT_FALSE(isHighContrast(QPalette()) || isHighContrast(darkPalette()));
    auto vanished = highContrast;
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        vanished.setColor(QPalette::Disabled, role, Qt::black);
        EXPECT_GE(
            contrast(withVisibleDisabled(vanished).color(QPalette::Disabled, role), Qt::black), 3);
    }
    EXPECT_EQ(withVisibleDisabled(darkPalette()), darkPalette());
    for (const auto& palette : {QPalette(), darkPalette(), highContrast, QPalette(Qt::white)}) {
        for (const auto& ground : {palette.color(QPalette::Base), palette.color(QPalette::Window),
                                   selectedGround(palette), hoveredGround(palette)}) {
            EXPECT_GE(contrast(quietText(palette), ground), 4.5);
            EXPECT_GE(contrast(palette.color(QPalette::Text), ground), 4.5);
            EXPECT_GE(contrast(accent(palette), ground), 3);
        }
    }
}

}  // namespace
}  // namespace reelvane
