#include "ui/windows/drop_target.h"

#include <filesystem>
#include <vector>

#include <QDropEvent>
#include <QMimeData>
#include <QPainter>
#include <QTimer>
#include <QWidget>

#include "app/app_delegate.h"
#include "app/opened_files.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/theme.h"

namespace reelvane {
namespace {

/// Lies over the window while a drop is welcome. It is not in the way of the drag.
class DropHighlight final : public QWidget {
public:
    explicit DropHighlight(QWidget* window) : QWidget(window) {
        setAccessibleName(QObject::tr("Drop to add"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        constexpr float kTint = 0.1F;
        const auto accent = palette().color(QPalette::Highlight);
        const double unit = fontMetrics().height();
        auto tint = accent;
        tint.setAlphaF(kTint);
        constexpr double kStrength = 0.25;
        const auto line = mixed(accent, palette().color(QPalette::WindowText), kStrength);
        QPen dashes(line, unit / 6, Qt::DashLine, Qt::RoundCap);
        dashes.setDashPattern({3, 2.5});
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillRect(rect(), tint);
        painter.setPen(dashes);
        const auto frame = QRectF(rect()).adjusted(unit / 2, unit / 2, -unit / 2, -unit / 2);
        painter.drawRoundedRect(frame, unit, unit);
        paintInvitation(painter, frame, unit);
    }

private:
    void paintInvitation(QPainter& painter, const QRectF& frame, double unit) const {
        const auto text = QObject::tr("Drop to add");
        auto bold = font();
        bold.setBold(true);
        QRectF pill(QPointF(), QFontMetricsF(bold).size(0, text));
        pill.adjust(-unit, -unit / 3, unit, unit / 3);
        pill.moveCenter(frame.center());
        pill.moveBottom(height() - unit / 6);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().color(QPalette::Highlight));
        painter.drawRoundedRect(pill, pill.height() / 2, pill.height() / 2);
        painter.setFont(bold);
        painter.setPen(palette().color(QPalette::HighlightedText));
        painter.drawText(pill, Qt::AlignCenter, text);
    }
};

std::vector<std::filesystem::path> draggedPaths(const QMimeData& dragged) {
    std::vector<std::filesystem::path> paths;
    for (const auto& url : dragged.urls()) {
        if (auto path = toPath(url)) paths.push_back(std::move(*path));
    }
    return paths;
}

}  // namespace

DropTarget::DropTarget(QWidget& window, AppDelegate& controller)
    : QObject(&window),
      window_(window),
      controller_(controller),
      highlight_(new DropHighlight(&window)) {
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

bool DropTarget::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::DragEnter:
            enter(*static_cast<QDropEvent*>(event));
            return true;
        case QEvent::DragMove:
            over(*static_cast<QDropEvent*>(event));
            return true;
        case QEvent::DragLeave:
            showHighlight(false);
            return true;
        case QEvent::Drop:
            drop(*static_cast<QDropEvent*>(event));
            return true;
        case QEvent::Resize:
            highlight_->setGeometry(window_.rect());
            break;
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}

void DropTarget::enter(QDropEvent& event) {
    welcome_ = event.possibleActions().testFlag(Qt::CopyAction) &&
               acceptsDrag(draggedPaths(*event.mimeData()));
    showHighlight(welcome_);
    over(event);
}

void DropTarget::over(QDropEvent& event) const {
    // Never as a move: the other program would delete the movies.
    event.setDropAction(welcome_ ? Qt::CopyAction : Qt::IgnoreAction);
    event.setAccepted(welcome_);
}

void DropTarget::drop(QDropEvent& event) {
    showHighlight(false);
    over(event);
    if (!welcome_) return;
    // Afterwards, so that the other program need not wait until the files have been looked at.
    auto* const later = new QTimer(this);
    connect(later, &QTimer::timeout, this, [this, later, paths = draggedPaths(*event.mimeData())] {
        later->deleteLater();
        controller_.intake().openFiles(paths);
    });
    later->setSingleShot(true);
    later->start(0);
}

void DropTarget::showHighlight(bool shown) {
    if (shown) {
        highlight_->setGeometry(window_.rect());
        highlight_->raise();
    }
    highlight_->setVisible(shown);
}

}  // namespace reelvane
