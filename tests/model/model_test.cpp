#include "vdt/model/model.h"

#include <gtest/gtest.h>

namespace vdt::test {

TEST(Language, TagsAreNormalised)
{
    struct Row {
        const char* tag;
        const char* normalised;
    };
    const Row rows[] = {
        {"DE", "de"},
        {"de-de", "de-DE"},
        {" de-DE ", "de-DE"},
        {"zh-HANS-CN", "zh-hans-CN"},
        {"zh-hans-CN", "zh-hans-CN"},
        {"en-us-x", "en-US-x"},
        {"german", ""},
        {"de_DE", ""},
        {"de-", ""},
        {"de--x", ""},
        {"d", ""},
        {"", ""},
        {" \t ", ""},
    };
    for (const Row& row : rows) EXPECT_EQ(normalizeLanguage(row.tag), row.normalised) << row.tag;
    EXPECT_EQ(languageTagFromHost("JP", "x"), "ja-JP");
    EXPECT_EQ(languageTagFromHost("KR", "x"), "ko");
    EXPECT_EQ(languageTagFromHost("jp", "x"), "x");
}

TEST(Language, TheTwoLettersAreTriedFirstAndTheFallbackLast)
{
    const LocalizedTexts texts = {{"de", "Baum"}, {"de-AT", "Bam"}, {"en-US", "tree"}, {"fr", "arbre"}};
    struct Row {
        const char* language;
        const char* fallback;
        const char* text;
    };
    const Row rows[] = {
        {"de-AT", "en-US", "Baum"},  {"en-US", "fr", "tree"}, {"en-GB", "en-US", "tree"},
        {"EN-US", "FR-CA", "arbre"}, {"es", "es", "none"},    {"", "it", "none"},
    };
    for (const Row& row : rows) EXPECT_EQ(lookupText(texts, row.language, row.fallback, "none"), row.text);
    EXPECT_EQ(lookupText({}, "de", "en", "none"), "none");
}

TEST(MaterialData, CopiesKeepWhatTheBackIs)
{
    MaterialData alias;
    alias.aliasBack();
    MaterialData own;
    own.backSide(true)->diffuseTexture = "back.png";

    const MaterialData aliasCopy = alias;
    const MaterialData ownCopy = own;
    EXPECT_EQ(aliasCopy.back(), &aliasCopy.front);
    EXPECT_TRUE(ownCopy.hasSeparateBack());
    EXPECT_NE(ownCopy.back(), own.back());
    EXPECT_EQ(ownCopy, own);
    own.aliasBack();
    EXPECT_TRUE(own.hasSeparateBack()) << "a back of its own is not given up";
    own = alias;
    EXPECT_EQ(own.back(), &own.front);
    std::vector<MaterialData> grown(1, alias);
    grown.resize(100);
    EXPECT_EQ(grown[0].back(), &grown[0].front) << "moving keeps it too";
}

TEST(PathMapper, JoinsRelativePathsToItsBase)
{
    struct Row {
        const char* base;
        const char* path;
        const char* result;
    };
    const Row rows[] = {
        {"C:/lib/plants/oak/", "../tex/a.png", "C:/lib/plants/tex/a.png"},
        {"C:/lib/", "..\\..\\a.png", "C:/../a.png"},
        {"/lib/oak/", "../../../a.png", "/../a.png"},
        {"oak/", "../a.png", "a.png"},
        {"../oak/", "../../a.png", "../../a.png"},
        {"", "../a.png", "../a.png"},
        {"lib\\oak\\", "tex\\a.png", "lib/oak/tex/a.png"},
        {"/lib/", "D:\\tex\\a.png", "D:/tex/a.png"},
        {"/lib/", "/tex/a.png", "/tex/a.png"},
        {"/lib/", "D:a.png", "/lib/D:a.png"},
        {"/lib/oak/", "..", "/lib/"},
        {"/lib/", "", ""},
    };
    for (const Row& row : rows) EXPECT_EQ(MakeAbsolutePathMapper(row.base).map(row.path), row.result) << row.path;
    EXPECT_EQ(PathMapper().map(""), "");
    EXPECT_EQ(DirectoryOfPath("C:\\lib/oak\\a.vdt"), "C:/lib/oak/");
    EXPECT_EQ(DirectoryOfPath("a.vdt"), "");
}

} // namespace vdt::test
