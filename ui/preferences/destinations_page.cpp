#include "ui/preferences/destinations_page.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QStyledItemDelegate>
#include <QToolButton>
#include <QVBoxLayout>

#include "app/app_delegate.h"
#include "app/preference_table.h"
#include "support/vantor.h"
#include "ui/preferences/preference_controls.h"
#include "ui/preferences/preference_page.h"
#include "ui/widgets/labels.h"
#include "ui/widgets/pop_up_menu_box.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/theme.h"

namespace reelvane {
namespace {

constexpr int kListLines = 11;

void shortcut(QWidget* widget, int keys, const std::function<void()>& pressed) {
    auto* const made = new QShortcut(keys, widget);
    made->setContext(Qt::WidgetShortcut);
    QObject::connect(made, &QShortcut::activated, widget, pressed);
}

int padding(const QFontMetrics& metrics) {
    return metrics.height() / 3;
}

void drawLine(QPainter& painter, const QStyleOptionViewItem& option, const QRect& line,
              const QString& text) {
    // The side is the window's, the order of the words the text's own.
    painter.setLayoutDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    const auto side = QStyle::visualAlignment(option.direction, Qt::AlignLeading);
    painter.drawText(line, static_cast<int>(side | Qt::AlignAbsolute | Qt::AlignVCenter),
                     option.fontMetrics.elidedText(text, Qt::ElideMiddle, line.width()));
}

/// Draws a saved folder: its name, and below it the path, which gives way in the middle. The name
/// is the item's text.
class FolderDelegate final : public QStyledItemDelegate {
public:
    static constexpr int kPathRole = Qt::UserRole;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;
};

void FolderDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
    auto item = option;
    initStyleOption(&item, index);
    const auto name = item.text;
    item.text.clear();
    const auto* const style = item.widget != nullptr ? item.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);

    const auto inset = padding(item.fontMetrics);
    const auto height = item.fontMetrics.height();
    const QRect first(item.rect.left() + inset, item.rect.top() + inset,
                      item.rect.width() - 2 * inset, height);
    const bool selected = item.state.testFlag(QStyle::State_Selected);
    const auto main = selected ? QPalette::HighlightedText : QPalette::Text;
    const auto group =
        item.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    painter->save();
    painter->setPen(item.palette.color(group, main));
    drawLine(*painter, item, first, name);
    if (!selected) painter->setPen(quietText(item.palette));
    drawLine(*painter, item, first.translated(0, height), index.data(kPathRole).toString());
    painter->restore();
}

QSize FolderDelegate::sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& /*index*/) const {
    return {0, 2 * (option.fontMetrics.height() + padding(option.fontMetrics))};
}

}  // namespace

DestinationsPage::DestinationsPage(const UiContext& context, QWidget* parent)
    : PreferencePage(context.vantor.preferences(), tr("Destinations"), parent),
      context_(context) {
    addMenu();
    addFolders();
    subscription_ = context_.controller.destinations().preferencesDestinationPopUp().observe(
        [this] { listFolders(); });
    listFolders();
}

void DestinationsPage::addMenu() {
    auto& destinations = context_.controller.destinations();
    column().addHeading(tr("Converted Movies"));
    auto* const row = new QWidget(&column());
    auto* const box = new PopUpMenuBox(destinations.preferencesDestinationPopUp(), row);
    box->setObjectName(toQString(kDefaultDestination.key));
    box->setPlaceholderText(tr("Not chosen"));
    box->setChosen([&destinations](std::size_t chosen) {
        destinations.pick(DestinationMenu::Preferences, chosen);
    });
    auto* const layout = new QVBoxLayout(row);
    layout->setContentsMargins({});
    addLabelledRow(*layout, *box, tr("Save them"),
                   tr("This is chosen first for each movie that you add."));
    column().addWidget(row);
}

void DestinationsPage::addFolders() {
    column().addHeading(tr("Saved Folders"));
    folders_ = new QListWidget(&column());
    folders_->setObjectName("savedFolders");
    describe(*folders_, tr("Saved folders"),
             tr("The menus of destinations list them in this order."));
    folders_->setItemDelegate(new FolderDelegate(folders_));
    folders_->setUniformItemSizes(true);
    folders_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    folders_->setFixedHeight(fontMetrics().height() * kListLines);
    auto* const hint = new QuietLabel(
        tr("No folder is saved yet. Add the folders where you keep your movies."), folders_);
    hint->setObjectName("noFolders");
    hint->setAlignment(Qt::AlignCenter);
    (new QVBoxLayout(folders_->viewport()))->addWidget(hint);
    connect(folders_, &QListWidget::currentRowChanged, this, [this] { enableButtons(); });
    shortcut(folders_, Qt::Key_Delete, [this] { removeFolder(); });
    shortcut(folders_, static_cast<int>(Qt::ALT) | Qt::Key_Up, [this] { moveFolder(-1); });
    shortcut(folders_, static_cast<int>(Qt::ALT) | Qt::Key_Down, [this] { moveFolder(1); });
    column().addWidget(folders_);
    column().addWidget(makeButtons());
}

