#include "platform/gettext_translations.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <regex>

#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

struct Translated : testing::Test {
    void addCatalogue(const std::string& language, const std::string& translation) const {
        const auto po =
            folder.write(language + ".po", "msgid \"Quit\"\nmsgstr \"" + translation + "\"\n");
        const auto command = "msgfmt -o '" + (folder.path() / (language + ".mo")).native() + "' '" +
                             po.native() + "'";
        ASSERT_EQ(std::system(command.c_str()), 0);
    }

    TemporaryFolder folder;
};

TEST_F(Translated, TheFirstPreferredLanguageWithACatalogueWins) {
    addCatalogue("de", "Beenden");
    addCatalogue("pt_BR", "Sair");
    for (const auto& [languages, quit] : {std::pair("de", "Beenden"),
                                          {"de_AT.UTF-8", "Beenden"},
                                          {"fr:pt_BR:de", "Sair"},
                                          {"pt_PT:de", "Beenden"},
                                          {"en_GB:de", "Quit"},
                                          {"fr", "Quit"},
                                          {"../x/de:de", "Beenden"}}) {
        ::setenv("LANGUAGE", languages, 1);
        EXPECT_EQ(GettextTranslations(folder.path()).localized("Quit"), quit) << languages;
    }
    ::setenv("LANGUAGE", "fr:de_AT", 1);
    EXPECT_EQ(GettextTranslations(folder.path()).language(), "de");
    ::unsetenv("LANGUAGE");
}

TEST(PluralRule, IsTheOneThatTheLanguageHas) {
    const auto forms = [](const std::string& expression) {
        const PluralRule rule("Language: x\nPlural-Forms: nplurals=6; plural=" + expression +
                              ";\n");
        std::string found;
        for (const int n : {0, 1, 2, 5, 11, 12, 21, 101}) found += std::to_string(rule.form(n));
        return found;
    };
    constexpr auto kEnglish = "10111111";
    for (const auto& [expression, expected] :
         {std::pair("(n != 1)", kEnglish),
          {"(n>1)", "00111111"},
          {"0", "00000000"},
          {"(n%10==1 && n%100!=11 ? 0 : n%10>=2 && n%10<=4 && (n%100<10 || n%100>=20) ? 1 : 2)",
           "20122200"},
          {"n==0 ? 0 : n==1 ? 1 : n==2 ? 2 : n%100>=3 && n%100<=10 ? 3 : n%100>=11 ? 4 : 5",
           "01234445"},
          {"!(n - 1 * 1) + n / 100", "01000001"},
          {"n % 0", "00000000"},
          {"n ? 1", kEnglish},
          {"n != 1)", kEnglish},
          {"system(n)", kEnglish},
          {"", kEnglish}}) {
        EXPECT_EQ(forms(expression), expected) << expression;
    }
    EXPECT_EQ(forms(std::string(100'000, '(')), kEnglish) << "too deep";
    EXPECT_EQ(PluralRule("Language: de\n").form(1), 0U);
}

TEST_F(Translated, ATextHasAFormForEveryCount) {
    addCatalogue("de",
                 "x\"\nmsgid \"one\"\nmsgid_plural \"%lu\"\nmsgstr[0] \"ein\"\nmsgstr[1] \"%lu e");
    for (const auto& [language, one, two] :
         {std::tuple("de", "ein", "%lu e"), {"fr", "one", "%lu"}}) {
        ::setenv("LANGUAGE", language, 1);
        const GettextTranslations translations(folder.path());
        EXPECT_EQ(translations.localized("one", "%lu", 1), one);
        EXPECT_EQ(translations.localized("one", "%lu", 2), two);
    }
    ::unsetenv("LANGUAGE");
}

/// "%@ %li" out of "%@ of %li": values come in this order whatever the language.
std::string placesIn(const std::string& text) {
    static const std::regex kPlace(R"(%(@|n|l?[diu]|\.0f))");
    std::string places;
    for (std::sregex_iterator place(text.begin(), text.end(), kPlace), end; place != end; ++place) {
        places += place->str() + " ";
    }
    return places;
}

TEST(GermanCatalogue, KeepsThePlacesForValuesInTheirOrder) {
    std::ifstream file(REELVANE_CATALOGUES "/de.mo", std::ios::binary);
    const auto catalogue = parseCatalogue(std::string(std::istreambuf_iterator<char>(file), {}));
    ASSERT_TRUE(catalogue && !catalogue->forms.empty());
    for (const auto& [original, forms] : catalogue->forms) {
        for (const auto& form : forms) EXPECT_EQ(placesIn(form), placesIn(original)) << original;
    }
}

}  // namespace
}  // namespace reelvane
