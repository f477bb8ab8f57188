#include "core/document.h"
#include "core/layer.h"
#include "core/object.h"
#include "core/string_access.h"
#include "obase.h"
#include "support/probe_object.h"
#include "support/test_host.h"

#include <gmock/gmock.h>

#include <map>
#include <random>
#include <set>

namespace host::test {
namespace {

using testing::ElementsAre;
using Calls = std::vector<std::string>;

// Checks every pointer of a row of nodes, and of all that stands below.
void CheckRow(const NodeCore* first, const NodeCore* last, const NodeCore* up, const ListCore* list)
{
    const NodeCore* previous = nullptr;
    for (const NodeCore* node = first; node; previous = node, node = node->next) {
        EXPECT_EQ(node->previous, previous);
        EXPECT_EQ(node->up, up);
        EXPECT_EQ(node->list, list);
        CheckRow(node->firstChild, node->lastChild, node, nullptr);
    }
    EXPECT_EQ(last, previous);
}

class Nodes : public testing::Test {
protected:
    Nodes() : record(ProbeRecord::Fresh()) { RegisterProbe(); }
    ~Nodes() override
    {
        for (C4DAtom* atom : made) FreeNode(CoreOf(atom));
        EXPECT_TRUE(record.living.empty()) << "a plug-in's part was never deleted";
    }

    // The test's own until it hands the node over.
    BaseObject* object(const char* name = "", Int32 type = Onull)
    {
        BaseObject* alloced = BaseObject::Alloc(type);
        alloced->SetName(name);
        made.push_back(alloced);
        return alloced;
    }
    BaseObject* child(BaseObject* parent, const char* name = "", Int32 type = Onull)
    {
        BaseObject* alloced = BaseObject::Alloc(type);
        alloced->SetName(name);
        alloced->InsertUnderLast(parent);
        return alloced;
    }
    BaseDocument* document()
    {
        BaseDocument* alloced = BaseDocument::Alloc();
        made.push_back(alloced);
        return alloced;
    }
    template <class Facade> Facade* owned(Facade* node)
    {
        made.push_back(node);
        return node;
    }

