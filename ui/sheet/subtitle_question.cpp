#include "ui/sheet/subtitle_question.h"

#include <utility>

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>

#include "conversion/stream_plan.h"
#include "support/strings.h"
#include "ui/preferences/subtitles_page.h"
#include "ui/widgets/labels.h"
#include "ui/widgets/qt_text.h"

namespace reelvane {
namespace {

constexpr int kLeastEncodingCharacters = 12;

/// The encodings of the preferences, and before them those that the detector does not know: a file
/// that is asked about is most likely in one of these.
void addEncodings(QComboBox& box) {
    const auto add = [&box](const char* name, const QString& purpose) {
        box.addItem(QObject::tr("%1 (%2)").arg(name, purpose), QString(name));
    };
    add("CP850", QObject::tr("Western European, DOS"));
    add("CP852", QObject::tr("Central European, DOS"));
    add("CP437", QObject::tr("English, DOS"));
    add("MACINTOSH", QObject::tr("Western European, Mac"));
    add("KOI8-R", QObject::tr("Cyrillic"));
    add("CP932", QObject::tr("Japanese"));
    add("BIG5", QObject::tr("Traditional Chinese"));
    add("CP949", QObject::tr("Korean"));
    for (const auto& choice : subtitleEncodingChoices()) {
        const auto index = static_cast<std::size_t>(choice.value.value_or(0));
        const auto name = toQString(kSubtitleEncodings.at(index));
        // What is Unicode tells.
        if (index == 0 || name.startsWith("UTF")) continue;
        box.addItem(choice.title, name);
    }
}

QString readAs(const std::vector<std::string>& lines, const std::string& encoding) {
    QStringList read;
    for (const auto& line : lines) {
        read << toQString(decoded(line, encoding).value_or(Fennimar::validUtf8(line)));
    }
    return read.join('\n');
}

}  // namespace

SubtitleQuestion::SubtitleQuestion(std::function<void(std::string name)> chosen, QWidget* parent)
    : QWidget(parent),
      encodings_(new QComboBox(this)),
      lines_(new ElidedLabel(Qt::ElideRight, ElidedLabel::Rank::Quiet, this)) {
    addEncodings(*encodings_);
    setFocusProxy(encodings_);
    encodings_->setPlaceholderText(tr("Choose…"));
    encodings_->setMinimumContentsLength(kLeastEncodingCharacters);
    encodings_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    lines_->setMostLines(2);
    auto* const label = new QLabel(tr("&Encoding of the subtitles:"), this);
    label->setBuddy(encodings_);
    auto* const items = new QHBoxLayout(this);
    items->setContentsMargins({});
    items->setSpacing(fontMetrics().height() / 2);
    items->addWidget(label);
    items->addWidget(encodings_);
    items->addWidget(lines_, 1);
    connect(encodings_, &QComboBox::activated, this, [this, chosen = std::move(chosen)] {
        chosen(encodings_->currentData().toString().toStdString());
    });
}

void SubtitleQuestion::showFormat(const SubtitleFormat& format) {
    setVisible(!format.samples.empty());
    if (format.samples.empty()) return;
    const auto& name = format.encoding.name;
    encodings_->setCurrentIndex(name.empty() ? -1 : encodings_->findData(toQString(name)));
    lines_->setText(readAs(format.samples, name.empty() ? "CP1252" : name));
}

}  // namespace reelvane
