#include "ui/about_dialog.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

#include "app/app_delegate.h"
#include "support/ports/host.h"
#include "support/vantor.h"
#include "ui/ffmpeg_version.h"
#include "ui/icons.h"
#include "ui/qt_text.h"
#include "ui/window_text.h"

namespace reelvane {

AboutDialog::AboutDialog(const UiContext& context, QWidget* parent)
    : QDialog(parent),
      context_(context) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(tr("About %1").arg(toQString(context_.vantor.appName())));
    const auto gap = fontMetrics().height();
    auto* const all = new QVBoxLayout(this);
    all->setContentsMargins(gap, gap, gap, gap);
    all->setSpacing(gap);
    all->addLayout(makeIdentity());
    all->addLayout(makeFacts());
    all->addStretch();
    addButtons(*all);
}

AboutDialog::~AboutDialog() = default;

QLayout* AboutDialog::makeIdentity() {
    auto* const row = new QHBoxLayout;
    row->setSpacing(fontMetrics().height());
    const auto icon = context_.icons.coloured("reelvane");
    if (!icon.isNull()) {
        auto* const picture = new QLabel(this);
        const auto size = fontMetrics().height() * 4;
        picture->setPixmap(icon.pixmap(QSize(size, size), devicePixelRatioF()));
        row->addWidget(picture, 0, Qt::AlignTop);
    }
    auto* const texts = new QVBoxLayout;
    texts->addWidget(makeHeading(toQString(context_.vantor.appName()), this));
    texts->addWidget(makeParagraph(
        tr("Turns Matroska movies into MP4 for Apple devices without touching the picture."),
        this));
    texts->addStretch();
    row->addLayout(texts, 1);
    return row;
}

QLayout* AboutDialog::makeFacts() {
    auto& lifecycle = context_.controller.lifecycle();
    auto* const facts = new QFormLayout;
    facts->setRowWrapPolicy(QFormLayout::DontWrapRows);
    facts->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    addFact(*facts, tr("Program:"),
            toQString(lifecycle.version()) + ", " + toQString(lifecycle.build()));
    auto* const ffmpeg = addFact(*facts, tr("ffmpeg:"), tr("Asking…"));
    addFact(*facts, tr("Qt:"), QString::fromLatin1(qVersion()));
    addFact(*facts, tr("System:"),
            toQString(context_.vantor.ports().host.operatingSystemVersion()));
    addFact(*facts, tr("Licence:"),
            tr("GPL-3.0-or-later: free to use, to study, to change and to "
               "pass on"));
    ffmpeg_ = std::make_unique<FFmpegVersion>(
        context_.vantor, [ffmpeg](const FFmpegVersion::Answer& answer) {
            ffmpeg->setText(answer.problem.empty()
                                ? toQString(answer.version)
                                : tr("Not found.") + ' ' + toQString(answer.problem));
        });
    return facts;
}

QLabel* AboutDialog::addFact(QFormLayout& facts, const QString& name, const QString& value) {
    auto* const shown = makeParagraph(value, this);
    shown->setAccessibleName(name + ' ' + value);
    facts.addRow(name, shown);
    facts_.append({name, shown});
    return shown;
}

void AboutDialog::addButtons(QLayout& column) {
    auto* const buttons = new QDialogButtonBox(this);
    auto* const close = buttons->addButton(tr("Cl&ose"), QDialogButtonBox::RejectRole);
    close->setDefault(true);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* const copy = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
    copy->setAutoDefault(false);
    copy->setToolTip(tr("Copies these lines, for a mail to the support"));
    connect(copy, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(report()); });
    column.addWidget(buttons);
}

QString AboutDialog::report() const {
    auto text = toQString(context_.vantor.appName()) + '\n';
    for (const auto& [name, value] : facts_) text += name + ' ' + value->text() + '\n';
    return text;
}

}  // namespace reelvane
