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

/// "%@ %li" out of "%@ of %li": values come in this order whatever the language.
std::string placesIn(const std::string& text) {
    static const std::regex kPlace(R"(%(@|l?[diu]|\.0f))");
    std::string places;
    for (std::sregex_iterator place(text.begin(), text.end(), kPlace), end; place != end; ++place) {
        places += place->str() + " ";
    }
    return places;
}

TEST(GermanCatalogue, KeepsThePlacesForValuesInTheirOrder) {
    std::ifstream file(REELVANE_CATALOGUES "/de.mo", std::ios::binary);
    const auto catalogue = parseCatalogue(std::string(std::istreambuf_iterator<char>(file), {}));
    ASSERT_TRUE(catalogue && !catalogue->empty());
    for (const auto& [original, translation] : *catalogue) {
        EXPECT_EQ(placesIn(translation), placesIn(original)) << original;
    }
}

}  // namespace
}  // namespace reelvane