QWidget* DestinationsPage::makeButtons() {
    auto* const row = new QWidget(&column());
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    const auto addButton = [&](const QString& text, const QString& help, auto clicked) {
        auto* const button = new QPushButton(text, row);
        button->setAutoDefault(false);
        button->setToolTip(help);
        connect(button, &QPushButton::clicked, this, clicked);
        layout->addWidget(button);
        return button;
    };
    const auto addArrow = [&](Qt::ArrowType arrow, const QString& name, const QString& help,
                              int rows) {
        auto* const button = new QToolButton(row);
        button->setArrowType(arrow);
        button->setFocusPolicy(Qt::StrongFocus);
        button->setToolTip(help);
        describe(*button, name, help);
        connect(button, &QToolButton::clicked, this, [this, rows] { moveFolder(rows); });
        layout->addWidget(button);
        return button;
    };
    addButton(tr("Add a Folder…"), tr("Converted movies go there from then on"), [this] {
        context_.controller.destinations().chooseNewDestination(DestinationMenu::Preferences);
    });
    remove_ = addButton(tr("Remove"), tr("The folder itself and its files stay (Delete)"),
                        [this] { removeFolder(); });
    layout->addStretch(1);
    up_ = addArrow(Qt::UpArrow, tr("Move Up"), tr("Further up in the menus (Alt+Up)"), -1);
    down_ = addArrow(Qt::DownArrow, tr("Move Down"), tr("Further down in the menus (Alt+Down)"), 1);
    return row;
}

void DestinationsPage::listFolders() {
    const auto row = static_cast<std::size_t>(std::max(folders_->currentRow(), 0));
    const auto current = row < saved_.size() ? saved_[row].bookmark : BookmarkData();
    saved_ = savedDestinations(context_.vantor.preferences());
    folders_->clear();
    for (const auto& folder : saved_) {
        auto* const item = new QListWidgetItem(toQString(folder.name), folders_);
        const auto path = displayPath(context_.vantor.ports().folderAccess.pathOf(folder.bookmark));
        item->setData(FolderDelegate::kPathRole, path);
        item->setData(Qt::AccessibleTextRole, tr("%1 in %2").arg(item->text(), path));
        item->setToolTip(toToolTip(path));
    }
    const auto same = std::ranges::find(saved_, current, &SavedDestination::bookmark);
    const auto next = same == saved_.end() ? std::min(row + 1, saved_.size()) - 1
                                           : static_cast<std::size_t>(same - saved_.begin());
    folders_->setCurrentRow(saved_.empty() ? -1 : static_cast<int>(next));
    folders_->findChild<QLabel*>("noFolders")->setVisible(saved_.empty());
    enableButtons();
}

void DestinationsPage::enableButtons() {
    const auto row = folders_->currentRow();
    remove_->setEnabled(row >= 0);
    up_->setEnabled(row > 0);
    down_->setEnabled(row >= 0 && row + 1 < folders_->count());
}

void DestinationsPage::moveFolder(int rows) {
    const auto row = folders_->currentRow();
    const auto place = row + rows;
    if (row < 0 || place < 0 || place >= folders_->count()) return;
    const auto bookmark = saved_.at(static_cast<std::size_t>(row)).bookmark;
    context_.controller.destinations().moveSavedDestination(bookmark,
                                                            static_cast<std::size_t>(place));
}

void DestinationsPage::removeFolder() {
    const auto row = folders_->currentRow();
    if (row < 0) return;
    const auto bookmark = saved_.at(static_cast<std::size_t>(row)).bookmark;
    context_.controller.destinations().removeSavedDestination(bookmark);
}

std::vector<std::string_view> DestinationsPage::keys() const {
    auto keys = PreferencePage::keys();
    keys.push_back(kDefaultDestination.key);
    return keys;
}

void DestinationsPage::showStored() {
    PreferencePage::showStored();
    context_.controller.destinations().rebuildPreferencesDestinationPopUp();
}

QString DestinationsPage::keptByReset() const {
    return tr("Your saved folders stay.");
}

}  // namespace reelvane
