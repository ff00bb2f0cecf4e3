#include "ui/windows/rating_window.h"

#include <utility>

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/lifecycle.h"
#include "support/alerts.h"
#include "support/localization.h"
#include "support/make_string.h"
#include "support/ports/main_bundle.h"
#include "support/problem_reports.h"
#include "support/vantor.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/pages.h"
#include "ui/widgets/qt_text.h"

namespace reelvane {
namespace {

constexpr int kFeedbackLines = 7;

/// Asks for a few lines; it grows with the window.
class FeedbackField final : public QPlainTextEdit {
public:
    using QPlainTextEdit::QPlainTextEdit;
    [[nodiscard]] QSize sizeHint() const override {
        return {QPlainTextEdit::sizeHint().width(), fontMetrics().height() * kFeedbackLines};
    }
};

bool hasPage(const Vantor& vantor, std::string_view infoKey) {
    return vantor.ports().mainBundle.infoValue(infoKey).has_value();
}

void askToTurnOff(Vantor& vantor) {
    const auto answer =
        alert(vantor, localized(vantor, "Confirmation"),
              makeString(localized(vantor,
                                   "%@ asks for your feedback only rarely and at maximum only once "
                                   "per app-version. Are you sure you want to turn this off "
                                   "completely?"),
                         vantor.appName()),
              localized(vantor, "Cancel"), localized(vantor, "Turn off feedback dialoge"));
    if (answer == kSecondButton) vantor.preferences().setDefaultInt(kDontAskAgainKey, 1);
}

struct Ability {
    QString name;
    QString explanation;
};

QList<Ability> abilities() {
    return {
        {PromotionWindow::tr("The picture stays as it is"),
         PromotionWindow::tr("Video is copied, not converted again. Nothing is lost, and a whole "
                             "movie is done in minutes.")},
        {PromotionWindow::tr("Sound that plays"),
         PromotionWindow::tr("Stereo for every device, and the surround sound beside it where you "
                             "want both.")},
        {PromotionWindow::tr("Subtitles come along"),
         PromotionWindow::tr(
             "Subtitle files that you drop with a movie, and those inside it if you like.")},
        {PromotionWindow::tr("A queue that works alone"),
         PromotionWindow::tr("Drop many movies at once, pause whenever you need the computer, and "
                             "find everything done.")},
        {PromotionWindow::tr("In the terminal, too"),
         PromotionWindow::tr("“reelvane-cli convert” does the same for scripts and servers.")},
    };
}

}  // namespace

RatingWindow::RatingWindow(const UiContext& context, const QString& introText, QString& draft,
                           QWidget* parent)
    : QDialog(parent),
      context_(context),
      draft_(draft) {
    const auto name = toQString(context_.vantor.appName());
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(tr("How Is %1?").arg(name));
    connect(this, &QDialog::finished, this, [this] {
        if (closeBlock_) std::exchange(closeBlock_, {})();
    });
    views_ = new PageStack(this);
    views_->addWidget(makeInitialView(introText));
    happyView_ = makeHappyView();
    angryView_ = makeAngryView();
    views_->addWidget(happyView_);
    views_->addWidget(angryView_);
    auto* const all = new QVBoxLayout(this);
    const auto gap = fontMetrics().height();
    all->setContentsMargins(gap, gap, gap, gap);
    all->addWidget(views_);
}

QPushButton* RatingWindow::addButton(QVBoxLayout& column, const QString& text,
                                     std::function<void()> clicked) {
    auto* const button = new QPushButton(text, this);
    button->setMinimumHeight(fontMetrics().height() * 2);
    connect(button, &QPushButton::clicked, this, std::move(clicked));
    column.addWidget(button);
    return button;
}

void RatingWindow::addChoice(QVBoxLayout& column, const QString& text, int choice,
                             bool isAvailable) {
    const auto open = [this, choice] {
        openURL(context_.vantor, choice);
        close();
    };
    addButton(column, text, open)->setEnabled(isAvailable);
}

void RatingWindow::addWords(QVBoxLayout& column, const QString& heading, const QString& words) {
    column.addLayout(makeIntroduction(context_.icons.coloured("reelvane"), heading, words, this));
    column.addSpacing(fontMetrics().height() / 2);
}

QWidget* RatingWindow::makeInitialView(const QString& introText) {
    auto* const view = new QWidget(views_);
    auto* const column = new QVBoxLayout(view);
    column->setContentsMargins({});
    addWords(*column, introText, tr("What do you think of it so far?"));
    column->addStretch(1);
    addButton(*column, tr("It Works &Well for Me"),
              [this] { views_->setCurrentWidget(happyView_); });
    addButton(*column, tr("I Am &Not Sure Yet"), [this] { close(); });
    addButton(*column, tr("I Have a &Problem"), [this] { problemsClicked(); });
    auto* const never = new QPushButton(tr("&Do Not Ask Again…"), view);
    never->setFlat(true);
    never->setAutoDefault(false);
    connect(never, &QPushButton::clicked, this, &RatingWindow::dontshowClicked);
    column->addWidget(never, 0, Qt::AlignHCenter);
    return view;
}

QWidget* RatingWindow::makeHappyView() {
    const auto& vantor = context_.vantor;
    const auto name = toQString(vantor.appName());
    const bool downloadSite = hasPage(vantor, "MacupdateProductPage");
    const bool store = hasPage(vantor, "StoreProductPage");
    auto* const view = new QWidget(views_);
    auto* const column = new QVBoxLayout(view);
    column->setContentsMargins({});
    addWords(
        *column, tr("That makes our day!"),
        downloadSite || store
            ? tr("Would you tell others? A rating takes a minute and helps people find %1.")
                  .arg(name)
            : tr("There is no page for ratings yet. If a friend has movies that will not play on "
                 "their phone or television, tell them about %1.")
                  .arg(name));
    column->addStretch(1);
    addChoice(*column, tr("Rate on a &Download Site"), MacupdatePageURL, downloadSite);
    addChoice(*column, tr("Rate in the &Store"), StoreApplicationURL, store);
    addButton(*column, tr("&Not Now"), [this] { close(); });
    return view;
}

QWidget* RatingWindow::makeAngryView() {
    auto* const view = new QWidget(views_);
    auto* const column = new QVBoxLayout(view);
    column->setContentsMargins({});
    addWords(
        *column, tr("We are sorry about that."),
        tr("Please tell us what goes wrong. Your mail program opens with your words and a line "
           "about your computer; nothing is sent before you send it."));
    feedbackTextField_ = new FeedbackField(view);
    feedbackTextField_->setTabChangesFocus(true);
    feedbackTextField_->setPlaceholderText(tr("What did you try, and what happened?"));
    feedbackTextField_->setAccessibleName(tr("Your feedback"));
    feedbackTextField_->setPlainText(draft_);
    feedbackTextField_->moveCursor(QTextCursor::End);
    connect(feedbackTextField_, &QPlainTextEdit::textChanged, this,
            [this] { draft_ = feedbackTextField_->toPlainText(); });
    column->addWidget(feedbackTextField_, 1);
    preferencesBox_ = new QCheckBox(tr("&Attach my preferences"), view);
    column->addWidget(preferencesBox_);
    addButton(*column, tr("&Write the Mail…"), [this] { sendfeedbackClicked(); });
    addButton(*column, tr("&Close"), [this] { close(); });
    return view;
}

void RatingWindow::problemsClicked() {
    views_->setCurrentWidget(angryView_);
    feedbackTextField_->setFocus();
}

void RatingWindow::sendfeedbackClicked() {
    // The words are kept even so: the mail may be closed without being sent.
    sendSupportRequestMail(context_.vantor, draft_.toStdString(), preferencesBox_->isChecked());
    close();
}

void RatingWindow::dontshowClicked() {
    auto& vantor = context_.vantor;
    close();  // and this may be gone while the alert is open
    askToTurnOff(vantor);
}

PromotionWindow::PromotionWindow(const UiContext& context, QWidget* parent) : QDialog(parent) {
    auto& vantor = context.vantor;
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false);
    const auto title = tr("What %1 Can Do").arg(toQString(vantor.appName()));
    setWindowTitle(title);
    const auto gap = fontMetrics().height();
    auto* const all = new QVBoxLayout(this);
    all->setContentsMargins(gap, gap, gap, gap);
    all->setSpacing(gap * 2 / 3);
    all->addLayout(makeIntroduction(context.icons.coloured("reelvane"), title,
                                    tr("Movies for your Apple devices, ready in minutes."), this));
    for (const auto& [name, explanation] : abilities()) {
        auto* const line = makeParagraph(name, this);
        auto bold = line->font();
        bold.setBold(true);
        line->setFont(bold);
        auto* const ability = new QVBoxLayout;
        ability->setSpacing(gap / 5);
        ability->addWidget(line);
        ability->addWidget(makeParagraph(explanation, this));
        all->addLayout(ability);
    }
    all->addStretch(1);
    auto* const buttons = new QDialogButtonBox(this);
    auto* const close = buttons->addButton(tr("&Close"), QDialogButtonBox::RejectRole);
    close->setDefault(true);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    if (vantor.ports().mainBundle.infoValue("VendorProductPage")) {
        auto* const page =
            buttons->addButton(tr("&Visit the Home Page"), QDialogButtonBox::ActionRole);
        page->setAutoDefault(false);
        connect(page, &QPushButton::clicked, this, [&vantor] { openURL(vantor, ProductPageURL); });
    }
    all->addWidget(buttons);
}

}  // namespace reelvane
