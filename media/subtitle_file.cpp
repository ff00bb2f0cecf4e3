#include "media/subtitle_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "support/localization.h"
#include "support/make_string.h"
#include "support/ports/translations.h"
#include "support/posix_io.h"
#include "support/strings.h"

namespace reelvane {
namespace {

constexpr std::size_t kMostRead = std::size_t{32} << 20U;  // fonts inside a file make it large
constexpr off_t kMostSize = off_t{256} << 20U;  // the converter holds the whole file in memory
constexpr std::size_t kMostSearched = std::size_t{64} * 1024;  // for the first line of a format
constexpr std::size_t kSampleLines = 2;

/// Matches a text against a pattern from its beginning: "9" stands for one or more digits, "0" for
/// any number of them, all else for itself.
bool beginsLike(std::string_view text, std::string_view pattern) {
    for (const char expected : pattern) {
        if (expected != '9' && expected != '0') {
            if (text.empty() || text.front() != expected) return false;
            text.remove_prefix(1);
            continue;
        }
        const auto end = std::ranges::find_if_not(text, Fennimar::isDigit) - text.begin();
        if (end == 0 && expected == '9') return false;
        text.remove_prefix(static_cast<std::size_t>(end));
    }
    return true;
}

/// A line that only one format has, and the converter's name of that format.
struct LineForm {
    std::string_view demuxer;
    std::string_view pattern;
};
constexpr auto kLineForms = std::to_array<LineForm>({
    {"ass", "[script info]"},
    {"ass", "dialogue:"},
    {"sami", "<sami"},
    {"sami", "<sync"},
    {"microdvd", "{9}{0}"},
    {"microdvd", "{default}{}"},
    {"mpl2", "[9][0]"},
    {"subviewer1", "[******** start script ********]"},
    {"subviewer", "[information]"},
    {"subviewer", "9:9:9.9,9:9:9.9"},
    {"mpsub", "format=time"},
    {"mpsub", "format=9"},
    {"stl", "9:9:9:9 ,"},
    {"stl", "9:9:9:9,"},
    {"vplayer", "9:9:9:"},
    {"vplayer", "9:9:9="},
    {"vplayer", "9:9:9 "},
    {"vplayer", "9:9:9.9:"},
});

/// Every list of other files that the converter knows begins with one of these.
constexpr auto kPlaylistBeginnings =
    std::to_array<std::string_view>({"#extm3u", "#extinf", "ffconcat", "[playlist]", "[reference]",
                                     "rtsptext", "<smil", "<asx", "v=0\n", "v=0\r"});
constexpr auto kPlaylistMarks =
    std::to_array<std::string_view>({"<mpd", "<smoothstreamingmedia", "<compositionplaylist"});

bool isPlaylist(std::string_view lowered) {
    const auto begins = [&](std::string_view mark) { return lowered.starts_with(mark); };
    return std::ranges::any_of(kPlaylistBeginnings, begins) ||
           (lowered.starts_with("<") && Fennimar::containsAny(lowered, kPlaylistMarks));
}

std::string_view withoutLeadingSpace(std::string_view text) {
    const auto begin = text.find_first_not_of(" \t\r\n");
    return begin == std::string_view::npos ? std::string_view{} : text.substr(begin);
}

std::string_view demuxerOf(std::string_view line) {
    if (Fennimar::contains(line, "-->>")) return "aqtitle";
    const auto arrow = line.find("-->");
    if (arrow != std::string_view::npos && arrow > 0 && Fennimar::isDigit(line.front())) {
        return "srt";
    }
    const auto* const form = std::ranges::find_if(
        kLineForms, [&](const LineForm& known) { return beginsLike(line, known.pattern); });
    return form == kLineForms.end() ? std::string_view{} : form->demuxer;
}

std::string_view demuxerOfText(std::string_view lowered) {
    if (lowered.starts_with("webvtt")) return "webvtt";
    while (!lowered.empty()) {
        const auto end = std::min(lowered.find_first_of("\r\n"), lowered.size());
        if (const auto demuxer = demuxerOf(withoutLeadingSpace(lowered.substr(0, end)));
            !demuxer.empty()) {
            return demuxer;
        }
        lowered.remove_prefix(std::min(end + 1, lowered.size()));
    }
    return {};
}

/// A stray control character is no reason to lose a text; other data is full of them.
bool isText(std::string_view content) {
    constexpr std::ptrdiff_t kOneIn = 50;
    constexpr std::string_view kOfTexts = "\t\n\v\f\r\x1A\x1B";  // 1A ends texts of DOS
    const auto controls = std::ranges::count_if(content, [&](char character) {
        return static_cast<unsigned char>(character) < 0x20 &&
               kOfTexts.find(character) == std::string_view::npos;
    });
    return controls * kOneIn <= std::ssize(content);
}

/// Latin text in UTF-16 has a null byte in every other place, and almost only there.
bool isBareUtf16(std::string_view content) {
    constexpr std::size_t kTelling = 512;
    content = content.substr(0, kTelling);
    std::array<std::size_t, 2> nulls{};
    for (std::size_t i = 0; i < content.size(); ++i) {
        if (content[i] == '\0') ++nulls.at(i % 2);
    }
    const auto [few, many] = std::minmax({nulls.front(), nulls.back()});
    return many > content.size() / 8 && few * 16 <= many;
}

SubtitleProblem problemOfBytes(std::string_view content) {
    constexpr std::string_view kPackHeader("\x00\x00\x01\xBA", 4);
    if (content.starts_with(kPackHeader)) return SubtitleProblem::Pictures;
    if (isBareUtf16(content)) return SubtitleProblem::BareUtf16;
    return isText(content.substr(0, kMostSearched)) ? SubtitleProblem::None
                                                    : SubtitleProblem::NoText;
}

/// The beginning of the content in ASCII's lower case, for its format to be told.
std::string searchedText(std::string_view content, std::string_view mark) {
    content = content.substr(0, kMostSearched);
    if (!mark.starts_with("UTF-16")) {
        if (!mark.empty()) content.remove_prefix(3);
        return Fennimar::lowercased(withoutLeadingSpace(content));
    }
    auto text = decoded(content.substr(0, content.size() / 2 * 2), mark);
    // The end may stand between the halves of one character.
    if (!text && content.size() > 4) {
        text = decoded(content.substr(0, content.size() / 2 * 2 - 2), mark);
    }
    return Fennimar::lowercased(withoutLeadingSpace(text.value_or("")));
}

std::optional<std::string> readBeginning(int file) {
    std::string content;
    std::size_t filled = 0;
    while (filled < kMostRead) {
        constexpr std::size_t kBlock = std::size_t{256} * 1024;
        content.resize(std::min(filled + kBlock, kMostRead));
        const auto count = ::read(file, content.data() + filled, content.size() - filled);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::nullopt;
        if (count == 0) break;
        filled += static_cast<std::size_t>(count);
    }
    content.resize(filled);
    // Cut off in the middle, it is judged by its whole lines.
    if (filled == kMostRead) content.resize(content.rfind('\n') + 1);
    return content;
}

}  // namespace

SubtitleLook lookIntoSubtitleText(std::string_view content) {
    const auto mark = byteOrderMark(content);
    if (!mark.starts_with("UTF-16")) {
        if (const auto problem = problemOfBytes(content); problem != SubtitleProblem::None) {
            return {.problem = problem};
        }
    }
    const auto searched = searchedText(content, mark);
    if (isPlaylist(searched)) return {.problem = SubtitleProblem::Playlist};
    const auto demuxer = demuxerOfText(searched);
    if (demuxer.empty()) return {.problem = SubtitleProblem::NoSubtitles};
    SubtitleLook look{.format = {.demuxer = std::string(demuxer),
                                 .encoding = findEncoding(content),
                                 .hasByteOrderMark = !mark.empty()}};
    if (look.format.encoding.kind == FoundEncoding::Kind::Unknown) {
        const auto lines = tellingLines(content);
        const auto count = std::min(lines.size(), kSampleLines);
        look.format.samples.assign(lines.begin(),
                                   lines.begin() + static_cast<std::ptrdiff_t>(count));
    }
    return look;
}

SubtitleLook lookIntoSubtitle(const std::filesystem::path& file) {
    // Opening a pipe would wait for its other end.
    const FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!opened.isOpen()) {
        const bool gone = errno == ENOENT || errno == ENOTDIR;
        return {.problem = gone ? SubtitleProblem::Gone : SubtitleProblem::Unreadable};
    }
    struct stat status {};
    if (::fstat(opened.get(), &status) != 0) return {.problem = SubtitleProblem::Unreadable};
    if (!S_ISREG(status.st_mode)) return {.problem = SubtitleProblem::NoFile};
    if (status.st_size > kMostSize) return {.problem = SubtitleProblem::TooLarge};
    const auto content = readBeginning(opened.get());
    if (!content) return {.problem = SubtitleProblem::Unreadable};
    return lookIntoSubtitleText(*content);
}

