#include "ui/windows/alert_box.h"

#include <functional>
#include <gtest/gtest.h>
#include <tuple>

#include <QApplication>
#include <QCheckBox>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include "tests/ui/names.h"
#include "ui/widgets/labels.h"

namespace reelvane {
namespace {

using Kind = AlertAccessory::Kind;
using Act = std::function<void(QWidget& box)>;

template <typename Button = QPushButton>
Act click(const char* text) {
    return [text](QWidget& box) { partNamed<Button>(box, text)->click(); };
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
    using Buttons = std::vector<std::string>;
    const Buttons three{"Send", "Show", "Continue"};
    for (const auto& [buttons, act, expected] : std::vector<std::tuple<Buttons, Act, int>>{
             {{}, kClose, 1000},
             {{"OK"}, press(Qt::Key_Escape), 1000},
             {{"Quit", "Cancel"}, press(Qt::Key_Return), 1000},
             {{"Quit", "Cancel"}, kClose, 1001},
             {{"Cancel", "Turn off feedback dialoge"}, press(Qt::Key_Escape), 1000},
             {three, click("Show"), 1001},
             {three, click("Continue"), 1002},
             {three, press(Qt::Key_Escape), 1002}}) {
        EXPECT_EQ(answer({.title = "Title", .buttons = buttons}, act).button, expected);
    }
    for (const auto& buttons : {Buttons{"Quit", "Cancel"}, Buttons{"This", "All", "Cancel"}}) {
        const AlertContent dangerous{.title = "Title", .buttons = buttons, .destructive = true};
        const auto cautious = kFirstButton + static_cast<int>(buttons.size()) - 1;
        EXPECT_EQ(answer(dangerous, press(Qt::Key_Return)).button, cautious);
        EXPECT_EQ(answer(dangerous, click(buttons.front().c_str())).button, kFirstButton);
    }
}

TEST_F(QtAlertsTest, AnswersTheValueAndTheBoxAsTheUserLeftThem) {
    const Act type = [](QWidget& box) { QTest::keyClicks(box.focusWidget(), "ab"); };
    const auto lastRadio = click<QRadioButton>("c");
    const auto tick = click<QCheckBox>("On");
    const auto suppress = click<QCheckBox>("Don't warn again");
    const Act nothing = [](QWidget& /*box*/) {};
    const std::vector<std::string> items{"a", "b", "c"};
    using Case = std::tuple<AlertAccessory, Act, AlertAnswer>;
    for (const auto& [accessory, act, expected] : std::vector<Case>{
             {{.kind = Kind::Checkbox, .label = "On", .index = 1}, tick, {}},
             {{.kind = Kind::Checkbox, .label = "On", .index = 1},
              suppress,
              {.suppressed = true, .index = 1}},
             {{.kind = Kind::Input}, type, {.text = "ab"}},
             {{.kind = Kind::SecureInput}, type, {.text = "ab"}},
             {{.kind = Kind::Text, .text = "x\ny"}, type, {.text = "abx\ny"}},
             {{.kind = Kind::Color, .text = "#3366cc"}, nothing, {.text = "#3366cc"}},
             {{.kind = Kind::PopUp, .items = items, .index = 1}, press(Qt::Key_Down), {.index = 2}},
             {{.kind = Kind::RadioButtons, .items = items}, nothing, {}},
             {{.kind = Kind::RadioButtons, .items = items}, lastRadio, {.index = 2}}}) {
        const AlertContent content{.title = "Value",
                                   .buttons = {"OK", "No"},
                                   .suppressionTitle = "Don't warn again",
                                   .accessory = accessory};
        const auto given = answer(content, [&act](QWidget& box) {
            EXPECT_EQ(nameless(box), QStringList());
            act(box);
            box.close();
        });
        EXPECT_EQ(std::tie(given.text, given.index, given.suppressed),
                  std::tie(expected.text, expected.index, expected.suppressed));
    }
}

TEST_F(QtAlertsTest, TextIsShownAsItStands) {
    const AlertBox box({.title = "<b>a</b>.mkv",
                        .message = "1 < 2 &amp; <i>x</i>\n&y",
                        .buttons = {"Rhythm & Blues"}},
                       {}, nullptr);
    QStringList texts;
    for (const auto* const view : box.findChildren<PlainTextView*>()) texts << view->toPlainText();
    EXPECT_EQ(texts, QStringList({"<b>a</b>.mkv", "1 < 2 &amp; <i>x</i>\n&y"}));
    EXPECT_EQ(box.findChild<QPushButton*>()->text(), "Rhythm && Blues");
}

TEST_F(QtAlertsTest, AVeryLongTextFitsTheScreen) {
    std::string lines;
    for (int i = 0; i < 1000; ++i) lines += "one more\n";
    for (const auto& text : {lines, std::string(10'000, 'W')}) {
        AlertBox box({.title = text, .message = text, .buttons = {"OK", "Cancel"}}, {}, nullptr);
        box.show();
        const auto screen = box.screen()->availableGeometry().size();
        EXPECT_TRUE(screen.expandedTo(box.size()) == screen) << box.height();
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
    EXPECT_EQ(answer(question, click("Yes")).button, kFirstButton) << "not yet shown";
    window->showMinimized();
    EXPECT_EQ(answer(question, click("Yes")).button, kFirstButton);
    EXPECT_FALSE(window->isMinimized()) << "it would hide the box";
    EXPECT_EQ(answer(question, [&](QWidget& /*box*/) { window.reset(); }).button, kSecondButton);
    EXPECT_EQ(answer(question, click("Yes")).button, kFirstButton) << "gone";
}

}  // namespace reelvane
