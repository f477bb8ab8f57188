#include "geometry/selection_names.h"

#include "oxref.h"
#include "support/plugin_ids.h"
#include "support/text.h"
#include "ttexture.h"

#include <charconv>
#include <string>
#include <string_view>

namespace {

constexpr std::string_view kMaterial = "MAT";
constexpr const Char* kSeparator = "::";

String stringParameter(C4DAtom& atom, Int32 id)
{
    GeData value;
    if (!atom.GetParameter(DescID(DescLevel(id)), value, DESCFLAGS_GET_0)) return {};
    return value.GetType() == DA_STRING ? value.GetString() : String();
}

Bool beginsWith(const String& text, const String& beginning)
{
    return text.GetLength() >= beginning.GetLength() && text.Left(beginning.GetLength()) == beginning;
}

String withoutPrefix(const String& name, const String& prefix)
{
    return beginsWith(name, prefix) ? name.Right(name.GetLength() - prefix.GetLength()) : name;
}

// The host's own parser takes white space, units and calculations; these names are ours.
bool parseWholeNumber(std::string_view text, Int32& number)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
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
    return ToHostString(kMaterial) + String::IntToString(material);
}

Int32 MaterialIdOfName(const String& name)
{
    const std::string text = ToUtf8(name);
    Int32 material = -1;
    if (!text.starts_with(kMaterial)) return -1;
    return parseWholeNumber(std::string_view(text).substr(kMaterial.size()), material) ? material : -1;
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

Int32 matidFromMaterialName(BaseObject& object, BaseTag& selectionTag)
{
    const String restriction = stringParameter(selectionTag, TEXTURETAG_RESTRICTION);
    if (!object.IsInstanceOf(kPlantObjectId)) return MaterialIdOfName(restriction);
    return MaterialIdOfName(withoutPrefix(restriction, object.GetName() + String(kSeparator)));
}

Int32 MaterialIdOfTag(BaseObject* object, BaseTag* tag)
{
    if (!object || !tag) return -1;

    const String restriction = stringParameter(*tag, TEXTURETAG_RESTRICTION);
    return MaterialIdOfName(withoutPrefix(restriction, WithPrefix(SelectionPrefix(object), String())));
}
