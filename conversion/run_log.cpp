#include "conversion/run_log.h"

#include <cctype>
#include <functional>

#include "support/strings.h"

namespace reelvane {

namespace {

bool isStatistics(std::string_view line) {
    return Fennimar::contains(line, "frame=") && Fennimar::contains(line, "bitrate=");
}

/// Tells line by line what was printed, and whether a line end followed.
template <typename Told>
void forEachLine(std::string_view printed, Told told) {
    for (const auto line : Fennimar::lines(printed)) {
        const auto end = static_cast<std::size_t>(line.data() - printed.data()) + line.size();
        told(line, end < printed.size());
    }
}

/// Lines that differ in numbers alone, addresses among them, are of one kind.
std::size_t kindOf(std::string_view line) {
    std::string words(line);
    std::erase_if(words, [](unsigned char c) { return std::isxdigit(c) != 0; });
    return std::hash<std::string>()(words);
}

}  // namespace

void RunLog::noteKind(std::string_view line) {
    constexpr std::size_t kMostKinds = 500;
    constexpr std::size_t kLongestExample = 500;
    if (kinds_.size() < kMostKinds && kinds_.insert(kindOf(line)).second) {
        examples_.append(line.substr(0, kLongestExample));
    }
}

void RunLog::append(std::string_view printed) {
    forEachLine(printed, [this](std::string_view line, bool isEnded) {
        if (isStatistics(line)) return;
        if (searched_.text().size() >= BoundedText::kPart) noteKind(line);
        searched_.append(line);
        show(line, isEnded);
    });
}

void RunLog::appendRest(std::string_view printed) {
    if (searched_.omittedBytes() > 0) searched_.append(examples_);
    searched_.append(printed);
    forEachLine(printed, [this](std::string_view line, bool isEnded) { show(line, isEnded); });
}

void RunLog::show(std::string_view line, bool isEnded) {
    shown_.append(line);
    // A carriage return with a line feed ends two lines, and an empty one says nothing.
    const bool isEmptyLine = shown().empty() || shown().back() == '\n';
    if (isEnded && !isEmptyLine) shown_.append("\n");
}

}  // namespace reelvane
