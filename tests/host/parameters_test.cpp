#include "core/description.h"
#include "core/object.h"
#include "core/parameters.h"
#include "obase.h"
#include "support/probe_object.h"
#include "support/test_host.h"

#include <gtest/gtest.h>

#include <cmath>

namespace host::test {
namespace {

// A data type of two numbers, of which the second does not count in comparisons.
struct Pair : iCustomDataType<Pair> {
    Int32 first = 0;
    Int32 second = 0;
};
constexpr Int32 kPair = 1900010;

class PairType final : public CustomDataTypeClass {
public:
    Int32 GetId() override { return kPair; }
    CustomDataType* AllocData() override { return Pair::Alloc(); }
    void FreeData(CustomDataType* data) override
    {
        auto* pair = static_cast<Pair*>(data);
        Pair::Free(pair);
    }
    Bool CopyData(const CustomDataType* src, CustomDataType* dest, AliasTrans*) override
    {
        *static_cast<Pair*>(dest) = *static_cast<const Pair*>(src);
        return true;
    }
    Int32 Compare(const CustomDataType* d1, const CustomDataType* d2) override
    {
        return static_cast<const Pair*>(d1)->first - static_cast<const Pair*>(d2)->first;
    }
    Bool WriteData(const CustomDataType*, HyperFile*) override { return true; }
    Bool ReadData(CustomDataType*, HyperFile*, Int32) override { return true; }
    const Char* GetResourceSym() override { return "TESTPAIR"; }
    Bool GetParameter(const CustomDataType* data, const DescID& id, GeData& t_data, DESCFLAGS_GET& flags) override
    {
        if (id[0].id > 2) return CustomDataTypeClass::GetParameter(data, id, t_data, flags);
        const auto* pair = static_cast<const Pair*>(data);
        t_data = GeData(id[0].id == 1 ? pair->first : pair->second);
        flags |= DESCFLAGS_GET_PARAM_GET;
        return CustomDataTypeClass::GetParameter(data, id, t_data, flags);
    }
    Bool SetDParameter(CustomDataType* data, const DescID& id, const GeData& t_data, DESCFLAGS_SET& flags) override
    {
        if (id[0].id > 2) return false;
        auto* pair = static_cast<Pair*>(data);
        (id[0].id == 1 ? pair->first : pair->second) = t_data.GetInt32();
        flags |= DESCFLAGS_SET_PARAM_SET;
        return true;
    }
};

enum { P_BOOL = 2001, P_LONG, P_REAL, P_VECTOR, P_STRING, P_FILE, P_LINK, P_PAIR, P_PERCENT, P_BUTTON, P_GROUP };

class Parameters : public testing::Test {
protected:
    Parameters() : record(ProbeRecord::Fresh())
    {
        EXPECT_TRUE(RegisterCustomDataTypePlugin("Pair", CUSTOMDATATYPE_INFO_LOADSAVE, NewObjClear(PairType), 1));
        host.folder.write(
            "res/description/oprobe.h",
            "enum { P_BOOL = 2001, P_LONG, P_REAL, P_VECTOR, P_STRING, P_FILE, P_LINK, P_PAIR, P_PERCENT, "
            "P_BUTTON, P_GROUP };");
        host.folder.write(
            "res/description/oprobe.res",
            "CONTAINER Oprobe { NAME Oprobe; INCLUDE Obase; GROUP P_GROUP {\n"
            "BOOL P_BOOL { DEFAULT 1; } LONG P_LONG { DEFAULT 3; MIN 1; MAX 9; }\n"
            "REAL P_REAL { MIN -1.5; MAX 2.5; } VECTOR P_VECTOR { MIN 0.0; MAX 1.0; } STRING P_STRING { }\n"
            "FILENAME P_FILE { } LINK P_LINK { } TESTPAIR P_PAIR { }\n"
            "REAL P_PERCENT { UNIT PERCENT; MIN 0.0; MAX 100.0; DEFAULT 50.0; } BUTTON P_BUTTON { } } }");
        PartOf<Descriptions>().addFolder(host.folder.root / "res");
        RegisterProbe("Oprobe");
        probe = BaseObject::Alloc(kProbeObject);
        record.onMessage = [this](GeListNode& node, Int32 type, void* data) {
            if (type != MSG_DESCRIPTION_POSTSETPARAMETER) return;
            const DescID id = *static_cast<DescriptionPostSetValue*>(data)->descid;
            told.push_back(id[0].id);
            if (onSet) onSet(static_cast<BaseObject&>(node), id);
        };
    }
    ~Parameters() override { BaseObject::Free(probe); }

    GeData get(const DescID& id)
    {
        GeData value;
        return probe->GetParameter(id, value, DESCFLAGS_GET_0) ? value : GeData("none");
    }
    bool set(const DescID& id, const GeData& value, DESCFLAGS_SET flags = DESCFLAGS_SET_0)
    {
        return probe->SetParameter(id, value, flags);
    }

