#include "ui/widgets/pop_up_menu_box.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QTest>

#include "app/track_choices.h"

namespace reelvane {

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

}  // namespace reelvane
