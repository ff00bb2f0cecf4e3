#include "media/subtitle_file.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "support/localization.h"
#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using Kind = FoundEncoding::Kind;
using Problem = SubtitleProblem;

constexpr std::string_view kTiming = "1\n00:00:01,000 --> 00:00:02,000\n";

/// A text as another program would have saved it.
std::string saved(std::string_view text, const std::string& encoding) {
    TemporaryFolder folder;
    const auto from = folder.write("from", text);
    const auto to = folder.path() / "to";
    const auto command =
        "iconv -f UTF-8 -t " + encoding + " " + from.native() + " > " + to.native();
    EXPECT_EQ(std::system(command.c_str()), 0);  // NOLINT(cert-env33-c,concurrency-mt-unsafe)
    return contentOf(to);
}

TEST(SubtitleFile, IsLookedIntoBeforeItIsTaken) {
    struct Case {
        std::string content;
        Problem problem;
        std::string demuxer;
    };
    const std::vector<Case> cases{
        {std::string(kTiming) + "Hi\n", Problem::None, "srt"},
        {"\xEF\xBB\xBF\r\n\r\n1\r\n0:00:01,0 --> 0:00:02,0\r\nHi", Problem::None, "srt"},
        {std::string(kTiming) + "A stray \x01 is no harm, for there is much more text.\n",
         Problem::None, "srt"},
        {"WEBVTT\n\n00:01.000 --> 00:02.000\nHi", Problem::None, "webvtt"},
        {"[Script Info]\nTitle: x\n", Problem::None, "ass"},
        {"<SAMI>\n<BODY><SYNC Start=0>Hi", Problem::None, "sami"},
        {"{1}{25}Hi\n", Problem::None, "microdvd"},
        {"[10][20]Hi\n", Problem::None, "mpl2"},
        {"[INFORMATION]\n[TITLE]x\n", Problem::None, "subviewer"},
        {"00:00:01:Hi\n", Problem::None, "vplayer"},
        {"\xFF\xFE"s + "1\0\n\0"s + "0\0:\0 \0-\0-\0>\0 \0x\0"s, Problem::None, "srt"},
        {"#EXTM3U\n#EXTINF:1,\n/etc/passwd\n", Problem::Playlist, ""},
        {"\n ffconcat version 1.0\nfile 'other.mkv'\n", Problem::Playlist, ""},
        {"<?xml version=\"1.0\"?><MPD><Period/></MPD>", Problem::Playlist, ""},
        {"\0\0\0\x20"s + "ftypisom\0\0\2\0isomiso2mp41"s + "\0\0\0\x08"s, Problem::NoText, ""},
        {"\x1A\x45\xDF\xA3\1\0\0\0\0\0\0\x23\x42\x86\x81\1"s, Problem::NoText, ""},
        {"\0\0\1\xBA rest"s, Problem::Pictures, ""},
        {"1\0\n\0000\0:\0000\0 \0-\0-\0>\0 \0A\0"s, Problem::BareUtf16, ""},
        {"Dear reader,\nthis is a letter --> not subtitles.\n", Problem::NoSubtitles, ""},
        {"", Problem::NoSubtitles, ""}};
    for (const auto& [content, problem, demuxer] : cases) {
        const auto look = lookIntoSubtitleText(content);
        EXPECT_EQ(look.problem, problem) << content;
        EXPECT_EQ(look.format.demuxer, demuxer) << content;
        EXPECT_EQ(subtitleProblemText(kUntranslated, "/v/x.srt", problem).empty(),
                  problem == Problem::None);
    }
}

TEST(SubtitleFile, IsReadFromAFileThatIsOne) {
    TemporaryFolder folder;
    const auto pipe = folder.path() / "p.srt";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const auto huge = folder.write("huge.srt", kTiming);
    std::filesystem::resize_file(huge, std::uintmax_t{4} << 30U);
    EXPECT_EQ(lookIntoSubtitle(folder.write("a.srt", kTiming)).problem, Problem::None);
    EXPECT_EQ(lookIntoSubtitle(folder.path() / "gone.srt").problem, Problem::Gone);
    EXPECT_EQ(lookIntoSubtitle(folder.path()).problem, Problem::NoFile);
    EXPECT_EQ(lookIntoSubtitle(pipe).problem, Problem::NoFile);
    EXPECT_EQ(lookIntoSubtitle(huge).problem, Problem::TooLarge);
}

TEST(SubtitleFile, TellsItsEncoding) {
    constexpr std::string_view kFrench = "Où êtes-vous allés ?\nJ'ai déjà mangé, “merci”.\n";
    constexpr std::string_view kJapanese = "こんにちは、元気ですか。\n今日はいい天気ですね。\n";
    constexpr std::string_view kRussian = "Привет, как дела?\nЯ не знаю, что делать.\n";
    constexpr std::string_view kPolish =
        "Zażółć gęślą jaźń.\nDzień dobry, co słychać?\nNie wiem, może później.\n";
    struct Case {
        std::string_view text, savedAs, expected;
    };
    const std::vector<Case> cases{{kFrench, "UTF-8", ""},
                                  {kFrench, "CP1252", "CP1252"},
                                  {"Le cœur déçu est là.\n", "ISO-8859-15", "ISO-8859-15"},
                                  {kPolish, "CP1250", "CP1250"},
                                  {kPolish, "ISO-8859-2", "ISO-8859-2"},
                                  {kRussian, "CP1251", "CP1251"},
                                  {kRussian, "KOI8-R", "KOI8-R"},
                                  {"Καλημέρα, τι κάνεις; Άλλο.\n", "CP1253", "CP1253"},
                                  {"Günaydın, nasılsın? Şimdi değil.\n", "CP1254", "CP1254"},
                                  {kJapanese, "SHIFT_JIS", "CP932"},
                                  {kJapanese, "EUC-JP", "EUC-JP"},
                                  {kJapanese, "ISO-2022-JP", "ISO-2022-JP"},
                                  {"你好，你怎么样？我不知道该说什么。\n", "GBK", "GB18030"},
                                  {"안녕하세요, 어떻게 지내세요? 모르겠어요.\n", "EUC-KR", "CP949"},
                                  {kJapanese, "UTF-16", ""}};
    for (const auto& [text, savedAs, expected] : cases) {
        const auto content = saved(std::string(kTiming).append(text), std::string(savedAs));
        const auto look = lookIntoSubtitleText(content);
        EXPECT_EQ(look.format.encoding.name, expected) << savedAs << text;
        EXPECT_EQ(look.format.encoding.kind, expected.empty() ? Kind::AsItIs : Kind::Named) << text;
        EXPECT_EQ(look.format.hasByteOrderMark, savedAs == "UTF-16");
    }
}

TEST(SubtitleFile, ShowsTwoLinesWhereNobodyCanTellItsEncoding) {
    const auto content =
        saved(std::string(kTiming) + "plain\nC'est l'été à la mer.\nOù êtes-vous allés ?\nDéjà ?\n",
              "CP850");
    const auto format = lookIntoSubtitleText(content).format;
    EXPECT_EQ(format.encoding.kind, Kind::Unknown);
    EXPECT_EQ(format.samples.size(), 2);
    EXPECT_EQ(decoded(format.samples.at(0), "CP850"), "C'est l'été à la mer.");
    EXPECT_EQ(decoded("\xFF", "UTF-8"), std::nullopt);
    EXPECT_EQ(decoded("x", "no such encoding"), std::nullopt);
}

}  // namespace
}  // namespace reelvane
