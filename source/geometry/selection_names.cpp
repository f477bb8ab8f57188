#include "geometry/selection_names.h"

#include "oxref.h"
#include "ttexture.h"

namespace {

const Char* const kMaterial = "MAT";
const Char* const kSeparator = "::";

String stringParameter(C4DAtom& atom, Int32 id)
{
    GeData value;
    if (!atom.GetParameter(DescID(DescLevel(id)), value, DESCFLAGS_GET_0)) return String();
    return value.GetType() == DA_STRING ? value.GetString() : String();
}

Bool beginsWith(const String& text, const String& beginning)
{
    return text.GetLength() >= beginning.GetLength() && text.Left(beginning.GetLength()) == beginning;
}

// The host's own parser takes white space, units and calculations; names are compared with what we wrote ourselves.
Bool parseWholeNumber(const String& text, Int32& number)
{
    const Bool negative = text.GetLength() > 0 && text[0] == '-';
    const Int start = negative ? 1 : 0;
    const Int64 limit = negative ? -static_cast<Int64>(LIMIT<Int32>::MIN) : LIMIT<Int32>::MAX;
    if (text.GetLength() == start) return false;

    Int64 amount = 0;
    for (Int i = start; i < text.GetLength(); ++i) {
        const Utf32Char digit = text[i];
        if (digit < '0' || digit > '9') return false;
        amount = 10 * amount + static_cast<Int64>(digit - '0');
        if (amount > limit) return false;
    }
    number = static_cast<Int32>(negative ? -amount : amount);
    return true;
}

// What the object hangs on: its parent or, at the top of a cache, the object that made it.
BaseObject* above(BaseObject* object)
{
    BaseObject* parent = object->GetUp();
    return parent ? parent : object->GetCacheParent();
}

} // namespace

String MaterialSelectionName(Int32 material)
{
    return String(kMaterial) + String::IntToString(material);
}

Int32 MaterialIdOfName(const String& name)
{
    const String beginning(kMaterial);
    Int32 material = -1;
    if (!beginsWith(name, beginning)) return -1;
    return parseWholeNumber(name.Right(name.GetLength() - beginning.GetLength()), material) ? material : -1;
}

String SelectionPrefix(BaseObject* object)
{
    String prefix;
    if (!object || !object->GetNBit(NBIT_REF)) return prefix;

    for (BaseObject* at = above(object); at; at = above(at)) {
        if (at->GetType() != Oxref) continue;
        const String name = stringParameter(*at, ID_CA_XREF_NAMESPACE);
        prefix = prefix.Content() ? name + String(kSeparator) + prefix : name;
    }
    return prefix;
}

String WithPrefix(const String& prefix, const String& name)
{
    return prefix.Content() ? prefix + String(kSeparator) + name : name;
}

Int32 MaterialIdOfTag(BaseObject* object, BaseTag* tag)
{
    if (!object || !tag) return -1;

    String restriction = stringParameter(*tag, TEXTURETAG_RESTRICTION);
    const String prefix = WithPrefix(SelectionPrefix(object), String());
    if (prefix.Content() && beginsWith(restriction, prefix))
        restriction = restriction.Right(restriction.GetLength() - prefix.GetLength());
    return MaterialIdOfName(restriction);
}
