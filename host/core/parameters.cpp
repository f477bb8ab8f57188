#include "core/parameters.h"

#include "c4d_nodedata.h"
#include "core/description.h"
#include "core/node_class.h"

namespace host {
namespace {

bool isNumber(const GeData& value)
{
    const Int32 type = value.GetType();
    return type == DA_LONG || type == DA_LLONG || type == DA_REAL;
}

// A limit for one component; nothing if the description has none.
const Float* limitOf(const BaseContainer& described, Int32 key, Int32 component, Float& store)
{
    const GeData* limit = described.GetDataPointer(key);
    if (!limit || limit->GetType() == DA_NIL) return nullptr;
    store = limit->GetType() == DA_VECTOR ? limit->GetVector()[component] : limit->GetFloat();
    return &store;
}

// Comparisons that are false for what is no number leave it alone.
Float clamped(const BaseContainer& described, Int32 component, Float value)
{
    Float store = 0;
    const Float* least = limitOf(described, DESC_MIN, component, store);
    if (least && value < *least) value = *least;
    const Float* most = limitOf(described, DESC_MAX, component, store);
    if (most && value > *most) value = *most;
    return value;
}

// The value without regard to the plug-in: members, container, description. Null without a registered description.
bool wholeValue(const NodeCore& node, Int32 id, GeData& whole)
{
    if (node.GetBuiltIn(id, whole)) return true;
    const GeData* stored = node.container.GetDataPointer(id);
    if (stored && stored->GetType() != DA_NIL) {
        whole = *stored;
        return true;
    }
    const StaticDescription* description = FindDescription(node.Type());
    if (!description || !description->find(id)) return false;
    whole = description->defaultOf(id);
    return true;
}

// What is going to be stored: `value` itself, or the present whole with `value` in a part of it.
bool composeWhole(const NodeCore& node, const DescID& id, const GeData& value, DESCFLAGS_SET flags, GeData& whole)
{
    if (id.GetDepth() == 1)
        whole = value;
    else if (!wholeValue(node, id[0].id, whole) || !SetPart(whole, id << 1, value))
        return false;

    const StaticDescription* description = FindDescription(node.Type());
    const DescribedParameter* parameter = description ? description->find(id[0].id) : nullptr;
    if (!parameter) return true;
    if (!ConvertTo(description->typeOf(id[0].id), whole)) return false;
    if (!(flags & DESCFLAGS_SET_DONTCHECKMINMAX)) ClampTo(parameter->container, whole);
    return true;
}

// False: no such value can be stored there. An equal value is no change.
bool store(NodeCore& node, Int32 id, const GeData& whole, bool always)
{
    GeData present;
    if (node.GetBuiltIn(id, present)) {
        GeData fitting = whole;
        const Int32 type = present.GetType();
        const bool fits = isNumber(present) ? isNumber(whole) : whole.GetType() == type;
        if (!fits) return false;
        if (isNumber(present)) ConvertTo(type == DA_REAL ? DTYPE_REAL : DTYPE_LONG, fitting);
        return (!always && present == fitting) || node.SetBuiltIn(id, fitting);
    }
    const GeData* stored = node.container.GetDataPointer(id);
    if (always || !stored || *stored != whole) node.container.SetData(id, whole);
    return true;
}

bool setByPlugin(NodeCore& node, const DescID& id, const GeData& value, DESCFLAGS_SET flags)
{
    if (!node.data) return false;
    DESCFLAGS_SET answer = flags & ~DESCFLAGS_SET_PARAM_SET;
    node.data->SetDParameter(node.As<GeListNode>(), id, value, answer);
    if (!(answer & DESCFLAGS_SET_PARAM_SET)) return false;
    node.Raise(DIRTYFLAGS_DATA);
    return true;
}

} // namespace

bool GetPart(const GeData& whole, const DescID& part, GeData& value)
{
    if (part.GetDepth() == 0) {
        value = whole;
        return true;
    }
    const Int32 id = part[0].id;
    if (whole.GetType() == DA_VECTOR) {
        if (id < kVectorX || id > kVectorZ || part.GetDepth() > 1) return false;
        value = GeData(whole.GetVector()[id - kVectorX]);
        return true;
    }
    if (const BaseContainer* entries = whole.GetContainer()) {
        const GeData* entry = entries->GetDataPointer(id);
        return entry && GetPart(*entry, part << 1, value);
    }
    CustomDataTypeClass* type = FindCustomDataType(whole.GetType());
    const CustomDataType* custom = type ? whole.GetCustomDataType(whole.GetType()) : nullptr;
    if (!custom) return false;
    GeData answer;
    DESCFLAGS_GET flags = DESCFLAGS_GET_0;
    type->GetParameter(custom, part, answer, flags);
    if (!(flags & DESCFLAGS_GET_PARAM_GET)) return false;
    value = answer;
    return true;
}

bool SetPart(GeData& whole, const DescID& part, const GeData& value)
{
    if (part.GetDepth() == 0) {
        whole = value;
        return true;
    }
    const Int32 id = part[0].id;
    if (whole.GetType() == DA_VECTOR) {
        if (id < kVectorX || id > kVectorZ || part.GetDepth() > 1 || !isNumber(value)) return false;
        Vector changed = whole.GetVector();
        changed[id - kVectorX] = value.GetFloat();
        whole = GeData(changed);
        return true;
    }
    if (BaseContainer* entries = whole.GetContainer()) {
        GeData entry = entries->GetData(id);
        if (!SetPart(entry, part << 1, value)) return false;
        entries->SetData(id, entry);
        return true;
    }
    CustomDataTypeClass* type = FindCustomDataType(whole.GetType());
    CustomDataType* custom = type ? whole.GetCustomDataType(whole.GetType()) : nullptr;
    if (!custom) return false;
    DESCFLAGS_SET flags = DESCFLAGS_SET_0;
    type->SetDParameter(custom, part, value, flags);
    return (flags & DESCFLAGS_SET_PARAM_SET) != 0;
}

bool ConvertTo(Int32 dataType, GeData& value)
{
    switch (dataType) {
    case DTYPE_BOOL:
    case DTYPE_LONG:
    case DTYPE_REAL:
        if (!isNumber(value)) return false;
        if (dataType == DTYPE_REAL)
            value = GeData(value.GetFloat());
        else if (dataType == DTYPE_LONG)
            value = GeData(value.GetInt32());
        else
            value = GeData(Int32(value.GetFloat() != 0));
        return true;
    case DTYPE_TIME:
        if (isNumber(value)) value = GeData(BaseTime(value.GetFloat()));
        return value.GetType() == DA_TIME;
    case DTYPE_COLOR:
    case DTYPE_VECTOR:
    case DTYPE_NORMAL: return value.GetType() == DA_VECTOR;
    case DTYPE_MATRIX: return value.GetType() == DA_MATRIX;
    case DTYPE_STRING:
    case DTYPE_STATICTEXT: return value.GetType() == DA_STRING;
    case DTYPE_FILENAME:
        if (value.GetType() == DA_STRING) value = GeData(Filename(value.GetString()));
        return value.GetType() == DA_FILENAME;
    case DTYPE_TEXTURE: return value.GetType() == DA_STRING || value.GetType() == DA_FILENAME;
    case DTYPE_BASELISTLINK:
        if (value.GetType() == DA_NIL) value = GeData(static_cast<BaseList2D*>(nullptr));
        return value.GetType() == DA_ALIASLINK;
    case DTYPE_GROUP:
    case DTYPE_BUTTON:
    case DTYPE_SEPARATOR: return false;
    default: return dataType <= DA_CUSTOMDATATYPE || value.GetType() == dataType;
    }
}

void ClampTo(const BaseContainer& described, GeData& value)
{
    switch (value.GetType()) {
    case DA_LONG: {
        const Float present = value.GetInt32();
        const Float limited = clamped(described, 0, present);
        if (limited != present) value = GeData(GeData(limited).GetInt32());
        break;
    }
    case DA_REAL: value = GeData(clamped(described, 0, value.GetFloat())); break;
    case DA_VECTOR: {
        Vector limited = value.GetVector();
        for (Int32 i = 0; i < 3; ++i) limited[i] = clamped(described, i, limited[i]);
        value = GeData(limited);
        break;
    }
    default: break;
    }
}

} // namespace host

