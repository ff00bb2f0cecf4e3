#pragma once

#include <string>
#include <string_view>

#include "media/mkv_file_info.h"
#include "support/strings.h"

namespace reelvane {

/// The track that is listed as this: "#1: eng (ac3) [5.1]".
inline AudioTrack audioTrack(std::string_view listed, int hz = 0) {
    const auto inParentheses = Fennimar::partAfter(listed, "(").value_or("");
    return {.stream = Fennimar::leadingInteger(listed.substr(1)),
            .language = std::string(
                Fennimar::partBefore(Fennimar::partAfter(listed, ": ").value_or(""), " ")),
            .codec = std::string(Fennimar::partBefore(inParentheses, ")")),
            .surround = listed.ends_with(" [5.1]"),
            .hz = hz};
}

}  // namespace reelvane
