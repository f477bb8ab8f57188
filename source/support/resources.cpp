#include "support/resources.h"

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

} // namespace

String LoadText(Int32 id)
{
    return g_Resource.LoadString(id);
}

String LoadText(Int32 id, const String& first)
{
    String text = LoadText(id);
    Int from = 0;
    fillPlace(text, from, first);
    return text;
}

String LoadText(Int32 id, const String& first, const String& second)
{
    String text = LoadText(id);
    Int from = 0;
    fillPlace(text, from, first);
    fillPlace(text, from, second);
    return text;
}
