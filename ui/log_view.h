#pragma once

#include <cstddef>
#include <string_view>

#include <QPlainTextEdit>
#include <QStringDecoder>

namespace reelvane {

/// The end of a log that may still grow. Of a long log only the last part is shown, so that the
/// window never waits for it.
class LogView final : public QPlainTextEdit {
public:
    explicit LogView(QWidget* parent);

    /// Shows another log.
    void showLog(std::string_view log);
    /// Shows what has been added to the log since.
    void follow(std::string_view log);
    /// False: the log is longer than what is shown of it.
    [[nodiscard]] bool showsAll() const { return start_ == 0; }

private:
    void append(std::string_view bytes);

    std::size_t start_ = 0;  ///< of what is shown, in the log
    std::size_t end_ = 0;
    QStringDecoder decoder_{QStringDecoder::Utf8};  ///< a character may come in two parts
};

}  // namespace reelvane
