#include "ui/log_view.h"

#include <QFontDatabase>
#include <QScrollBar>
#include <QTextCursor>

namespace reelvane {
namespace {

constexpr std::size_t kShown = std::size_t{24} * 1024;
constexpr std::size_t kMost = kShown * 3 / 2;

/// Where the shown part of a log begins: not within a character.
std::size_t beginning(std::string_view log) {
    auto start = log.size() > kShown ? log.size() - kShown : 0;
    const auto continues = [&log](std::size_t at) {
        return (static_cast<unsigned char>(log[at]) & 0xC0U) == 0x80U;
    };
    while (start > 0 && start < log.size() && continues(start)) ++start;
    return start;
}

}  // namespace

LogView::LogView(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setTabChangesFocus(true);
    // The keyboard selects, too.
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

void LogView::showLog(std::string_view log) {
    clear();
    decoder_.resetState();
    start_ = end_ = beginning(log);
    append(log.substr(start_));
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void LogView::follow(std::string_view log) {
    if (log.size() == end_) return;
    const bool grows = log.size() > end_ && log.size() - start_ <= kMost;
    if (!grows) {
        showLog(log);
        return;
    }
    auto& bar = *verticalScrollBar();
    const bool atEnd = bar.value() == bar.maximum();
    append(log.substr(end_));
    if (atEnd) bar.setValue(bar.maximum());
}

void LogView::append(std::string_view bytes) {
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(decoder_(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size()))));
    end_ += bytes.size();
}

}  // namespace reelvane
