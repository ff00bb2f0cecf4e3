#include "platform/gettext_translations.h"

#include <cstdlib>
#include <gtest/gtest.h>

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
    ::unsetenv("LANGUAGE");
}

}  // namespace
}  // namespace reelvane
