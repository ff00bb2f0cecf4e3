#include "media/languages.h"

#include <algorithm>
#include <array>

namespace reelvane {
namespace {

using Row = std::pair<std::string_view, std::string_view>;

// ISO 639-1 codes and their ISO 639-2 bibliographic codes, as the registration authority lists
// them (Library of Congress, "Codes for the Representation of Names of Languages").
constexpr auto kLanguages = std::to_array<Row>({
    // clang-format off
    {"aa", "aar"}, {"ab", "abk"}, {"ae", "ave"}, {"af", "afr"}, {"ak", "aka"}, {"am", "amh"},
    {"an", "arg"}, {"ar", "ara"}, {"as", "asm"}, {"av", "ava"}, {"ay", "aym"}, {"az", "aze"},
    {"ba", "bak"}, {"be", "bel"}, {"bg", "bul"}, {"bh", "bih"}, {"bi", "bis"}, {"bm", "bam"},
    {"bn", "ben"}, {"bo", "tib"}, {"br", "bre"}, {"bs", "bos"}, {"ca", "cat"}, {"ce", "che"},
    {"ch", "cha"}, {"co", "cos"}, {"cr", "cre"}, {"cs", "cze"}, {"cu", "chu"}, {"cv", "chv"},
    {"cy", "wel"}, {"da", "dan"}, {"de", "ger"}, {"dv", "div"}, {"dz", "dzo"}, {"ee", "ewe"},
    {"el", "gre"}, {"en", "eng"}, {"eo", "epo"}, {"es", "spa"}, {"et", "est"}, {"eu", "baq"},
    {"fa", "per"}, {"ff", "ful"}, {"fi", "fin"}, {"fj", "fij"}, {"fo", "fao"}, {"fr", "fre"},
    {"fy", "fry"}, {"ga", "gle"}, {"gd", "gla"}, {"gl", "glg"}, {"gn", "grn"}, {"gu", "guj"},
    {"gv", "glv"}, {"ha", "hau"}, {"he", "heb"}, {"hi", "hin"}, {"ho", "hmo"}, {"hr", "hrv"},
    {"ht", "hat"}, {"hu", "hun"}, {"hy", "arm"}, {"hz", "her"}, {"ia", "ina"}, {"id", "ind"},
    {"ie", "ile"}, {"ig", "ibo"}, {"ii", "iii"}, {"ik", "ipk"}, {"io", "ido"}, {"is", "ice"},
    {"it", "ita"}, {"iu", "iku"}, {"ja", "jpn"}, {"jv", "jav"}, {"ka", "geo"}, {"kg", "kon"},
    {"ki", "kik"}, {"kj", "kua"}, {"kk", "kaz"}, {"kl", "kal"}, {"km", "khm"}, {"kn", "kan"},
    {"ko", "kor"}, {"kr", "kau"}, {"ks", "kas"}, {"ku", "kur"}, {"kv", "kom"}, {"kw", "cor"},
    {"ky", "kir"}, {"la", "lat"}, {"lb", "ltz"}, {"lg", "lug"}, {"li", "lim"}, {"ln", "lin"},
    {"lo", "lao"}, {"lt", "lit"}, {"lu", "lub"}, {"lv", "lav"}, {"mg", "mlg"}, {"mh", "mah"},
    {"mi", "mao"}, {"mk", "mac"}, {"ml", "mal"}, {"mn", "mon"}, {"mr", "mar"}, {"ms", "may"},
    {"mt", "mlt"}, {"my", "bur"}, {"na", "nau"}, {"nb", "nob"}, {"nd", "nde"}, {"ne", "nep"},
    {"ng", "ndo"}, {"nl", "dut"}, {"nn", "nno"}, {"no", "nor"}, {"nr", "nbl"}, {"nv", "nav"},
    {"ny", "nya"}, {"oc", "oci"}, {"oj", "oji"}, {"om", "orm"}, {"or", "ori"}, {"os", "oss"},
    {"pa", "pan"}, {"pi", "pli"}, {"pl", "pol"}, {"ps", "pus"}, {"pt", "por"}, {"qu", "que"},
    {"rm", "roh"}, {"rn", "run"}, {"ro", "rum"}, {"ru", "rus"}, {"rw", "kin"}, {"sa", "san"},
    {"sc", "srd"}, {"sd", "snd"}, {"se", "sme"}, {"sg", "sag"}, {"si", "sin"}, {"sk", "slo"},
    {"sl", "slv"}, {"sm", "smo"}, {"sn", "sna"}, {"so", "som"}, {"sq", "alb"}, {"sr", "srp"},
    {"ss", "ssw"}, {"st", "sot"}, {"su", "sun"}, {"sv", "swe"}, {"sw", "swa"}, {"ta", "tam"},
    {"te", "tel"}, {"tg", "tgk"}, {"th", "tha"}, {"ti", "tir"}, {"tk", "tuk"}, {"tl", "tgl"},
    {"tn", "tsn"}, {"to", "ton"}, {"tr", "tur"}, {"ts", "tso"}, {"tt", "tat"}, {"tw", "twi"},
    {"ty", "tah"}, {"ug", "uig"}, {"uk", "ukr"}, {"ur", "urd"}, {"uz", "uzb"}, {"ve", "ven"},
    {"vi", "vie"}, {"vo", "vol"}, {"wa", "wln"}, {"wo", "wol"}, {"xh", "xho"}, {"yi", "yid"},
    {"yo", "yor"}, {"za", "zha"}, {"zh", "chi"}, {"zu", "zul"},
    // clang-format on
});
static_assert(kLanguages.size() == 184);
static_assert(std::ranges::is_sorted(kLanguages, {}, &Row::first));

// The ISO 639-2 terminology codes that differ from the bibliographic ones, from the same list.
constexpr auto kTerminology = std::to_array<Row>({
    // clang-format off
    {"bod", "tib"}, {"ces", "cze"}, {"cym", "wel"}, {"deu", "ger"}, {"ell", "gre"}, {"eus", "baq"},
    {"fas", "per"}, {"fra", "fre"}, {"hye", "arm"}, {"isl", "ice"}, {"kat", "geo"}, {"mkd", "mac"},
    {"mri", "mao"}, {"msa", "may"}, {"mya", "bur"}, {"nld", "dut"}, {"ron", "rum"}, {"slk", "slo"},
    {"sqi", "alb"}, {"zho", "chi"},
    // clang-format on
});
static_assert(std::ranges::is_sorted(kTerminology, {}, &Row::first));

/// What the choice "default audio" offers, from value 2 on.
constexpr int kFirstFixedChoice = 2;
constexpr auto kFixedLanguages =
    std::to_array<std::string_view>({"eng", "ger", "fre", "spa", "chi", "jpn", "rus"});

std::string_view lookedUp(std::span<const Row> table, std::string_view code) {
    const auto row = std::ranges::lower_bound(table, code, {}, &Row::first);
    return row != table.end() && row->first == code ? row->second : code;
}

/// The language's place among the preferred ones, which is their number when it is none of them.
template <typename Languages>
std::size_t rankOf(std::string_view language, const Languages& preferred) {
    return static_cast<std::size_t>(std::ranges::find(preferred, language) - preferred.begin());
}

/// The indices of the tracks in the best-ranked language, in their order.
template <typename Languages>
std::vector<std::size_t> candidatesAmong(std::span<const AudioTrack> tracks,
                                         const Languages& preferred) {
    std::vector<std::size_t> candidates;
    auto bestRank = preferred.size();
    for (std::size_t index = 0; index < tracks.size(); ++index) {
        if (!tracks[index].isKnown()) continue;
        const auto rank = rankOf(bibliographicCode(tracks[index].language), preferred);
        if (rank > bestRank) continue;
        if (rank < bestRank) candidates.clear();
        bestRank = rank;
        candidates.push_back(index);
    }
    return candidates;
}

}  // namespace

std::span<const Row> languageTable() {
    return kLanguages;
}

std::string bibliographicCode(std::string_view language) {
    const auto withoutRegion = language.substr(0, language.find('-'));
    const auto code = lookedUp(kTerminology, lookedUp(kLanguages, withoutRegion));
    return std::string(code == withoutRegion ? language : code);
}

std::vector<std::string> preferredLanguages3Letter(const std::vector<std::string>& identifiers) {
    std::vector<std::string> codes;
    codes.reserve(identifiers.size());
    for (const auto& identifier : identifiers) {
        codes.emplace_back(lookedUp(kLanguages, identifier));
        // Their speakers understand what is marked as Norwegian of no particular form.
        if (identifier == "nb" || identifier == "nn") codes.emplace_back("nor");
    }
    return codes;
}

std::optional<std::size_t> bestLanguage(std::span<const AudioTrack> tracks, int defaultAudio,
                                        std::span<const std::string> preferredLanguages) {
    const auto fixed = static_cast<std::size_t>(defaultAudio) - kFirstFixedChoice;
    const auto candidates =
        fixed < kFixedLanguages.size()
            ? candidatesAmong(tracks, std::span(kFixedLanguages).subspan(fixed, 1))
            : candidatesAmong(tracks, preferredLanguages);
    if (candidates.empty() && tracks.empty()) return std::nullopt;
    if (candidates.empty()) return 0;  // none can be read: there is nothing to choose
    // These two go into the result without being encoded anew, or with the least loss.
    for (const std::string_view wanted : {"aac", "ac3"}) {
        const auto found = std::ranges::find_if(
            candidates, [&](std::size_t index) { return tracks[index].codec == wanted; });
        if (found != candidates.end()) return *found;
    }
    return candidates.front();
}

}  // namespace reelvane
