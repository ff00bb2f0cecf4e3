#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QTest>

#include "app/track_choices.h"
#include "ui/widgets/labels.h"
#include "ui/widgets/pop_up_menu_box.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/theme.h"

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

TEST(PopUpMenuBox, ShowsWhatTheMenuHasAndIsNeverStuckOnACommand) {
    constexpr std::size_t kCommand = 5;
    PopUpMenu menu;
    PopUpMenuBox box(menu);
    menu.setItems({{"Ask"}, {"Beside"}, {}, {"Films"}, {}, {.title = "Add…", .isCommand = true}});
    int commands = 0;
    box.setChosen([&](std::size_t row) {
        if (row == kCommand) {
            ++commands;
        } else {
            menu.selectItemAtIndex(row);
        }
    });
    box.show();
    for (const int row : {3, 5}) {
        box.showPopup();
        box.view()->setCurrentIndex(box.model()->index(row, 0));
        QTest::keyClick(box.view(), Qt::Key_Return);
        EXPECT_EQ(menu.selectedIndex(), 3);
        EXPECT_EQ(box.currentText(), "Films");
    }
    EXPECT_EQ(commands, 1);
    for (const auto key : {Qt::Key_Down, Qt::Key_End, Qt::Key_A}) {
        QTest::keyClick(&box, key);
        EXPECT_EQ(box.currentText(), "Films") << key;
    }
    EXPECT_EQ(commands, 1) << "a key on the closed box runs nothing";
    QTest::keyClick(&box, Qt::Key_Up);
    EXPECT_EQ(menu.selectedIndex(), 1) << "but goes from choice to choice";
    menu.setItems({});
    EXPECT_EQ(box.currentIndex(), -1);
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

}  // namespace reelvane
