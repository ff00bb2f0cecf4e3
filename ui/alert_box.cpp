#include "ui/alert_box.h"

#include <algorithm>

#include <QAccessibleWidget>
#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>

#include "support/alerts.h"
#include "ui/plain_text_view.h"
#include "ui/qt_text.h"

namespace reelvane {
namespace {

constexpr int kWidestLine = 62;         ///< in average characters: comfortable to read
constexpr double kTitleShare = 0.2;     ///< of the screen's height, at most
constexpr double kMessageShare = 0.45;  ///< the same

QDialogButtonBox::ButtonRole roleOf(std::size_t button, std::size_t count) {
    if (button == 0) return QDialogButtonBox::AcceptRole;
    return button + 1 == count ? QDialogButtonBox::RejectRole : QDialogButtonBox::DestructiveRole;
}

/// Screen readers read an alert out as soon as it opens; for other dialogs they wait to be asked.
QAccessibleInterface* makeAccessibleAlert(const QString& /*className*/, QObject* object) {
    auto* const box = dynamic_cast<AlertBox*>(object);
    if (box == nullptr) return nullptr;
    return new QAccessibleWidget(box, QAccessible::AlertMessage);
}

}  // namespace

AlertBox::AlertBox(const AlertContent& content, const QIcon& picture, QWidget* parent)
    : QDialog(parent),
      content_(content),
      button_(cautiousButton(content)) {
    QAccessible::installFactory(makeAccessibleAlert);
    setAttribute(Qt::WA_QuitOnClose, false);  // it may be the only window, before the main one
    setWindowModality(Qt::ApplicationModal);
    setWindowTitle(QGuiApplication::applicationDisplayName());
    setAccessibleName(toQString(content_.title));
    setAccessibleDescription(toQString(content_.message));
    accessory_ = makeAccessoryView(content_.accessory, toQString(content_.title), this);
    if (content_.suppressionTitle) {
        suppression_ = new QCheckBox(toControlText(*content_.suppressionTitle), this);
    }
    makeButtons();
    layOut(picture);
}

void AlertBox::makeButtons() {
    buttons_ = new QDialogButtonBox(this);
    if (content_.buttons.empty()) content_.buttons.push_back(tr("OK").toStdString());
    for (std::size_t i = 0; i < content_.buttons.size(); ++i) {
        auto* const button = buttons_->addButton(toControlText(content_.buttons[i]),
                                                 roleOf(i, content_.buttons.size()));
        connect(button, &QPushButton::clicked, this, [this, i] {
            button_ = kFirstButton + static_cast<ButtonResult>(i);
            accept();
        });
        // Return, pressed without reading, throws nothing away.
        const auto usual = content_.destructive ? cautiousButton(content_) : kFirstButton;
        if (kFirstButton + static_cast<ButtonResult>(i) != usual) continue;
        button->setDefault(true);
        button->setFocus();
    }
}

QWidget* AlertBox::makeTexts(int narrowest) {
    auto* const texts = new QWidget(this);
    auto* const column = new QVBoxLayout(texts);
    column->setContentsMargins({});
    auto bold = font();
    bold.setBold(true);
    const auto room = screen()->availableSize();
    std::vector<std::pair<PlainTextView*, double>> views;
    if (!content_.title.empty()) {
        views.emplace_back(new PlainTextView(toQString(content_.title), bold, texts), kTitleShare);
    }
    if (!content_.message.empty()) {
        views.emplace_back(new PlainTextView(toQString(content_.message), font(), texts),
                           kMessageShare);
    }
    int width = narrowest;
    for (const auto& [view, share] : views) width = std::max(width, view->naturalWidth());
    width = std::min({width, fontMetrics().averageCharWidth() * kWidestLine, room.width() * 3 / 4});
    width = std::max(width, narrowest);
    for (const auto& [view, share] : views) {
        view->fit(width, static_cast<int>(room.height() * share));
        column->addWidget(view);
    }
    return texts;
}

void AlertBox::layOut(const QIcon& picture) {
    const auto gap = fontMetrics().height();
    auto* const column = new QVBoxLayout;
    auto narrowest = std::max(buttons_->sizeHint().width(), gap * 14);
    if (accessory_.widget != nullptr) {
        narrowest = std::max(narrowest, accessory_.widget->minimumWidth());
    }
    column->addWidget(makeTexts(narrowest));
    if (accessory_.widget != nullptr) column->addWidget(accessory_.widget);
    if (suppression_ != nullptr) column->addWidget(suppression_);
    column->addStretch();
    column->setSpacing(gap * 2 / 3);

    auto* const row = new QHBoxLayout;
    if (!picture.isNull()) {
        auto* const shown = new QLabel(this);
        shown->setAccessibleName(QGuiApplication::applicationDisplayName());
        const auto size =
            style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this) * 3 / 2;
        shown->setPixmap(picture.pixmap(QSize(size, size), devicePixelRatioF()));
        row->addWidget(shown, 0, Qt::AlignTop);
        row->setSpacing(gap);
    }
    row->addLayout(column, 1);
    auto* const all = new QVBoxLayout(this);
    all->setContentsMargins(gap, gap, gap, gap);
    all->setSpacing(gap);
    all->addLayout(row);
    all->addWidget(buttons_);
    all->setSizeConstraint(QLayout::SetFixedSize);
}

void AlertBox::ask() {
    // An open menu would keep mouse and keyboard to itself.
    while (auto* const menu = QApplication::activePopupWidget()) {
        if (!menu->close()) break;
    }
    show();
    raise();
    activateWindow();
    if (accessory_.focus != nullptr) accessory_.focus->setFocus();
    QApplication::alert(this);
    exec();
}

AlertAnswer AlertBox::answer() const {
    AlertAnswer answer{.button = button_,
                       .suppressed = suppression_ != nullptr && suppression_->isChecked()};
    if (accessory_.read) accessory_.read(answer);
    return answer;
}

}  // namespace reelvane