    TestHost host;
    ProbeRecord& record;
    std::vector<C4DAtom*> made;
};

// --- life

TEST_F(Nodes, APluginsPartLivesFromBeforeInitToAfterFree)
{
    bool linked = false;
    record.onInit = [&](GeListNode& node) { linked = static_cast<BaseObject&>(node).GetName() == String("Probe"); };
    BaseObject* probe = BaseObject::Alloc(kProbeObject);
    ASSERT_TRUE(probe);
    EXPECT_TRUE(linked);
    EXPECT_EQ(probe->GetEditorMode(), MODE_UNDEF);
    EXPECT_TRUE(probe->GetDeformMode());
    BaseObject::Free(probe);
    EXPECT_EQ(probe, nullptr);
    EXPECT_EQ(record.calls, Calls({"alloc", "init", "free", "delete"}));

    record.calls.clear();
    record.initFails = true;
    EXPECT_EQ(BaseObject::Alloc(kProbeObject), nullptr);
    EXPECT_EQ(record.calls, Calls({"alloc", "init", "delete"})); // no Free after a refused Init

    EXPECT_EQ(BaseObject::Alloc(Tphong), nullptr) << "a tag is no object";
    EXPECT_EQ(BaseTag::Alloc(1900099), nullptr);
}

TEST_F(Nodes, ACloneIsMadeInOrderAndHasNoCache)
{
    BaseObject* source = object("tree", kProbeObject);
    source->GetDataInstance()->SetInt32(5, 55);
    source->SetMl(MatrixMove(Vector(1, 2, 3)));
    source->SetBit(BIT_ACTIVE);
    source->ChangeNBit(NBIT_REF, NBITCONTROL_SET);
    source->MakeTag(Tphong)->SetName("tag");
    child(source, "child");
    CoreOf(source)->SetCache(CoreOf(BaseObject::Alloc(Onull)));
    static_cast<Probe*>(source->GetNodeData())->own = 8;

    struct Row {
        COPYFLAGS flags;
        bool bits, tags, children;
    };
    for (const Row& row :
         {Row{COPYFLAGS_0, true, true, true}, Row{COPYFLAGS_NO_BITS, false, true, true},
          Row{COPYFLAGS_NO_BRANCHES, true, false, true}, Row{COPYFLAGS_NO_HIERARCHY, true, true, false}}) {
        SCOPED_TRACE(row.flags);
        record.calls.clear();
        auto* clone = owned(static_cast<BaseObject*>(source->GetClone(row.flags, nullptr)));
        ASSERT_TRUE(clone);
        EXPECT_EQ(record.calls, Calls({"alloc", "init", "copy"}));
        EXPECT_EQ(clone->GetDataInstance()->GetInt32(5), 55);
        EXPECT_EQ(static_cast<Probe*>(clone->GetNodeData())->own, 8);
        EXPECT_EQ(clone->GetMl(), source->GetMl());
        EXPECT_EQ(clone->GetBit(BIT_ACTIVE) && clone->GetNBit(NBIT_REF), row.bits);
        EXPECT_EQ(clone->GetTag(Tphong) != nullptr, row.tags);
        EXPECT_EQ(clone->GetDown() != nullptr, row.children);
        EXPECT_EQ(clone->GetCache(), nullptr);
        EXPECT_TRUE(clone->IsDirty(DIRTYFLAGS_DATA));
        EXPECT_NE(CoreOf(clone)->GetMarker(), CoreOf(source)->GetMarker());
    }

    record.copyFails = true;
    const size_t before = record.living.size();
    EXPECT_EQ(source->GetClone(COPYFLAGS_0, nullptr), nullptr);
    EXPECT_EQ(record.living.size(), before);
}

TEST_F(Nodes, CopyingOverANodeKeepsWhatFitsAndFreesTheRest)
{
    BaseObject* source = object("source");
    for (const char* name : {"a", "b"}) child(source, name);
    BaseObject* target = object("target");
    BaseObject* kept = child(target, "x", kProbeObject);
    BaseObject* reused = child(target, "y");
    target->MakeTag(Tphong);
    ASSERT_TRUE(source->CopyTo(target, COPYFLAGS_0, nullptr));
    EXPECT_EQ(target->GetDown(), reused) << "of the same class, so its address stays";
    EXPECT_EQ(Utf8Of(reused->GetName()), "a");
    EXPECT_EQ(Utf8Of(reused->GetNext()->GetName()), "b");
    EXPECT_EQ(target->GetFirstTag(), nullptr);
    EXPECT_NE(target->GetDownLast(), kept);
    EXPECT_TRUE(record.living.empty());
    CheckRow(CoreOf(target)->firstChild, CoreOf(target)->lastChild, CoreOf(target), nullptr);
    EXPECT_FALSE(source->CopyTo(object("", kProbeObject), COPYFLAGS_0, nullptr));
}

// --- trees

TEST_F(Nodes, AnyRunOfEditsLeavesSoundRows)
{
    BaseDocument* scene = document();
    std::vector<BaseObject*> all;
    for (int i = 0; i < 12; ++i) {
        all.push_back(BaseObject::Alloc(Onull));
        scene->InsertObject(all.back(), nullptr, nullptr);
    }
    const ListCore& roots = CoreOf(scene)->objects;
    std::mt19937 random(5);
    for (int step = 0; step < 600; ++step) {
        BaseObject* moved = all[random() % all.size()];
        BaseObject* place = all[random() % all.size()];
        const bool refused = CoreOf(moved)->Contains(*CoreOf(place));
        BaseObject* upBefore = moved->GetUp();
        switch (random() % 4) {
        case 0:
            moved->InsertBefore(place);
            EXPECT_TRUE(refused || moved->GetNext() == place);
            break;
        case 1:
            moved->InsertAfter(place);
            EXPECT_TRUE(refused || place->GetNext() == moved);
            break;
        case 2:
            moved->InsertUnder(place);
            EXPECT_TRUE(refused || place->GetDown() == moved);
            break;
        default: moved->InsertUnderLast(place); EXPECT_TRUE(refused || place->GetDownLast() == moved);
        }
        EXPECT_TRUE(!refused || moved->GetUp() == upBefore);
    }
    CheckRow(roots.firstChild, roots.lastChild, nullptr, &roots);
    std::set<const NodeCore*> found;
    for (NodeCore* root = roots.firstChild; root; root = root->next) {
        VisitBelow(*root, [&](NodeCore& node) { found.insert(&node); });
    }
    EXPECT_EQ(found.size(), all.size());
    all[3]->Remove();
    EXPECT_EQ(all[3]->GetDocument(), nullptr);
    owned(all[3]);
}

// --- links

TEST_F(Nodes, LinksFollowTheirTargetsIntoTheCopiedSet)
{
    BaseObject* root = object();
    BaseObject* inside = child(root, "inside");
    BaseObject* outside = object("outside");
    root->GetDataInstance()->SetLink(1, inside);
    root->GetDataInstance()->SetLink(2, outside);
    BaseContainer nested;
    nested.SetLink(3, inside);
    root->GetDataInstance()->SetContainer(4, nested);

    for (const bool connectOld : {true, false}) {
        AutoAlloc<AliasTrans> links;
        links->Init(nullptr);
        auto* clone = owned(static_cast<BaseObject*>(root->GetClone(COPYFLAGS_0, &*links)));
        const BaseContainer& values = *clone->GetDataInstance();
        EXPECT_EQ(values.GetLink(1, nullptr), inside) << "until the end of the copying";
        links->Translate(connectOld);
        EXPECT_EQ(values.GetLink(1, nullptr), clone->GetDown());
        EXPECT_EQ(values.GetLink(2, nullptr), connectOld ? outside : nullptr);
        EXPECT_EQ(values.GetContainerInstance(4)->GetLink(3, nullptr), clone->GetDown());
        EXPECT_EQ(root->GetDataInstance()->GetLink(1, nullptr), inside);
    }
    auto* clone = owned(static_cast<BaseObject*>(root->GetClone(COPYFLAGS_0, nullptr)));
    EXPECT_EQ(clone->GetDataInstance()->GetLink(1, nullptr), inside);

    // Copies, and the translation itself, may go first.
    AutoAlloc<AliasTrans> links;
    BaseList2D* gone = static_cast<BaseList2D*>(root->GetClone(COPYFLAGS_0, &*links));
    BaseList2D::Free(gone);
    links->Translate(true);
    AliasTrans* dropped = AliasTrans::Alloc();
    clone = owned(static_cast<BaseObject*>(root->GetClone(COPYFLAGS_0, dropped)));
    AliasTrans::Free(dropped);
    EXPECT_EQ(clone->GetDataInstance()->GetLink(1, nullptr), inside);
}

TEST_F(Nodes, ALinkFindsOnlyWhatLivesInTheDocumentAsked)
{
    BaseDocument *here = document(), *elsewhere = document();
    BaseObject* target = BaseObject::Alloc(Onull);
    AutoAlloc<BaseLink> link;
    link->SetLink(target);
    EXPECT_EQ(link->GetLink(here), nullptr);
    EXPECT_EQ(link->ForceGetLink(), target);
    here->InsertObject(target, nullptr, nullptr);
    EXPECT_EQ(link->GetLink(here), target);
    EXPECT_EQ(link->GetLink(here, Obase), target);
    EXPECT_EQ(link->GetLink(here, Tbase), nullptr);
    EXPECT_EQ(link->GetLink(elsewhere), nullptr);

    // What stands in a cache belongs to the document of the cache's owner.
    BaseObject* cached = BaseObject::Alloc(Onull);
    CoreOf(target)->SetCache(CoreOf(cached));
    EXPECT_EQ(cached->GetDocument(), here);
    EXPECT_EQ(cached->GetUp(), nullptr);
    EXPECT_EQ(cached->GetCacheParent(), target);

    target->Remove();
    BaseObject::Free(target);
    EXPECT_EQ(link->ForceGetLink(), nullptr);
}

TEST_F(Nodes, AMarkerBelongsToOneNode)
{
    NodeCore& a = *CoreOf(object());
    NodeCore& b = *CoreOf(object());
    EXPECT_FALSE(a.SetMarker(b.GetMarker()));
    EXPECT_FALSE(a.SetMarker(0));
    const Marker old = a.GetMarker();
    EXPECT_TRUE(a.SetMarker(~Marker{0}));
    EXPECT_EQ(FindNode(~Marker{0}), &a);
    EXPECT_EQ(FindNode(old), nullptr);
    EXPECT_NE(CoreOf(object())->GetMarker(), 0u);
}

// --- dirty counts

TEST_F(Nodes, EachEditRaisesItsOwnCounts)
{
    BaseObject* parent = object();
    BaseObject* edited = child(parent, "", kProbeObject);
    BaseObject* below = child(edited);
    BaseTag* tag = edited->MakeTag(Tphong);
    struct Row {
        const char* edit;
        std::function<void()> apply;
        Int32 raised;
    };
    const Int32 data = DIRTYFLAGS_DATA, matrix = DIRTYFLAGS_MATRIX, children = DIRTYFLAGS_CHILDREN;
    const Row rows[] = {
        {"container", [&] { edited->GetDataInstance()->SetInt32(1, 2); }, data},
        {"container assigned", [&] { *edited->GetDataInstance() = BaseContainer(); }, data},
        {"data merged", [&] { edited->SetData(BaseContainer()); }, data},
        {"name", [&] { edited->SetName("new"); }, data},
        {"the same name", [&] { edited->SetName("new"); }, 0},
        {"message", [&] { edited->Message(MSG_UPDATE); }, data},
        {"other message", [&] { edited->Message(MSG_EDIT); }, 0},
        {"position", [&] { edited->SetAbsPos(Vector(1)); }, matrix},
        {"local matrix", [&] { edited->SetMl(MatrixScale(Vector(2))); }, matrix},
        {"global matrix", [&] { edited->SetMg(MatrixRotX(1)); }, matrix},
        {"position as a parameter",
         [&] { edited->SetParameter(ID_BASEOBJECT_REL_POSITION, Vector(7), DESCFLAGS_SET_0); }, matrix},
        {"parent moved", [&] { parent->SetAbsPos(Vector(3)); }, matrix},
        {"mode", [&] { edited->SetEditorMode(MODE_OFF); }, data},
        {"child's name", [&] { below->SetName("x"); }, children},
        {"child's container", [&] { below->GetDataInstance()->SetInt32(1, 3); }, children},
        {"child moved", [&] { below->SetAbsPos(Vector(9)); }, children},
        {"child added", [&] { child(below); }, children},
        {"child freed", [&] { FreeNode(CoreOf(below->GetDown())); }, children},
        {"tag's container", [&] { tag->GetDataInstance()->SetFloat(1, 0.5); }, data},
        {"tag added", [&] { edited->MakeTag(Tphong); }, data},
        {"tag killed", [&] { edited->KillTag(Tphong); }, data},
        {"selection", [&] { edited->SetDirty(DIRTYFLAGS_SELECT); }, DIRTYFLAGS_SELECT},
        {"cache", [&] { CoreOf(edited)->SetCache(CoreOf(BaseObject::Alloc(Onull))); }, DIRTYFLAGS_CACHE},
        {"the same cache", [&] { CoreOf(edited)->SetCache(CoreOf(edited)->Cache()); }, 0},
        {"bits", [&] { edited->SetBit(BIT_ACTIVE); }, 0},
    };
    for (const Row& row : rows) {
        std::map<Int32, UInt32> before;
        for (const DIRTYFLAGS flag : NodeCore::kDirtyFlags) before[flag] = edited->GetDirty(flag);
        edited->Touch();
        EXPECT_FALSE(edited->IsDirty(DIRTYFLAGS_ALL)) << row.edit;
        row.apply();
        Int32 raised = 0;
        for (const DIRTYFLAGS flag : NodeCore::kDirtyFlags) {
            EXPECT_GE(edited->GetDirty(flag), before[flag]) << row.edit;
            if (edited->GetDirty(flag) != before[flag]) raised |= flag;
            EXPECT_EQ(edited->IsDirty(flag) != 0, edited->GetDirty(flag) != before[flag]) << row.edit;
        }
        EXPECT_EQ(raised, row.raised) << row.edit;
    }
    EXPECT_TRUE(edited->GetBit(BIT_CONTROLOBJECT));
}

// --- matrices

double distance(const Matrix& a, const Matrix& b)
{
    return Len(a.off - b.off) + Len(a.v1 - b.v1) + Len(a.v2 - b.v2) + Len(a.v3 - b.v3);
}

TEST_F(Nodes, CoordinatesAndMatricesTellTheSame)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> number(-3, 3);
    const auto vector = [&] { return Vector(number(random), number(random), number(random)); };
    BaseObject* grandparent = object();
    BaseObject* parent = child(grandparent);
    BaseObject* generator = child(parent);
    BaseObject* cached = BaseObject::Alloc(Onull);
    CoreOf(generator)->SetCache(CoreOf(cached));
    BaseObject* leaf = child(cached);
    for (int i = 0; i < 200; ++i) {
        for (BaseObject* each : {grandparent, parent, generator, cached}) {
            each->SetAbsPos(vector());
            each->SetAbsRot(vector());
            each->SetAbsScale(Vector(1) + vector() * 0.25);
        }
        Matrix wanted = HPBToMatrix(vector());
        const double side = i % 2 ? -1.5 : 1.5; // mirrored and not
        wanted.Scale(Vector(side, side, side));
        wanted.off = vector();
        leaf->SetMg(wanted);
        EXPECT_LT(distance(leaf->GetMg(), wanted), 1e-9);
        EXPECT_LT(distance(cached->GetMg(), generator->GetMg() * cached->GetMl()), 1e-12);

        // Setting what is there changes nothing.
        grandparent->SetMl(wanted);
        grandparent->SetAbsScale(grandparent->GetAbsScale());
        grandparent->SetAbsRot(grandparent->GetAbsRot());
        EXPECT_LT(distance(grandparent->GetMl(), wanted), 1e-9);
    }
    parent->SetAbsRot(Vector(20, 0, 0));
    parent->SetAbsPos(Vector(1));
    EXPECT_EQ(parent->GetAbsRot(), Vector(20, 0, 0)) << "angles beyond a full turn stay";
}

// --- tags

TEST_F(Nodes, NewTagsStandFirstAndCopiesLast)
{
    BaseObject* source = object();
    BaseTag* a = source->MakeTag(Tphong);
    BaseTag* b = source->MakeTag(Tpolygonselection);
    BaseTag* c = source->MakeTag(Tpolygonselection, a);
    EXPECT_THAT((std::vector<BaseTag*>{source->GetFirstTag(), b->GetNext(), a->GetNext(), source->GetLastTag()}),
                ElementsAre(b, a, c, c));
    EXPECT_EQ(source->GetTag(Tpolygonselection, 1), c);
    EXPECT_EQ(source->GetTag(Tpolygonselection, 2), nullptr);
    EXPECT_EQ(a->GetObject(), source);
    source->MakeVariableTag(Tuvw, 3);

    struct Row {
        Int32 visible, variable, hierarchical;
        std::vector<Int32> types;
    };
    const Row rows[] = {{true, false, false, {Tpolygonselection, Tphong, Tpolygonselection}},
                        {true, true, false, {Tuvw}},
                        {NOTOK, NOTOK, NOTOK, {Tuvw, Tpolygonselection, Tphong, Tpolygonselection}},
                        {false, NOTOK, NOTOK, {}},
                        {true, NOTOK, true, {}}};
    for (const Row& row : rows) {
        BaseObject* target = object();
        target->MakeTag(Ttexture);
        EXPECT_TRUE(source->CopyTagsTo(target, row.visible, row.variable, row.hierarchical, nullptr));
        std::vector<Int32> types;
        for (BaseTag* tag = target->GetFirstTag()->GetNext(); tag; tag = tag->GetNext())
            types.push_back(tag->GetType());
        EXPECT_EQ(types, row.types) << row.visible << row.variable << row.hierarchical;
    }
    source->KillTag(Tpolygonselection, 1);
    EXPECT_EQ(source->GetTag(Tpolygonselection), b);
    EXPECT_EQ(source->GetTag(Tpolygonselection, 1), nullptr);
}

// --- materials and layers

TEST_F(Nodes, MaterialsAreEqualByWhatTheyShow)
{
    const auto make = [&] {
        BaseMaterial* material = owned(BaseMaterial::Alloc(Mmaterial));
        BaseShader* shader = BaseShader::Alloc(Xbitmap);
        shader->GetDataInstance()->SetFilename(1000, Filename("bark.png"));
        material->InsertShader(shader);
        material->GetDataInstance()->SetLink(2103, shader);
        return material;
    };
    struct Row {
        const char* change;
        std::function<void(BaseMaterial*)> apply;
        bool equal;
    };
    const Row rows[] = {
        {"none", [](BaseMaterial*) {}, true},
        {"name", [](BaseMaterial* m) { m->SetName("other"); }, true},
        {"link", [](BaseMaterial* m) { m->GetDataInstance()->SetLink(7, m); }, true},
        {"value", [](BaseMaterial* m) { m->GetDataInstance()->SetFloat(7, 1); }, false},
        {"shader's file",
         [](BaseMaterial* m) { m->GetFirstShader()->GetDataInstance()->SetFilename(1000, Filename()); }, false},
        {"more shaders", [](BaseMaterial* m) { m->InsertShader(BaseShader::Alloc(Xcolor)); }, false},
        {"shader below", [](BaseMaterial* m) { BaseShader::Alloc(Xcolor)->InsertUnder(m->GetFirstShader()); }, false},
    };
    BaseMaterial* standard = make();
    for (const Row& row : rows) {
        BaseMaterial* other = make();
        row.apply(other);
        EXPECT_EQ(standard->Compare(other) != 0, row.equal) << row.change;
        EXPECT_EQ(other->Compare(standard) != 0, row.equal) << row.change;
    }
    const UInt32 before = standard->GetDirty(DIRTYFLAGS_DATA);
    standard->Update(true, true);
    EXPECT_EQ(standard->GetDirty(DIRTYFLAGS_DATA), before + 1);
}

TEST_F(Nodes, ASoloedLayerHidesTheOthersOfItsDocument)
{
    BaseDocument* scene = document();
    LayerObject *a = LayerObject::Alloc(), *b = LayerObject::Alloc();
    scene->GetLayerObjectRoot()->InsertLast(a);
    b->InsertUnder(a);
    BaseObject* seen = BaseObject::Alloc(Onull);
    scene->InsertObject(seen, nullptr, nullptr);
    EXPECT_EQ(seen->GetLayerData(scene), nullptr);
    seen->SetLayerObject(a);
    EXPECT_EQ(seen->GetLayerObject(scene), a);
    EXPECT_EQ(seen->GetLayerObject(document()), nullptr);
    EXPECT_TRUE(seen->GetLayerData(scene)->view);

    LayerData solo;
    solo.solo = true;
    EXPECT_TRUE(b->SetLayerData(scene, solo));
    EXPECT_FALSE(seen->GetLayerData(scene)->view || seen->GetLayerData(scene)->render);
    EXPECT_TRUE(seen->GetLayerData(scene, true)->view) << "its own settings stay";
    EXPECT_TRUE(b->GetLayerData(scene)->view);
    seen->SetData(BaseContainer(), false);
    EXPECT_EQ(seen->GetLayerObject(scene), a) << "no matter of the container";
    EXPECT_EQ(owned(static_cast<BaseObject*>(seen->GetClone(COPYFLAGS_0, nullptr)))->GetLayerObject(scene), a);
    seen->SetLayerObject(nullptr);
    EXPECT_EQ(seen->GetLayerObject(scene), nullptr);
    EXPECT_FALSE(seen->SetLayerData(scene, solo));
}

} // namespace
} // namespace host::test
