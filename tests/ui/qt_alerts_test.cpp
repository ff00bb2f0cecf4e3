#include "ui/qt_alerts.h"

#include <functional>
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include "ui/alert_box.h"
#include "ui/plain_text_view.h"

namespace reelvane {
namespace {

using Kind = AlertAccessory::Kind;
using Act = std::function<void(QWidget& box)>;

Act click(int button) {
    return [button](QWidget& box) { box.findChildren<QPushButton*>().at(button)->click(); };
}
Act press(Qt::Key key) {
    return [key](QWidget& box) { QTest::keyClick(box.focusWidget(), key); };
}
const Act kClose = [](QWidget& box) { box.close(); };

class QtAlertsTest : public testing::Test {
protected:
    /// Shows the alert and plays the user.
    AlertAnswer answer(const AlertContent& content, const Act& act) {
        QTimer::singleShot(0, [&act] { act(*QApplication::activeModalWidget()); });
        return alerts_.runModal(content);
    }

    QtAlerts alerts_;
};

}  // namespace

TEST_F(QtAlertsTest, EveryWayOutAnswersItsButton) {
    struct Case {
        std::vector<std::string> buttons;
        Act act;
        ButtonResult expected;
    };
    for (const auto& [buttons, act, expected] :
         std::vector<Case>{{{"OK"}, press(Qt::Key_Return), 1000},
                           {{"OK"}, press(Qt::Key_Escape), 1000},
                           {{"OK"}, kClose, 1000},
                           {{}, click(0), 1000},
                           {{"Quit", "Cancel"}, press(Qt::Key_Return), 1000},
                           {{"Quit", "Cancel"}, press(Qt::Key_Space), 1000},
                           {{"Quit", "Cancel"}, press(Qt::Key_Escape), 1001},
                           {{"Quit", "Cancel"}, kClose, 1001},
                           {{"Cancel", "Turn off feedback dialoge"}, press(Qt::Key_Escape), 1000},
                           {{"Send", "Show", "Continue"}, click(0), 1000},
                           {{"Send", "Show", "Continue"}, click(1), 1001},
                           {{"Send", "Show", "Continue"}, click(2), 1002},
                           {{"Send", "Show", "Continue"}, press(Qt::Key_Escape), 1002}}) {
        EXPECT_EQ(answer({.title = "Title", .buttons = buttons}, act).button, expected);
    }
}

TEST_F(QtAlertsTest, AnAccessoryAnswersWhatTheUserLeft) {
    const auto type = [](QWidget& box) {
        QTest::keyClicks(box.focusWidget(), "ab");
        click(0)(box);
    };
    const auto lastRadio = [](QWidget& box) {
        box.findChildren<QRadioButton*>().last()->click();
        click(0)(box);
    };
    const auto nextItem = [](QWidget& box) {
        QTest::keyClick(box.focusWidget(), Qt::Key_Down);
        click(0)(box);
    };
    const auto tick = [](QWidget& box) {
        box.findChild<QCheckBox*>()->click();
        click(1)(box);
    };
    struct Case {
        AlertAccessory accessory;
        Act act;
        std::string text;
        int index;
    };
    for (const auto& [accessory, act, text, index] : std::vector<Case>{
             {{.kind = Kind::Checkbox, .label = "Box", .index = 1}, tick, "", 0},
             {{.kind = Kind::Checkbox, .label = "Box", .index = 1}, kClose, "", 1},
             {{.kind = Kind::Input, .width = 310}, type, "ab", 0},
             {{.kind = Kind::SecureInput}, type, "ab", 0},
             {{.kind = Kind::Text, .text = "x\ny"}, type, "abx\ny", 0},
             {{.kind = Kind::Color, .text = "#3366cc"}, click(0), "#3366cc", 0},
             {{.kind = Kind::PopUp, .items = {"a", "b", "c"}, .index = 1}, nextItem, "", 2},
             {{.kind = Kind::RadioButtons, .items = {"a", "b", "c"}}, click(0), "", 0},
             {{.kind = Kind::RadioButtons, .items = {"a", "b", "c"}}, lastRadio, "", 2}}) {
        const auto given =
            answer({.title = "Value", .buttons = {"OK", "No"}, .accessory = accessory}, act);
        EXPECT_EQ(given.text, text);
        EXPECT_EQ(given.index, index);
    }
}

TEST_F(QtAlertsTest, TellsWhetherTheSuppressionBoxWasTicked) {
    const AlertContent warning{.buttons = {"OK"}, .suppressionTitle = "Don't warn again"};
    EXPECT_FALSE(answer(warning, kClose).suppressed);
    EXPECT_TRUE(answer(warning, [](QWidget& box) {
                    box.findChild<QCheckBox*>()->click();
                    box.close();
                }).suppressed);
}

TEST_F(QtAlertsTest, TextIsShownAsItStands) {
    const AlertBox box({.title = "<b>a</b>.mkv",
                        .message = "1 < 2 &amp; <i>x</i>\n&y",
                        .buttons = {"Rhythm & Blues"}},
                       {}, nullptr);
    const auto texts = box.findChildren<PlainTextView*>();
    EXPECT_EQ(texts.at(0)->toPlainText(), "<b>a</b>.mkv");
    EXPECT_EQ(texts.at(1)->toPlainText(), "1 < 2 &amp; <i>x</i>\n&y");
    EXPECT_EQ(box.findChild<QPushButton*>()->text(), "Rhythm && Blues");
}

TEST_F(QtAlertsTest, AVeryLongTextFitsTheScreen) {
    std::string lines;
    for (int i = 0; i < 1000; ++i) lines += "one more\n";
    for (const auto& text : {lines, std::string(10'000, 'W')}) {
        AlertBox box({.title = text, .message = text, .buttons = {"OK", "Cancel"}}, {}, nullptr);
        box.show();
        EXPECT_TRUE(box.screen()->availableGeometry().size().expandedTo(box.size()) ==
                    box.screen()->availableGeometry().size())
            << box.width() << " x " << box.height();
    }
}

TEST_F(QtAlertsTest, AnAlertRaisedBehindAnotherIsAnsweredFirst) {
    AlertAnswer inner;
    const auto outer = answer({.title = "Outer", .buttons = {"OK", "Cancel"}}, [&](QWidget& box) {
        inner = answer({.title = "Inner", .buttons = {"OK", "Cancel"}}, [](QWidget& front) {
            EXPECT_EQ(front.accessibleName(), "Inner");
            press(Qt::Key_Escape)(front);
        });
        press(Qt::Key_Return)(box);
    });
    EXPECT_EQ(inner.button, kSecondButton);
    EXPECT_EQ(outer.button, kFirstButton);
}

TEST_F(QtAlertsTest, WhenTheProgramEndsEveryAlertAnswersItsCautiousButton) {
    const AlertContent question{.title = "Sure?", .buttons = {"Yes", "No"}};
    AlertAnswer inner;
    AlertAnswer outer;
    QTimer::singleShot(0, [&] {
        outer = answer(question, [&](QWidget& /*box*/) {
            inner = answer(question, [this](QWidget& /*front*/) {
                alerts_.endAll();
                QCoreApplication::exit(7);
            });
        });
    });
    EXPECT_EQ(QApplication::exec(), 7);
    EXPECT_EQ(inner.button, kSecondButton);
    EXPECT_EQ(outer.button, kSecondButton);
    EXPECT_EQ(alerts_.runModal(question).button, kSecondButton);  // nobody is asked any more
}

TEST_F(QtAlertsTest, AsksWhateverBecomesOfTheMainWindow) {
    auto window = std::make_unique<QWidget>();
    alerts_.setParent(window.get());
    const AlertContent question{.title = "Sure?", .buttons = {"Yes", "No"}};
    EXPECT_EQ(answer(question, click(0)).button, kFirstButton) << "not yet shown";
    window->showMinimized();
    EXPECT_EQ(answer(question, click(0)).button, kFirstButton);
    EXPECT_FALSE(window->isMinimized()) << "it would hide the box";
    EXPECT_EQ(answer(question, [&](QWidget& /*box*/) { window.reset(); }).button, kSecondButton);
    EXPECT_EQ(answer(question, click(0)).button, kFirstButton) << "gone";
}

}  // namespace reelvane
