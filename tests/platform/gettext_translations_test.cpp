#include "platform/gettext_translations.h"

#include <clocale>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/temporary_folder.h"

namespace reelvane {
namespace {

struct Translated : testing::Test {
    void addCatalogue(const std::string& language, const std::string& translation,
                      const std::string& options = "") const {
        const auto po = folder.write(
            "x.po",
            "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n"
            "msgid \"Quit\"\nmsgstr \"" +
                translation +
                "\"\n"
                "msgid \"%d file\"\nmsgid_plural \"%d files\"\nmsgstr[0] \"%d \xC3\xA4\"\n"
                "msgstr[1] \"b\"\nmsgid \"Untranslated\"\nmsgstr \"\"\n");
        const auto command = "msgfmt " + options + " -o '" +
                             (folder.path() / (language + ".mo")).native() + "' '" + po.native() +
                             "'";
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
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
    ::unsetenv("LANGUAGE");
}

TEST_F(Translated, ACatalogueOfEitherByteOrderIsReadAndADamagedOneIsNone) {
    for (const auto* const options : {"--endianness=little", "--endianness=big"}) {
        addCatalogue("xx", "Ende", options);
        const auto bytes = contentOf(folder.path() / "xx.mo");
        EXPECT_THAT(parseCatalogue(bytes).value_or(TranslationCatalogue()),
                    testing::UnorderedElementsAre(testing::Pair("Quit", "Ende"),
                                                  testing::Pair("%d file", "%d \xC3\xA4")));
        for (std::size_t length = 0; length + 1 < bytes.size(); ++length) {
            ASSERT_FALSE(parseCatalogue(bytes.substr(0, length))) << length;
        }
    }
}

}  // namespace
}  // namespace reelvane
