#include "core/description.h"
#include "core/resource_parser.h"
#include "core/string_access.h"
#include "description/oplant.h"
#include "plant/plant_parameters.h"
#include "support/plugin_ids.h"
#include "support/test_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace host::test {
namespace {

const std::filesystem::path kFolder = VERDANTH_MODULE_FOLDER "/res";

std::vector<std::filesystem::path> filesWith(const std::string& suffix)
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(kFolder)) {
        if (entry.path().extension() == suffix) files.push_back(entry.path());
    }
    std::ranges::sort(files);
    return files;
}

ResourceText textOf(const std::filesystem::path& file)
{
    return {file.filename().string(), vdt::test::BytesOfFile(file)};
}

std::map<std::string, StringEntry> stringsOf(const std::filesystem::path& file)
{
    ResourceFaults faults;
    std::map<std::string, StringEntry> strings;
    for (const StringEntry& entry : ParseStrings(textOf(file), faults).entries) {
        EXPECT_TRUE(strings.emplace(entry.symbol, entry).second) << entry.symbol << " stands twice in " << file;
    }
    return strings;
}

TEST(ShippedResources, AreReadWithoutAComplaint)
{
    ResourceFaults faults;
    for (const auto& file : filesWith(".h")) EXPECT_FALSE(ParseSymbols(textOf(file), faults).inOrder.empty()) << file;
    for (const auto& file : filesWith(".str")) EXPECT_FALSE(ParseStrings(textOf(file), faults).entries.empty()) << file;
    for (const auto& file : filesWith(".res"))
        EXPECT_FALSE(ParseLayout(textOf(file), faults).statements.empty()) << file;
    for (const ResourceFault& fault : faults.list()) ADD_FAILURE() << ToText(fault);

    // The oldest hosts read nothing but seven bits.
    for (const char* suffix : {".h", ".str", ".res"}) {
        for (const auto& file : filesWith(suffix)) {
            EXPECT_TRUE(std::ranges::all_of(textOf(file).content, [](char c) { return c > 0; })) << file;
        }
    }
}

TEST(ShippedResources, HaveEverySymbolInEveryLanguage)
{
    ResourceFaults faults;
    for (const auto& symbolFile : filesWith(".h")) {
        const bool isGeneral = symbolFile.stem() == "c4d_symbols";
        const std::filesystem::path name =
            isGeneral ? std::filesystem::path("c4d_strings.str")
                      : std::filesystem::path("description") / symbolFile.stem().concat(".str");
        const SymbolTable symbols = ParseSymbols(textOf(symbolFile), faults);
        const auto english = stringsOf(kFolder / "strings_us" / name);
        const auto german = stringsOf(kFolder / "strings_de" / name);
        for (const std::string& symbol : symbols.inOrder) {
            SCOPED_TRACE(symbol);
            ASSERT_TRUE(english.contains(symbol));
            ASSERT_TRUE(german.contains(symbol));
            const StringEntry& first = english.at(symbol);
            const StringEntry& second = german.at(symbol);
            EXPECT_FALSE(first.text.empty() || second.text.empty());
            EXPECT_EQ(first.shortText.empty(), second.shortText.empty());
            EXPECT_EQ(std::ranges::count(first.text, '#'), std::ranges::count(second.text, '#'));
        }
        const size_t titleCount = isGeneral ? 0 : 1; // of the description itself
        EXPECT_EQ(english.size(), symbols.inOrder.size() + titleCount) << symbolFile;
        EXPECT_EQ(german.size(), symbols.inOrder.size() + titleCount) << symbolFile;
    }
}

