#include "support/resources.h"

#include <initializer_list>

namespace {

// Replaces the first "#" from `from` on, and moves `from` behind what was put there.
void fillPlace(String& text, Int& from, const String& parameter)
{
    Int32 place = 0;
    if (!text.FindFirst("#", &place, from)) return;
    text.Delete(place, 1);
    text.Insert(place, parameter);
    from = place + parameter.GetLength();
}

String filled(Int32 id, std::initializer_list<const String*> parameters)
{
    String text = LoadText(id);
    Int from = 0;
    for (const String* parameter : parameters) fillPlace(text, from, *parameter);
    return text;
}

} // namespace

String LoadText(Int32 id)
{
    return g_Resource.LoadString(id);
}

String LoadText(Int32 id, const String& first)
{
    return filled(id, {&first});
}

String LoadText(Int32 id, const String& first, const String& second)
{
    return filled(id, {&first, &second});
}

String LoadText(Int32 id, const String& first, const String& second, const String& third)
{
    return filled(id, {&first, &second, &third});
}
