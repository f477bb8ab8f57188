#include "materials/material_twins.h"

#include <set>
#include <utility>

namespace {

constexpr Int32 kDeepestNesting = 100; // of containers and shaders; scenes may come from anywhere

// One new material against one of the document's. Whatever differs ends the comparison.
class Comparison {
public:
    explicit Comparison(BaseDocument& documentOfOld) : document(documentOfOld) {}

    Bool sameMaterial(BaseMaterial& old, BaseMaterial& fresh)
    {
        if (old.GetType() != fresh.GetType() || old.GetName() != fresh.GetName()) return false;
        return isUnderWay(old, fresh) || sameValues(old, fresh);
    }

private:
    // True if the two were met before: then they agree as far as the comparison has come. Links may lead in circles.
    Bool isUnderWay(const BaseList2D& old, const BaseList2D& fresh) { return !met.insert({&old, &fresh}).second; }

    Bool sameValues(const BaseList2D& old, const BaseList2D& fresh)
    {
        const BaseContainer* oldValues = old.GetDataInstance();
        const BaseContainer* freshValues = fresh.GetDataInstance();
        return oldValues && freshValues && sameContainer(*oldValues, *freshValues);
    }

    // The same ids, whatever their order.
    Bool sameContainer(const BaseContainer& old, const BaseContainer& fresh)
    {
        for (Int32 i = 0; fresh.GetIndexData(i); ++i)
            if (!old.GetDataPointer(fresh.GetIndexId(i))) return false;
        for (Int32 i = 0; const GeData* value = old.GetIndexData(i); ++i) {
            const GeData* other = fresh.GetDataPointer(old.GetIndexId(i));
            if (!other || !sameValue(*value, *other)) return false;
        }
        return true;
    }

    Bool sameValue(const GeData& old, const GeData& fresh)
    {
        if (old.GetType() != fresh.GetType()) return false;
        switch (old.GetType()) {
        case DA_ALIASLINK: return sameTarget(old.GetLink(&document), fresh.GetBaseLink()->ForceGetLink());
        case DA_CONTAINER: return nested([&] { return sameContainer(*old.GetContainer(), *fresh.GetContainer()); });
        default: return old == fresh;
        }
    }

    Bool sameTarget(BaseList2D* old, BaseList2D* fresh)
    {
        if (!isKnown(old) || !isKnown(fresh)) return false;
        if (!old || !fresh) return old == fresh;
        if (old->IsInstanceOf(Mbase) != fresh->IsInstanceOf(Mbase)) return false;
        return nested([&] {
            if (!old->IsInstanceOf(Mbase))
                return sameShader(*static_cast<BaseShader*>(old), *static_cast<BaseShader*>(fresh));
            return sameMaterial(*static_cast<BaseMaterial*>(old), *static_cast<BaseMaterial*>(fresh));
        });
    }

    static Bool isKnown(BaseList2D* target)
    {
        if (!target || target->IsInstanceOf(Mbase) || target->IsInstanceOf(Xbase)) return true;
        GePrint(String("Unsupported link type: ") + String::IntToString(target->GetType()));
        return false;
    }

    Bool sameShader(BaseShader& old, BaseShader& fresh)
    {
        if (old.GetType() != fresh.GetType()) return false;
        if (isUnderWay(old, fresh)) return true;
        if (!sameValues(old, fresh)) return false;
        return nested([&] {
            BaseShader *oldChild = old.GetDown(), *freshChild = fresh.GetDown();
            for (; oldChild && freshChild; oldChild = oldChild->GetNext(), freshChild = freshChild->GetNext())
                if (!sameShader(*oldChild, *freshChild)) return false;
            return !oldChild && !freshChild;
        });
    }

    template <class Inner> Bool nested(const Inner& inner)
    {
        if (depth == kDeepestNesting) return false;
        ++depth;
        const Bool same = inner();
        --depth;
        return same;
    }

    BaseDocument& document;
    std::set<std::pair<const BaseList2D*, const BaseList2D*>> met;
    Int32 depth = 0;
};

} // namespace

BaseMaterial* findTwin(BaseDocument& document, const MaterialEntry& entry)
{
    for (BaseMaterial* old = document.GetFirstMaterial(); old; old = old->GetNext())
        if (Comparison(document).sameMaterial(*old, *entry.material)) return old;
    return nullptr;
}