std::string subtitleProblemText(const Translations& translations, const std::filesystem::path& file,
                                SubtitleProblem problem) {
    constexpr auto kReasons = std::to_array<std::pair<SubtitleProblem, std::string_view>>({
        {SubtitleProblem::Gone,
         localizable("The subtitle file '%@' is left out: it is no longer there.")},
        {SubtitleProblem::NoFile,
         localizable("The subtitle file '%@' is left out: it is no regular file.")},
        {SubtitleProblem::Unreadable,
         localizable("The subtitle file '%@' is left out: it can't be read. Please check its "
                     "permissions and its disk.")},
        {SubtitleProblem::TooLarge,
         localizable("The subtitle file '%@' is left out: it is larger than any subtitles are.")},
        {SubtitleProblem::Pictures,
         localizable("The subtitle file '%@' is left out: its subtitles are pictures, which can't "
                     "become text.")},
        {SubtitleProblem::NoText,
         localizable("The subtitle file '%@' is left out: it is no text but a movie or another "
                     "kind of file.")},
        {SubtitleProblem::BareUtf16,
         localizable("The subtitle file '%@' is left out: it is written in UTF-16 without a "
                     "byte-order mark. Please save it as UTF-8.")},
        {SubtitleProblem::Playlist,
         localizable("The subtitle file '%@' is left out: it is a playlist, which names other "
                     "files.")},
        {SubtitleProblem::NoSubtitles,
         localizable("The subtitle file '%@' is left out: it holds no subtitles of a known "
                     "format.")},
    });
    const auto* const reason =
        std::ranges::find(kReasons, problem, &std::pair<SubtitleProblem, std::string_view>::first);
    if (reason == kReasons.end()) return {};
    return makeString(translations.localized(reason->second),
                      Fennimar::validUtf8(file.filename().native()));
}

}  // namespace reelvane
