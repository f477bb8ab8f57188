// The globals of one plug-in module and what reads them: compiled into every module, so that each has its own.
#include "c4d_resource.h"
#include "operatingsystem.h"

namespace {

// Takes the first "#" of `text`. False if there is none.
bool fillPlaceholder(String& text, const String& value)
{
    Int32 position = 0;
    if (!text.FindFirst(String("#"), &position)) return false;
    text.Delete(position, 1);
    text.Insert(position, value);
    return true;
}

} // namespace

OperatingSystem* t_C4DOS = nullptr;
GeResource resource;

void FreeResource()
{
    resource.Free();
}

const String& GeLoadString(Int32 id)
{
    return resource.LoadString(id);
}

String GeLoadString(Int32 id, const String& p1)
{
    String text = GeLoadString(id);
    return fillPlaceholder(text, p1) ? text : String();
}

String GeLoadString(Int32 id, const String& p1, const String& p2)
{
    String text = GeLoadString(id, p1);
    return fillPlaceholder(text, p2) ? text : String();
}

String GeLoadString(Int32 id, const String& p1, const String& p2, const String& p3)
{
    String text = GeLoadString(id, p1, p2);
    return fillPlaceholder(text, p3) ? text : String();
}
