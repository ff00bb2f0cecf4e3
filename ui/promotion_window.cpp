#include "ui/promotion_window.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "support/open_url.h"
#include "support/ports/main_bundle.h"
#include "support/vantor.h"
#include "ui/icons.h"
#include "ui/qt_text.h"
#include "ui/window_text.h"

namespace reelvane {
namespace {

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