// The numbers stand in scenes; a slip in the header would not be found by anything that includes it.
TEST(ShippedResources, KeepTheNumbersThatScenesCarry)
{
    ResourceFaults faults;
    const SymbolTable symbols = ParseSymbols(textOf(kFolder / "description/oplant.h"), faults);
    const std::pair<const char*, Int32> numbers[] = {
        {"PLANT_SELECTION", 40001},
        {"PLANT_VARIANT", 40002},
        {"PLANT_QUALIFIER", 40003},
        {"PLANT_FOLIAGE_THINNING", 40004},
        {"PLANT_LEGACY_FILE", 40005},
        {"PLANT_LIMIT_LEVEL", 50001},
        {"PLANT_MAX_LEVEL", 50002},
        {"PLANT_LIMIT_RADIUS", 50003},
        {"PLANT_MIN_RADIUS", 50004},
        {"PLANT_FOLIAGE_AMOUNT", 50005},
        {"PLANT_SUBDIVISION_MODE", 50006},
        {"PLANT_SUBDIVISION_LEVEL", 50007},
        {"PLANT_DISPLAY_MODE", 60001},
        {"PLANT_CLOUD_OPTION_A", 60002},
        {"PLANT_CLOUD_SHADING", 60003},
        {"PLANT_CLOUD_OPTION_B", 60005},
        {"PLANT_PROXY_ONLY", 60007},
        {"PLANT_STATISTICS", 70000},
        {"PLANT_USE_DOCUMENT_UNITS", 80001},
        {"PLANT_UNITS", 80002},
        {"PLANT_SUBDIVISION_MODE_UNIFORM", 1},
        {"PLANT_DISPLAY_MODE_BOX", 1},
        {"PLANT_DISPLAY_MODE_CLOUD", 2},
        {"PLANT_DISPLAY_MODE_FULL", 3},
        {"PLANT_PROXY_ONLY_ON", 1},
    };
    for (const auto& [symbol, number] : numbers) {
        ASSERT_TRUE(symbols.find(symbol)) << symbol;
        EXPECT_EQ(*symbols.find(symbol), number) << symbol;
    }
    const SymbolTable choice = ParseSymbols(textOf(kFolder / "description/dvdtselection.h"), faults);
    EXPECT_EQ(*choice.find("VDTSELECTION_FILE"), 1001);
    EXPECT_EQ(*choice.find("VDTSELECTION_VARIANT"), 1002);
    EXPECT_EQ(*choice.find("VDTSELECTION_QUALIFIER"), 1003);
}

TEST(ShippedResources, DescribeEveryParameterOfThePlantWithItsType)
{
    for (const char* language : {"US", "DE"}) {
        ModuleHost host({.language = language});
        const StaticDescription* plant = FindDescription(kPlantObjectId);
        ASSERT_TRUE(plant) << (host.console.empty() ? "" : host.console.front());
        for (const PlantParameter& parameter : PlantParameters()) {
            SCOPED_TRACE(parameter.id);
            EXPECT_EQ(plant->typeOf(parameter.id), parameter.type);
            if (parameter.initial != Initial::None && parameter.type != kSelectionDataTypeId) {
                EXPECT_EQ(plant->defaultOf(parameter.id).GetFloat(), parameter.value); // a reset gives a new plant's
            }
        }
        EXPECT_EQ(plant->find(PLANT_MAX_LEVEL)->container.GetInt32(DESC_MIN), 1);
        EXPECT_EQ(plant->find(PLANT_FOLIAGE_AMOUNT)->container.GetFloat(DESC_MAX), 1);
        EXPECT_EQ(plant->find(PLANT_MIN_RADIUS)->container.GetInt32(DESC_UNIT), DESC_UNIT_METER);
        for (const Int32 list : {PLANT_VARIANT, PLANT_QUALIFIER}) {
            const BaseContainer* entries = plant->find(list)->container.GetContainerInstance(DESC_CYCLE);
            ASSERT_TRUE(entries);
            EXPECT_EQ(entries->GetIndexId(0), NOTOK);
        }
        ASSERT_TRUE(FindDescription(kSelectionDataTypeId));
        EXPECT_EQ(FindDescription(kSelectionDataTypeId)->typeOf(1001), DTYPE_FILENAME);
        for (const std::string& line : host.console) EXPECT_EQ(line.find(".res:"), std::string::npos) << line;
    }
}

} // namespace
} // namespace host::test
