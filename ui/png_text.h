#pragma once

#include <string>
#include <utility>
#include <vector>

#include <QByteArray>

namespace reelvane {

/// Keys and values, both ASCII.
using PngTexts = std::vector<std::pair<std::string, std::string>>;

/// The PNG file with these texts in plain "tEXt" chunks in front of the picture. Qt writes longer
/// ones compressed, which other readers of thumbnails do not understand. Any thread.
[[nodiscard]] QByteArray withTexts(const QByteArray& png, const PngTexts& texts);

}  // namespace reelvane
