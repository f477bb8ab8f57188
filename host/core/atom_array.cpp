#include "c4d_baselist.h"

#include <algorithm>

AtomArray* AtomArray::Alloc()
{
    return new AtomArray;
}

void AtomArray::Free(AtomArray*& array)
{
    delete array;
    array = nullptr;
}

C4DAtom* AtomArray::GetIndex(Int32 index) const
{
    return index >= 0 && index < GetCount() ? atoms[static_cast<size_t>(index)] : nullptr;
}

Bool AtomArray::Append(C4DAtom* atom)
{
    atoms.push_back(atom);
    return true;
}

Bool AtomArray::Append(AtomArray* source)
{
    if (!source) return false;
    const std::vector<C4DAtom*> added = source->atoms; // may be this array
    atoms.insert(atoms.end(), added.begin(), added.end());
    return true;
}

Bool AtomArray::Remove(C4DAtom* atom)
{
    const auto found = std::ranges::find(atoms, atom);
    if (found == atoms.end()) return false;
    atoms.erase(found);
    return true;
}

Int32 AtomArray::Find(C4DAtom* atom)
{
    const auto found = std::ranges::find(atoms, atom);
    return found == atoms.end() ? NOTOK : static_cast<Int32>(found - atoms.begin());
}

Bool AtomArray::CopyTo(AtomArray* destination) const
{
    if (!destination) return false;
    destination->atoms = std::vector<C4DAtom*>(atoms);
    return true;
}
