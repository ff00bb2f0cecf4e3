#include "ui/widgets/qt_text.h"

#include <algorithm>
#include <cstdint>

#include <QByteArray>
#include <QGuiApplication>

#include "support/localization.h"

namespace reelvane {
namespace {

constexpr qsizetype kLongestToolTipLine = 120;

}  // namespace

QString toQString(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QString toControlText(std::string_view utf8) {
    return toQString(utf8).replace('&', "&&");
}

QString toToolTip(const QString& text) {
    qsizetype longest = 0;
    for (const auto& line : text.split('\n')) longest = std::max(longest, line.size());
    const QString paragraph =
        longest > kLongestToolTipLine ? "<p>%1</p>" : "<p style='white-space:pre'>%1</p>";
    return paragraph.arg(text.toHtmlEscaped().replace('\n', "<br>"));
}

QString isolated(const QString& line) {
    constexpr QChar kFirstStrongIsolate(0x2068);
    constexpr QChar kPopIsolate(0x2069);
    return QGuiApplication::isRightToLeft() ? kFirstStrongIsolate + line + kPopIsolate : line;
}

QString displayPath(const std::filesystem::path& path) {
    return toQString(path.native());
}

QString displayName(const std::filesystem::path& path) {
    return toQString(path.filename().native());
}

QUrl toUrl(const std::filesystem::path& path) {
    const auto& bytes = path.native();
    const auto encoded =
        QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())).toPercentEncoding("/");
    return QUrl::fromEncoded("file://" + encoded, QUrl::StrictMode);
}

std::optional<std::filesystem::path> toPath(const QUrl& url) {
    if (!url.isLocalFile()) return std::nullopt;
    const auto bytes = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    if (bytes.isEmpty() || bytes.front() != '/') return std::nullopt;
    return std::filesystem::path(bytes.toStdString());
}

QString PortTranslator::translate(const char* /*context*/, const char* sourceText,
                                  const char* /*disambiguation*/, int n) const {
    // Qt puts the count into its place itself.
    const auto translated =
        n < 0 ? translations_.localized(sourceText)
              : localizedForCount(translations_, sourceText, static_cast<std::uint64_t>(n));
    // No text tells Qt to ask the next translator, which may know Qt's own texts.
    return translated == sourceText ? QString() : toQString(translated);
}

}  // namespace reelvane
