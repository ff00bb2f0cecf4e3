#include "ui/windows/empty_state.h"

#include <span>
#include <string_view>

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStringList>
#include <QVBoxLayout>

#include "app/app_delegate.h"
#include "app/opened_files.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/theme.h"

namespace reelvane {
namespace {

constexpr int kColumnCharacters = 100;
constexpr int kLeastHintCharacters = 40;  // less would cut the words off
constexpr int kLeastLines = 14;

/// A picture that gives way where the window is low.
class Picture final : public QWidget {
public:
    Picture(QIcon icon, QWidget* parent) : QWidget(parent), icon_(std::move(icon)) {}

    [[nodiscard]] QSize sizeHint() const override { return lines(10); }
    [[nodiscard]] QSize minimumSizeHint() const override { return lines(3); }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        icon_.paint(&painter, rect());
    }

private:
    [[nodiscard]] QSize lines(int count) const {
        const int side = count * fontMetrics().height();
        return {side, side};
    }

    QIcon icon_;
};

QLabel* centred(const QString& text, QWidget* parent) {
    auto* const label = new QLabel(text, parent);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    return label;
}

QLabel* headline(QWidget* parent) {
    auto* const label = centred(QObject::tr("Drop movies here"), parent);
    auto large = label->font();
    large.setPointSizeF(large.pointSizeF() * 1.7);
    large.setBold(true);
    label->setFont(large);
    return label;
}

QString joined(std::span<const std::string_view> words) {
    QStringList list;
    for (const auto word : words) list << toQString(word);
    // It is looked into, but what it usually holds is no video that an MP4 file takes.
    list.removeOne("webm");
    return list.join(", ");
}

}  // namespace

EmptyState::EmptyState(const UiContext& context, QWidget* parent) : QWidget(parent) {
    makeColumn(context);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);  // as the list in whose place it stands
    column_->setMaximumWidth(kColumnCharacters * fontMetrics().averageCharWidth());
    setMinimumSize(kLeastHintCharacters * fontMetrics().averageCharWidth(),
                   kLeastLines * fontMetrics().height());
    auto* const row = new QHBoxLayout(this);
    constexpr int kMost = 100;
    row->addStretch(1);
    row->addWidget(column_, kMost);
    row->addStretch(1);
    colourFormats();
}

void EmptyState::makeColumn(const UiContext& context) {
    column_ = new QWidget(this);
    picture_ = new Picture(context.icons.coloured("drop_movies"), column_);
    formats_ = centred(tr("Movies: %1").arg(joined(kMovieFileTypes)) + '\n' +
                           tr("Subtitles beside them: %1").arg(joined(kSubtitleFileTypes)),
                       column_);
    add_ = new QPushButton(context.icons.symbolic("add"), tr("Add Movies…"), column_);
    add_->setAutoDefault(true);  // Return presses it
    connect(add_, &QPushButton::clicked, this,
            [&controller = context.controller] { controller.intake().addClicked(); });

    const int gap = fontMetrics().height();
    auto* const rows = new QVBoxLayout(column_);
    rows->setSpacing(0);
    rows->addStretch(2);
    rows->addWidget(picture_, 0, Qt::AlignHCenter);
    rows->addSpacing(gap);
    rows->addWidget(headline(column_));
    rows->addSpacing(gap / 2);
    rows->addWidget(centred(tr("Matroska and other movies become MP4 files for Apple devices, "
                               "with the picture untouched."),
                            column_));
    rows->addSpacing(gap / 2);
    rows->addWidget(formats_);
    rows->addSpacing(gap * 3 / 2);
    rows->addWidget(add_, 0, Qt::AlignHCenter);
    rows->addStretch(3);
}

void EmptyState::focusDefault() {
    add_->setFocus();
}

void EmptyState::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) colourFormats();
}

void EmptyState::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const int room = layout()->contentsRect().height();
    // In a low window words count for more than the picture.
    for (auto* const extra : {picture_, static_cast<QWidget*>(formats_)}) extra->show();
    for (auto* const extra : {picture_, static_cast<QWidget*>(formats_)}) {
        extra->setVisible(column_->layout()->minimumHeightForWidth(column_->width()) <= room);
    }
}

void EmptyState::colourFormats() {
    auto colours = palette();
    colours.setColor(QPalette::Text, quietText(colours));
    formats_->setPalette(colours);
}

}  // namespace reelvane
