#include "ui/windows/window_frame.h"

#include <string>
#include <string_view>
#include <utility>

#include <QAccessibleWidget>
#include <QByteArray>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>
#include <QWidget>

#include "support/preferences.h"

namespace reelvane {
namespace {

// The program's own memory, like its counters: nothing that a user would set.
constexpr std::string_view kMainWindowFrameKey = "MainWindowFrame";
constexpr QSize kComfortableSize(760, 560);
constexpr double kHeadingSize = 1.3;
constexpr int kLineLength = 52;  ///< in average characters
constexpr int kPictureLines = 4;

QLabel* makeText(const QString& text, QWidget* parent) {
    auto* const label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setWordWrap(true);
    label->setMinimumWidth(label->fontMetrics().averageCharWidth() * kLineLength);
    return label;
}

QLabel* makeHeading(const QString& text, QWidget* parent) {
    auto* const label = makeText(text, parent);
    auto font = label->font();
    font.setBold(true);
    if (font.pointSizeF() > 0) font.setPointSizeF(font.pointSizeF() * kHeadingSize);
    label->setFont(font);
    return label;
}

QAccessibleInterface* makeAccessibleStack(const QString& /*className*/, QObject* object) {
    auto* const stack = dynamic_cast<PageStack*>(object);
    return stack == nullptr ? nullptr : new QAccessibleWidget(stack, QAccessible::Client);
}

}  // namespace

void restoreFrame(QWidget& window, const Preferences& preferences) {
    const auto stored = preferences.defaultString(kMainWindowFrameKey).value_or("");
    if (window.restoreGeometry(QByteArray::fromBase64(QByteArray::fromStdString(stored)))) return;
    window.resize(kComfortableSize.boundedTo(window.screen()->availableSize()));
}

void rememberFrame(const QWidget& window, Preferences& preferences) {
    auto frame = window.saveGeometry().toBase64().toStdString();
    preferences.changeLater(kMainWindowFrameKey,
                            [frame = std::move(frame)](const std::optional<std::string>&) {
                                return std::optional(frame);
                            });
}

void bringToFront(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

QLabel* makeParagraph(const QString& text, QWidget* parent) {
    auto* const label = makeText(text, parent);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QLayout* makeIntroduction(const QIcon& picture, const QString& heading, const QString& words,
                          QWidget* parent) {
    const auto line = parent->fontMetrics().height();
    auto* const row = new QHBoxLayout;
    row->setSpacing(line);
    if (!picture.isNull()) {
        auto* const shown = new QLabel(parent);
        shown->setAccessibleName(QGuiApplication::applicationDisplayName());
        const QSize size(line * kPictureLines, line * kPictureLines);
        shown->setPixmap(picture.pixmap(size, parent->devicePixelRatioF()));
        row->addWidget(shown, 0, Qt::AlignTop);
    }
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(line / 3);
    texts->addWidget(makeHeading(heading, parent));
    texts->addWidget(makeParagraph(words, parent));
    texts->addStretch(1);
    row->addLayout(texts, 1);
    return row;
}

PageStack::PageStack(QWidget* parent) : QStackedWidget(parent) {
    QAccessible::installFactory(makeAccessibleStack);
}

}  // namespace reelvane
