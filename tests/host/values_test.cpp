// Texts, file names, values of any type, containers, times and matrices.
#include "c4d.h"
#include "core/native_path.h"
#include "core/node_class.h"
#include "core/string_access.h"
#include "core/unicode.h"
#include "customgui_unitscale.h"
#include "support/note_plugin.h"
#include "support/test_host.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

namespace host::test {
namespace {

String text(const char* utf8)
{
    return TextOf(utf8);
}

TEST(Texts, BadUtf8BecomesReplacementCharactersAndNeverMore)
{
    struct Row {
        std::string bytes;
        std::u32string characters;
    };
    const Row rows[] = {
        {"\xC3\xA4", U"\u00E4"},
        {"\xF0\x9F\x8C\xB3", U"\U0001F333"},
        {"a\xC3", U"a\uFFFD"},
        {"\x80z", U"\uFFFDz"},
        {"\xC0\xAF", U"\uFFFD\uFFFD"}, // overlong
        {"\xE0\x80\xAF", U"\uFFFD\uFFFD\uFFFD"},
        {"\xED\xA0\x80", U"\uFFFD\uFFFD\uFFFD"},           // a surrogate
        {"\xF4\x90\x80\x80", U"\uFFFD\uFFFD\uFFFD\uFFFD"}, // past the last
        {"\xF0\x9F\x8C"
         "b",
         U"\uFFFD"
         U"b"},
        {"\xE2\x82\xC3\xA4", U"\uFFFD\u00E4"},
    };
    for (const Row& row : rows) EXPECT_EQ(FromUtf8(row.bytes), row.characters) << row.bytes;

    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        std::string bytes(random() % 12, '\0');
        for (char& byte : bytes) byte = static_cast<char>(random() % 4 ? 0x80 + random() % 0x80 : random() % 0x80);
        const std::u32string once = FromUtf8(bytes);
        EXPECT_LE(once.size(), bytes.size());
        EXPECT_EQ(FromUtf8(ToUtf8(once)), once);
        EXPECT_EQ(FromUtf16(ToUtf16(once)), once);
    }
    EXPECT_EQ(ToUtf8(U"\xD800\x110000"), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(Texts, SurviveEveryEncodingThatHoldsThem)
{
    const String all(std::u32string(U"C:\\users\\u00e4b \\u00G \u00E4\u20AC\U0001F333\\").c_str());
    for (const STRINGENCODING type : {STRINGENCODING_XBIT, STRINGENCODING_7BITHEX, STRINGENCODING_UTF8}) {
        Char* bytes = all.GetCStringCopy(type);
        EXPECT_EQ(static_cast<Int>(strlen(bytes)), all.GetCStringLen(type));
        EXPECT_EQ(String(bytes, type), all) << bytes;
        DeleteMem(bytes);
    }
    const String latin = text("\xC3\xA4\xE2\x82\xAC");
    Char bytes[8];
    EXPECT_EQ(latin.GetCString(bytes, 8, STRINGENCODING_8BIT), 2);
    EXPECT_STREQ(bytes, "\xE4?");
    EXPECT_EQ(latin.GetCString(bytes, 8, STRINGENCODING_7BIT), 2);
    EXPECT_STREQ(bytes, "??");
    // A buffer that is too small holds whole characters.
    EXPECT_EQ(latin.GetCString(bytes, 5, STRINGENCODING_UTF8), 2);
    EXPECT_STREQ(bytes, "\xC3\xA4");
    EXPECT_EQ(latin.GetCString(bytes, 0, STRINGENCODING_UTF8), 0);
    EXPECT_EQ(String("\\u00e4\\ud83c\\udf33"), text("\xC3\xA4\xF0\x9F\x8C\xB3"));
    EXPECT_FALSE(String(static_cast<const Char*>(nullptr)).Content());
}

TEST(Texts, AreSearchedAndCutWithinTheirBounds)
{
    const String word("banana");
    struct Row {
        const char* part;
        Int start;
        Int32 first, last; // -1: not found
    };
    for (const Row& row : {Row{"an", 0, 1, -1}, Row{"an", 2, 3, 1}, Row{"an", -1, 1, 3}, Row{"an", 99, -1, 3},
                           Row{"", 0, -1, -1}, Row{"nab", 0, -1, -1}, Row{"banana", 0, 0, 0}}) {
        Int32 first = -1, last = -1;
        EXPECT_EQ(word.FindFirst(row.part, &first, row.start) != 0, row.first >= 0) << row.part << row.start;
        EXPECT_EQ(word.FindLast(row.part, &last, row.start) != 0, row.last >= 0) << row.part << row.start;
        EXPECT_EQ(first, row.first) << row.part << row.start;
        EXPECT_EQ(last, row.last) << row.part << row.start;
    }
    EXPECT_EQ(word.SubStr(4, 99), String("na"));
    EXPECT_EQ(word.SubStr(-3, 2), String("ba"));
    EXPECT_EQ(word.Right(99), word);
    EXPECT_EQ(word.Left(-1), String());
    String edited = word;
    edited.Delete(5, 9);
    edited.Delete(-1, 2);
    edited.Insert(99, String("xyz"), 1, 2);
    edited.Insert(-5, U'>');
    EXPECT_EQ(edited, String(">banany"));
    EXPECT_EQ(text("\xC3\x84\xD0\x96\xCE\xA3 \xC3\x9F").ToLower(), text("\xC3\xA4\xD0\xB6\xCF\x83 \xC3\x9F"));
    EXPECT_EQ(text("\xC3\xBF\xC5\xBE\xCF\x82z").ToUpper(), text("\xC5\xB8\xC5\xBD\xCE\xA3Z"));
    EXPECT_EQ(text("\xC3\x84pfel").LexCompare(text("\xC3\xA4PFEL")), 0);
    EXPECT_LT(String("a").Compare("b"), 0);
    EXPECT_NE(String("a").Compare("A"), 0);
}

TEST(Texts, OfNumbersReadBackToTheBit)
{
    EXPECT_EQ(String::FloatToString(Float(3.14159), -1, 2), String("3.14"));
    EXPECT_EQ(String::FloatToString(Float(-2.5), 3, 1, false, '*'), String("-**2.5"));
    EXPECT_EQ(String::FloatToString(Float(100000)), String("100000"));
    EXPECT_EQ(String::FloatToString(0.1f), String("0.1"));
    EXPECT_EQ(String::FloatToString(Float(-0.001), -1, 2), String("0.00"));
    EXPECT_EQ(String::IntToString(LIMIT<Int64>::MIN), String("-9223372036854775808"));
    std::mt19937_64 random(2);
    for (int round = 0; round < 2000; ++round) {
        const Float value =
            std::ldexp(static_cast<Float>(random() % 1000003) - 500000, static_cast<int>(random() % 200) - 100);
        EXPECT_EQ(std::strtod(Utf8Of(String::FloatToString(value)).c_str(), nullptr), value);
    }
    EXPECT_EQ(String::FloatToString(std::numeric_limits<Float>::max(), 9, 999).GetLength(), 309 + 1 + 300);
}

TEST(FileNames, ComeApartAndTogetherWithEitherSeparator)
{
    struct Row {
        const char *path, *folder, *file, *suffix, *cleared;
    };
    const Row rows[] = {
        {"C:\\plants\\oak.vdt", "C:\\plants", "oak.vdt", "vdt", "C:\\plants\\oak"},
        {"/plants/oak.tar.gz", "/plants", "oak.tar.gz", "gz", "/plants/oak.tar"},
        {"/oak", "/", "oak", "", "/oak"},
        {"oak.", "", "oak.", "", "oak"},
        {"C:\\a.b\\oak", "C:\\a.b", "oak", "", "C:\\a.b\\oak"},
        {"C:\\plants\\", "C:", "plants", "", "C:\\plants\\"},
        {"\\\\server\\share/x.y", "\\\\server\\share", "x.y", "y", "\\\\server\\share/x"},
        {"a.sevenxx", "", "a.sevenxx", "sevenxx", "a"},
        {"a.eightxxx", "", "a.eightxxx", "eightxxx", "a.eightxxx"},
        {"", "", "", "", ""},
        {"/", "/", "", "", "/"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.path);
        Filename name(row.path);
        EXPECT_EQ(name.GetString(), String(row.path));
        EXPECT_EQ(name.GetDirectory().GetString(), String(row.folder));
        EXPECT_EQ(name.GetFileString(), String(row.file));
        EXPECT_EQ(name.GetSuffix(), String(row.suffix));
        const Bool hasDot = name.GetFileString().FindFirst('.', nullptr);
        EXPECT_EQ(name.CheckSuffix(String(row.suffix).ToUpper()), hasDot);
        name.ClearSuffix();
        EXPECT_EQ(name.GetString(), String(row.cleared));
        name = Filename(row.path);
        name.ClearSuffixComplete();
        EXPECT_EQ(name.GetString() + String(hasDot ? "." : "") + String(row.suffix), String(row.path));
    }
    const auto joined = [](const char* a, const char* b) { return Utf8Of((Filename(a) + Filename(b)).GetString()); };
    EXPECT_EQ(joined("C:\\plants\\", "\\oak.vdt"), "C:\\plants\\oak.vdt");
    EXPECT_EQ(joined("C:", "oak.vdt"), "C:\\oak.vdt");
    EXPECT_EQ(joined("/", "oak.vdt"), "/oak.vdt");
    EXPECT_EQ(joined("a\\b", "c/d"), "a\\b\\c/d");
    EXPECT_EQ(joined("", "/oak"), "/oak");
    EXPECT_EQ(joined("plants", ""), "plants");
    Filename name("C:\\plants\\oak.vdt");
    name.SetSuffix("png");
    name.SetDirectory(Filename("/tex"));
    name.SetFile(Filename("elm.jpg"));
    EXPECT_EQ(name, Filename("/tex/elm.jpg"));
}

TEST(FileNames, LeadToPathsOfThisSystem)
{
    TestHostOptions options;
    options.drives = {{'D', "/mnt/data"}, {'e', "/"}};
    const TestHost host(options);
    EXPECT_EQ(NativePath(Filename("D:\\plants\\oak.vdt")), "/mnt/data/plants/oak.vdt");
    EXPECT_EQ(NativePath(Filename("d:")), "/mnt/data");
    EXPECT_EQ(NativePath(Filename("d:oak")), "/mnt/data/oak");
    EXPECT_EQ(NativePath(Filename("E:\\oak")), "/oak");
    EXPECT_EQ(NativePath(Filename("C:\\plants\\oak.vdt")), "C:/plants/oak.vdt");
    EXPECT_EQ(NativePath(Filename("\\\\server\\share")), "//server/share");
}

TEST(FileNames, FindWhatIsInAFolder)
{
    const vdt::test::TemporaryFolder folder;
    folder.write("b.txt", "text");
    folder.write("a/inner", "");
    folder.write(".hidden", "");
    folder.write("\xC3\xA4", "");
    const Filename root(TextOf(folder.root.string()));
    std::string seen;
    const AutoAlloc<BrowseFiles> browse;
    for (int round = 0; round < 2; ++round) {
        browse->Init(root, 0);
        while (browse->GetNext()) seen += Utf8Of(browse->GetFilename().GetString()) + (browse->IsDir() ? "/ " : " ");
    }
    EXPECT_EQ(seen, ".hidden a/ b.txt \xC3\xA4 .hidden a/ b.txt \xC3\xA4 ");
    browse->Init(root + Filename("none"), 0);
    EXPECT_FALSE(browse->GetNext());

    const Filename file = root + Filename("b.txt");
    EXPECT_TRUE(GeFExist(file) && !GeFExist(file, true) && GeFExist(root, true) && !GeFExist(root));
}

struct Values : testing::Test {
    Values() { RegisterNotes(); }
    TestHost host;
};

TEST_F(Values, AreCopiedWithAllThatTheyHold)
{
    {
        BaseContainer inner;
        inner.SetData(1, NoteOf(5, "five"));
        GeData outer(inner);
        const GeData copy = outer;
        EXPECT_EQ(copy, outer);
        EXPECT_EQ(Note::alive, 3); // inner, outer, copy
        auto* note = static_cast<Note*>(outer.GetContainer()->GetDataPointer(1)->GetCustomDataType(kNoteType));
        note->number = 6;
        EXPECT_NE(copy, outer);
        EXPECT_EQ(static_cast<const Note*>(copy.GetContainer()->GetCustomDataType(1, kNoteType))->number, 5);
        // A part of a value may take the value's place.
        outer = outer.GetContainer()->GetData(1);
        ASSERT_EQ(outer.GetType(), kNoteType);
        EXPECT_EQ(static_cast<Note*>(outer.GetCustomDataType(kNoteType))->number, 6);
        GeData moved = std::move(outer);
        EXPECT_EQ(outer.GetType(), DA_NIL);
        EXPECT_EQ(GeData(1234567, *note).GetType(), DA_NIL); // nobody knows the type
        EXPECT_EQ(GeData(kNoteType, DEFAULTVALUE).GetType(), kNoteType);
    }
    EXPECT_EQ(Note::alive, 0);
}

TEST_F(Values, OfAContainerKeepTheirOrderAndCountTheirChanges)
{
    BaseContainer container(12);
    container.SetInt32(7, 70);
    container.SetString(3, "three");
    container.InsData(7, GeData(71));
    container.SetFloat(5, 0.5);
    container.SetInt32(7, 72);
    std::string order;
    Int32 id = 0;
    GeData* data = nullptr;
    for (BrowseContainer browse(&container); browse.GetNext(&id, &data);) {
        order += std::to_string(id) + ":" + std::to_string(data->GetInt32()) + " ";
    }
    EXPECT_EQ(order, "7:72 3:0 7:71 5:0 ");
    EXPECT_TRUE(container.RemoveData(7));
    EXPECT_EQ(container.GetInt32(7), 71);
    EXPECT_FALSE(container.RemoveIndex(3));
    EXPECT_FALSE(container.RemoveIndex(-1));
    EXPECT_EQ(container.GetIndexId(3), NOTOK);

    // The value that is set may stand in the container itself.
    for (Int32 added = 100; added < 200; ++added) container.SetData(added, container.GetData(3));
    EXPECT_EQ(container.GetString(199), String("three"));

    UInt32 before = container.GetDirty();
    const auto grew = [&] { return std::exchange(before, container.GetDirty()) < container.GetDirty(); };
    const BaseContainer copy = container;
    EXPECT_FALSE(grew());
    container.MergeContainer(copy);
    EXPECT_TRUE(grew());
    container = BaseContainer();
    EXPECT_TRUE(grew());
    EXPECT_TRUE(copy.CopyTo(&container, COPYFLAGS_0, nullptr));
    EXPECT_TRUE(grew());
    EXPECT_EQ(container, copy);
    container.SetContainer(1, copy);
    container = *container.GetContainerInstance(1); // a part of it
    EXPECT_EQ(container, copy);
    EXPECT_NE(container, BaseContainer(12));
}

TEST_F(Values, OfLengthsAreReachedByPartsAndComparedWithAll)
{
    const AutoAlloc<UnitScaleData> unit;
    EXPECT_TRUE(unit->SetUnitScale(2, DOCUMENT_UNIT_FOOT));
    EXPECT_FALSE(unit->SetUnitScale(3, static_cast<DOCUMENT_UNIT>(11)));
    CustomDataTypeClass& type = *FindCustomDataType(CUSTOMDATATYPE_UNITSCALE);
    DESCFLAGS_SET set = DESCFLAGS_SET_0;
    DESCFLAGS_GET get = DESCFLAGS_GET_0;
    GeData part;
    EXPECT_TRUE(type.SetDParameter(unit, DescID(UNITSCALE_SCALE), GeData(std::nan("")), set));
    EXPECT_TRUE(type.GetParameter(unit, DescID(UNITSCALE_UNIT), part, get) && part.GetInt32() == DOCUMENT_UNIT_FOOT);
    set = DESCFLAGS_SET_0;
    EXPECT_FALSE(type.SetDParameter(unit, DescID(UNITSCALE_UNIT), GeData(-1), set));
    const AutoAlloc<UnitScaleData> other;
    other->SetUnitScale(2, DOCUMENT_UNIT_FOOT);
    EXPECT_NE(type.Compare(unit, other), 0); // else no number could take the place of what is none
    EXPECT_EQ(type.Compare(unit, unit), 0);
}

TEST(Ids, OfPartsBeginWithThoseOfTheWhole)
{
    const DescID whole(DescLevel(1000, DTYPE_VECTOR, 0)), part(DescLevel(1000, DTYPE_VECTOR, 0), DescLevel(1001));
    Int32 levels = -1;
    EXPECT_TRUE(part.IsPartOf(whole, &levels) && levels == 1 && part.IsPartOf(part, nullptr));
    EXPECT_FALSE(whole.IsPartOf(part, nullptr) || part.IsPartOf(DescID(1000), nullptr)); // another type
    EXPECT_EQ(part << 1, DescID(1001));
    EXPECT_EQ((part << 9).GetDepth(), 0);
    DescID deep;
    for (Int32 level = 0; level < 9; ++level) deep.PushId(DescLevel(level));
    EXPECT_EQ(deep[deep.GetDepth() - 1].id, deep.GetDepth() - 1);
    EXPECT_EQ(deep[deep.GetDepth()].id, 0);
}

TEST(Times, AreReducedFractions)
{
    struct Row {
        BaseTime time;
        Float numerator, denominator;
    };
    const Float huge = std::numeric_limits<Float>::infinity();
    const Row rows[] = {
        {BaseTime(0.5), 1, 2},
        {BaseTime(-0.0004), 0, 1},
        {BaseTime(1.23456), 247, 200},
        {BaseTime(20, 30), 2, 3},
        {BaseTime(4, -8), -1, 2},
        {BaseTime(7, 0), 7, 1},
        {BaseTime(std::nan(""), 5), 0, 1},
        {BaseTime(huge, huge), 1, 1},
        {BaseTime(1e14), 1e14, 1},
        {BaseTime(1, 3) + BaseTime(1, 6), 1, 2},
        {BaseTime(1, 3) - BaseTime(1, 3), 0, 1},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.time.GetNumerator(), row.numerator) << row.time.Get();
        EXPECT_EQ(row.time.GetDenominator(), row.denominator) << row.time.Get();
    }
    EXPECT_TRUE(BaseTime(1, 3) < BaseTime(1, 2) && BaseTime(1, 3) != BaseTime(2, 3) &&
                BaseTime(2, 6) == BaseTime(1, 3));
}

void expectNear(const Matrix& a, const Matrix& b, Float tolerance)
{
    for (const auto& [mine, others] : {std::pair(a.off, b.off), {a.v1, b.v1}, {a.v2, b.v2}, {a.v3, b.v3}})
        EXPECT_LT((mine - others).GetLength(), tolerance);
}

TEST(Matrices, AreUndoneByTheirInverseAndRebuiltFromTheirAngles)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<Float> number(-3, 3);
    const auto vector = [&] { return Vector(number(random), number(random), number(random)); };
    for (int round = 0; round < 500; ++round) {
        const Vector angles = vector();
        Matrix turned = HPBToMatrix(angles);
        expectNear(HPBToMatrix(MatrixToHPB(turned)), turned, 1e-9);
        EXPECT_NEAR(Dot(Cross(turned.v1, turned.v2), turned.v3), 1, 1e-12);
        const Matrix placed = MatrixMove(vector()) * turned * MatrixScale(Vector(1.5, 0.5, -2));
        expectNear(placed * ~placed, Matrix(), 1e-9);
        expectNear(~placed * placed, Matrix(), 1e-9);
    }
    for (const Float pitch : {std::acos(0.0), -std::acos(0.0)}) { // straight up and down
        const Matrix upright = HPBToMatrix(Vector(0.7, pitch, 0.2));
        expectNear(HPBToMatrix(MatrixToHPB(upright)), upright, 1e-6);
    }
    EXPECT_EQ(~MatrixScale(Vector(1, 0, 1)), Matrix());
    // Heading turns about the upright axis last, bank about the axis of depth first.
    const Float quarter = std::acos(0.0);
    EXPECT_LT((HPBToMatrix(Vector(quarter, 0, 0)) * Vector(0, 0, 1) - Vector(1, 0, 0)).GetLength(), 1e-12);
    EXPECT_LT((HPBToMatrix(Vector(quarter, 0, quarter)) * Vector(1, 0, 0) - Vector(0, 1, 0)).GetLength(), 1e-12);
}

} // namespace
} // namespace host::test
