#pragma once

#include <functional>
#include <string>

#include <QWidget>

#include "media/subtitle_file.h"

class QComboBox;

namespace reelvane {

class ElidedLabel;

/// Asks in which encoding a subtitle file is written that does not tell, with two of its lines as
/// the present choice reads them.
class SubtitleQuestion final : public QWidget {
public:
    /// `chosen` gets the encoding's name as the converter knows it.
    SubtitleQuestion(std::function<void(std::string name)> chosen, QWidget* parent);

    /// Asks about this file, and is hidden where there is nothing to ask.
    void showFormat(const SubtitleFormat& format);

private:
    QComboBox* encodings_;
    ElidedLabel* lines_;
};

}  // namespace reelvane