using namespace host;

Bool C4DAtom::GetParameter(const DescID& id, GeData& t_data, DESCFLAGS_GET flags)
{
    if (id.GetDepth() == 0) return false;
    if (core->data) {
        GeData answer;
        DESCFLAGS_GET answered = flags & ~DESCFLAGS_GET_PARAM_GET;
        core->data->GetDParameter(core->As<GeListNode>(), id, answer, answered);
        if (answered & DESCFLAGS_GET_PARAM_GET) {
            t_data = answer;
            return true;
        }
    }
    GeData whole;
    return wholeValue(*core, id[0].id, whole) && GetPart(whole, id << 1, t_data);
}

Bool C4DAtom::SetParameter(const DescID& id, const GeData& t_data, DESCFLAGS_SET flags)
{
    if (id.GetDepth() == 0) return false;
    if (!setByPlugin(*core, id, t_data, flags)) {
        GeData whole;
        const bool always = (flags & DESCFLAGS_SET_FORCESET) != 0;
        if (!composeWhole(*core, id, t_data, flags, whole) || !store(*core, id[0].id, whole, always)) return false;
    }

    // Also for an equal value and for the host's own calls: nodes take what depends on a parameter from this message.
    DescriptionPostSetValue set;
    set.descid = &id;
    Message(MSG_DESCRIPTION_POSTSETPARAMETER, &set);
    return true;
}

Bool C4DAtom::GetDescription(Description* description, DESCFLAGS_DESC flags)
{
    if (!description) return false;
    DESCFLAGS_DESC answered = flags & ~DESCFLAGS_DESC_LOADED;
    // Plug-ins may say false although they loaded one; the flag alone counts.
    if (core->data) core->data->GetDDescription(core->As<GeListNode>(), description, answered);
    return (answered & DESCFLAGS_DESC_LOADED) || description->LoadDescription(core->Type());
}

Bool C4DAtom::GetEnabling(const DescID& id, const GeData& t_data, DESCFLAGS_ENABLE flags, const BaseContainer* itemdesc)
{
    return !core->data || core->data->GetDEnabling(core->As<GeListNode>(), id, t_data, flags, itemdesc);
}
