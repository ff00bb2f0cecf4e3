#include "ui/windows/about_dialog.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

#include "app/app_delegate.h"
#include "media/probe.h"
#include "support/localization.h"
#include "support/ports/child_process.h"
#include "support/ports/host.h"
#include "support/vantor.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/pages.h"
#include "ui/widgets/qt_text.h"

namespace reelvane {
namespace {

ProbeToolProblem problemOf(LaunchError error) {
    switch (error) {
        case LaunchError::NotFound:
            return ProbeToolProblem::Missing;
        case LaunchError::NoResources:
            return ProbeToolProblem::NoResources;
        default:
            return ProbeToolProblem::Broken;
    }
}

}  // namespace

/// Asks the shipped ffmpeg for its version, beside the main loop. The asking ends with the object.
class AboutDialog::FFmpegVersion final : private ProcessListener {
public:
    /// The version, or else the sentences that say what is wrong with ffmpeg and what to do.
    struct Answer {
        std::string version{};
        std::string problem{};
    };
    using Answered = std::function<void(const Answer&)>;

    /// `answered` is called once, perhaps before this returns.
    FFmpegVersion(const Vantor& vantor, Answered answered)
        : vantor_(vantor),
          answered_(std::move(answered)) {
        auto launched = vantor.ports().processLauncher.launch(
            {.executable = resourceURL(vantor, "ffmpeg"), .arguments = {"-version"}}, *this);
        child_ = std::move(launched.child);
        if (child_ == nullptr) answerProblem(problemOf(launched.error));
    }

private:
    void outputReceived(std::string_view bytes) override { output_ += bytes; }
    void taskFinished(int exitStatus, std::string_view remainingOutput) override {
        output_ += remainingOutput;
        child_.reset();
        auto version = exitStatus == 0 ? versionInOutput(output_) : std::string();
        if (version.empty()) {
            answerProblem(ProbeToolProblem::Broken);
        } else {
            answered_({.version = std::move(version)});
        }
    }

    void answerProblem(ProbeToolProblem problem) {
        const auto& ports = vantor_.ports();
        answered_({.problem = toolProblemText(ports.translations, problem, ports.mainBundle)});
    }

    const Vantor& vantor_;
    Answered answered_;
    std::string output_;
    std::unique_ptr<ChildProcess> child_;
};

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
    all->addLayout(makeIntroduction(
        context_.icons.coloured("reelvane"), toQString(context_.vantor.appName()),
        tr("Turns Matroska movies into MP4 for Apple devices without touching the picture."),
        this));
    all->addLayout(makeFacts());
    all->addStretch(1);
    addButtons(*all);
}

AboutDialog::~AboutDialog() = default;

QLayout* AboutDialog::makeFacts() {
    auto& lifecycle = context_.controller.lifecycle();
    auto* const facts = new QFormLayout;
    facts->setVerticalSpacing(fontMetrics().height() / 2);
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
        context_.vantor, [this, ffmpeg](const FFmpegVersion::Answer& answer) {
            ffmpeg->setText(toQString(answer.problem.empty() ? answer.version : answer.problem));
            if (isVisible()) adjustSize();  // a problem takes some lines
        });
    return facts;
}

QLabel* AboutDialog::addFact(QFormLayout& facts, const QString& name, const QString& value) {
    auto* const shown = makeParagraph(value, this);
    auto* const label = new QLabel(name, this);
    label->setAlignment(Qt::AlignTop);
    facts.addRow(label, shown);
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