    TestHost host;
    ProbeRecord& record;
    BaseObject* probe = nullptr;
    std::vector<Int32> told; // first levels, by message 19
    std::function<void(BaseObject&, const DescID&)> onSet;
};

TEST_F(Parameters, WhatNobodyWroteIsWhatTheDescriptionSays)
{
    const std::pair<Int32, GeData> rows[] = {{P_BOOL, Int32{1}},
                                             {P_LONG, Int32{3}},
                                             {P_REAL, 0.0},
                                             {P_VECTOR, Vector()},
                                             {P_STRING, ""},
                                             {P_FILE, Filename()},
                                             {P_LINK, static_cast<BaseList2D*>(nullptr)},
                                             {P_PAIR, GeData(kPair, DEFAULTVALUE)},
                                             {P_PERCENT, 0.5},
                                             {ID_BASEOBJECT_GENERATOR_FLAG, Int32{1}},
                                             {Probe::kOwnParameter, 0.0},
                                             {1, "none"},
                                             {1999, "none"}};
    for (const auto& [id, expected] : rows) EXPECT_EQ(get(id), expected) << id;
    EXPECT_EQ(probe->GetDataInstance()->GetIndexData(0), nullptr) << "reading writes nothing";
    EXPECT_EQ(get(DescID()), GeData("none"));
}

TEST_F(Parameters, ValuesAreConvertedAndLimitedAsDescribed)
{
    const double nan = std::nan("");
    struct Row {
        Int32 id;
        GeData value;
        DESCFLAGS_SET flags;
        GeData expected; // "refused": nothing is stored and nobody is told
    };
    const DESCFLAGS_SET free = DESCFLAGS_SET_DONTCHECKMINMAX, plain = DESCFLAGS_SET_0;
    const Row rows[] = {
        {P_LONG, 7.9, plain, Int32{7}},
        {P_LONG, Int32{12}, plain, Int32{9}},
        {P_LONG, Int32{-5}, plain, Int32{1}},
        {P_LONG, Int32{12}, free, Int32{12}},
        {P_LONG, "12", plain, "refused"},
        {P_BOOL, Int32{5}, plain, Int32{1}},
        {P_BOOL, 0.5, plain, Int32{1}},
        {P_BOOL, 0.0, plain, Int32{0}},
        {P_REAL, Int32{2}, plain, 2.0},
        {P_REAL, 1e300, plain, 2.5},
        {P_REAL, -9.0, free, -9.0},
        {P_VECTOR, Vector(-1, 0.5, 2), plain, Vector(0, 0.5, 1)},
        {P_VECTOR, 1.0, plain, "refused"},
        {P_STRING, "text", plain, "text"},
        {P_STRING, Int32{1}, plain, "refused"},
        {P_FILE, String("a.vdt"), plain, Filename("a.vdt")},
        {P_LINK, GeData(), plain, static_cast<BaseList2D*>(nullptr)},
        {P_LINK, probe, plain, probe},
        {P_PAIR, Int32{1}, plain, "refused"},
        {P_BUTTON, Int32{1}, plain, "refused"},
        {P_GROUP, Int32{1}, plain, "refused"},
        {P_PERCENT, 2.0, plain, 1.0},
        {ID_BASEOBJECT_USECOLOR, 2.0, plain, Int32{2}},
        {ID_BASEOBJECT_REL_POSITION, Int32{1}, plain, "refused"},
        {ID_BASELIST_NAME, "named", plain, "named"},
        {7777, Vector(1), plain, Vector(1)}, // described nowhere: kept as it is
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.id);
        told.clear();
        const bool refused = row.expected == GeData("refused");
        const GeData before = get(row.id);
        EXPECT_EQ(set(row.id, row.value, row.flags), !refused);
        EXPECT_EQ(get(row.id), refused ? before : row.expected);
        EXPECT_EQ(told.size(), refused ? 0u : 1u);
    }
    EXPECT_TRUE(set(P_REAL, nan));
    EXPECT_TRUE(std::isnan(get(P_REAL).GetFloat())) << "no limit lies above or below it";
    EXPECT_TRUE(set(P_LONG, nan));
}

TEST_F(Parameters, OnlyAChangeCountsButEverySetIsTold)
{
    struct Row {
        const char* step;
        DescID id;
        GeData value;
        DESCFLAGS_SET flags;
        bool counts;
    };
    Pair pair;
    pair.first = 4;
    const GeData fourth(kPair, pair);
    pair.second = 9;
    const GeData equalFourth(kPair, pair);
    const Row rows[] = {{"first write of the default", P_LONG, Int32{3}, DESCFLAGS_SET_0, true},
                        {"the same", P_LONG, Int32{3}, DESCFLAGS_SET_0, false},
                        {"the same by force", P_LONG, Int32{3}, DESCFLAGS_SET_FORCESET, true},
                        {"clamped to the same", P_LONG, Int32{-3}, DESCFLAGS_SET_0, true},
                        {"clamped again", P_LONG, Int32{-4}, DESCFLAGS_SET_0, false},
                        {"custom", P_PAIR, fourth, DESCFLAGS_SET_0, true},
                        {"equal by its type", P_PAIR, equalFourth, DESCFLAGS_SET_0, false},
                        {"a component", DescID(P_VECTOR, kVectorY), 0.25, DESCFLAGS_SET_0, true},
                        {"the same component", DescID(P_VECTOR, kVectorY), 0.25, DESCFLAGS_SET_0, false},
                        {"the plug-in's own", Probe::kOwnParameter, 2.0, DESCFLAGS_SET_0, true},
                        {"name", ID_BASELIST_NAME, "x", DESCFLAGS_SET_0, true},
                        {"same name", ID_BASELIST_NAME, "x", DESCFLAGS_SET_0, false},
                        {"position", ID_BASEOBJECT_REL_POSITION, Vector(1), DESCFLAGS_SET_0, false}};
    for (const Row& row : rows) {
        told.clear();
        const UInt32 before = probe->GetDirty(DIRTYFLAGS_DATA);
        EXPECT_TRUE(set(row.id, row.value, row.flags)) << row.step;
        EXPECT_EQ(probe->GetDirty(DIRTYFLAGS_DATA), before + row.counts) << row.step;
        EXPECT_EQ(told, std::vector<Int32>{row.id[0].id}) << row.step;
    }
    EXPECT_EQ(static_cast<const Pair*>(probe->GetDataInstance()->GetCustomDataType(P_PAIR, kPair))->second, 0)
        << "an equal value is not stored";
    EXPECT_EQ(get(Probe::kOwnParameter), GeData(2.0));
    EXPECT_EQ(probe->GetDataInstance()->FindIndex(Probe::kOwnParameter), NOTOK);
}

TEST_F(Parameters, PartsAreReadAndWrittenWithinTheWhole)
{
    EXPECT_EQ(get(DescID(P_VECTOR, kVectorX)), GeData(0.0));
    EXPECT_TRUE(set(DescID(P_VECTOR, kVectorX), Int32{1}));
    EXPECT_TRUE(set(DescID(P_VECTOR, kVectorZ), 7.0)); // the whole is limited
    EXPECT_EQ(get(P_VECTOR), GeData(Vector(1, 0, 1)));
    EXPECT_TRUE(set(DescID(P_PAIR, 2), Int32{6})); // of a value that nobody wrote yet
    EXPECT_TRUE(set(DescID(P_PAIR, 2), Int32{8}));
    EXPECT_EQ(get(DescID(P_PAIR, 2)), GeData(Int32{6})) << "the type says that nothing changed";
    EXPECT_TRUE(set(DescID(P_PAIR, 1), Int32{6}));
    EXPECT_EQ(get(DescID(P_PAIR, 1)), GeData(Int32{6}));
    EXPECT_TRUE(set(DescID(ID_BASEOBJECT_REL_POSITION, kVectorY), 5.0));
    EXPECT_EQ(probe->GetAbsPos(), Vector(0, 5, 0));

    for (const DescID& id : {DescID(P_VECTOR, 999), DescID(P_VECTOR, 1003), DescID(P_VECTOR, kVectorX, 1),
                             DescID(P_PAIR, 3), DescID(P_LONG, 1), DescID(P_STRING, kVectorX), DescID(1999, 1)}) {
        EXPECT_EQ(get(id), GeData("none"));
        EXPECT_FALSE(set(id, 1.0));
    }
    EXPECT_FALSE(set(DescID(P_VECTOR, kVectorX), "text"));
}

TEST_F(Parameters, TheMessageComesBeforeSetParameterReturnsAndMaySetAgain)
{
    onSet = [](BaseObject& object, const DescID& id) {
        if (id[0].id == P_LONG) object.SetParameter(P_REAL, GeData(1.0), DESCFLAGS_SET_0);
    };
    EXPECT_TRUE(set(P_LONG, Int32{5}, DESCFLAGS_SET_USERINTERACTION));
    EXPECT_EQ(told, (std::vector<Int32>{P_LONG, P_REAL}));
    EXPECT_EQ(get(P_REAL), GeData(1.0));

    record.onInit = [](GeListNode& node) { node.SetParameter(P_LONG, GeData(Int32{2}), DESCFLAGS_SET_0); };
    told.clear();
    BaseObject* other = BaseObject::Alloc(kProbeObject);
    EXPECT_EQ(told.front(), P_LONG) << "also from within Init";
    BaseObject::Free(other);
}

TEST_F(Parameters, AValueThatWasReadIsACopy)
{
    ASSERT_TRUE(set(DescID(P_PAIR, 1), Int32{3}));
    GeData read = get(P_PAIR);
    static_cast<Pair*>(read.GetCustomDataType(kPair))->first = 99;
    EXPECT_EQ(get(DescID(P_PAIR, 1)), GeData(Int32{3}));
}

} // namespace
} // namespace host::test
