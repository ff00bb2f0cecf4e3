#include "ui/windows/notice_bar.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPlainTextEdit>
#include <QTest>

#include "app/intake_messages.h"
#include "tests/ui/names.h"

namespace reelvane {

TEST(RefusedFilesBar, ListsEveryReasonUntilItIsClosed) {
    RefusedFiles refused;
    QWidget window;
    window.resize(500, 300);
    auto* const bar = new RefusedFilesBar(refused, &window);
    auto* const text = bar->findChild<QPlainTextEdit*>();
    window.show();
    EXPECT_FALSE(bar->isVisible());
    for (int i = 0; i < 60; ++i) refused.add({"/v/<b>" + std::to_string(i) + ".mkv", "Why.\nAnd."});
    EXPECT_TRUE(bar->isVisible());
    EXPECT_EQ(text->toPlainText().count(".mkv\nWhy.\nAnd."), 60);
    EXPECT_EQ(bar->findChild<QLabel*>()->text(), "Files that were not added: 60");
    EXPECT_EQ(nameless(window), QStringList());
    text->setFocus();
    QTest::keyClick(text, Qt::Key_Escape);
    EXPECT_FALSE(bar->isVisible());
    EXPECT_TRUE(refused.list().empty());
    refused.add({"/v/next.mkv", "Why."});
    EXPECT_TRUE(bar->isVisible());
    EXPECT_EQ(text->toPlainText(), "next.mkv\nWhy.");
}

}  // namespace reelvane
