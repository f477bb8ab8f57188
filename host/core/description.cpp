#include "core/description.h"

#include "c4d_basetime.h"
#include "core/string_access.h"

#include <algorithm>

namespace host {
namespace {

// Where a walk over a description stands.
struct BrowseCursor {
    size_t next = 0;
};

// Custom types have large numbers of their own, but for the few small ones that the host gave to its own kinds.
bool isCustomType(Int32 dataType)
{
    return dataType >= DA_CUSTOMDATATYPE && dataType != DTYPE_BOOL && dataType != DTYPE_NORMAL;
}

} // namespace

const DescribedParameter* DescriptionData::find(Int32 id) const
{
    const auto found = places.find(id);
    return found == places.end() ? nullptr : &parameters[found->second];
}

DescribedParameter* DescriptionData::find(Int32 id)
{
    const auto found = places.find(id);
    return found == places.end() ? nullptr : &parameters[found->second];
}

DescribedParameter& DescriptionData::enter(const DescID& id)
{
    const auto [place, isNew] = places.emplace(id[0].id, parameters.size());
    if (isNew) parameters.push_back({id, {}, {}});
    return parameters[place->second];
}

Int32 StaticDescription::typeOf(Int32 id) const
{
    const DescribedParameter* parameter = find(id);
    return parameter ? parameter->id[0].dtype : DTYPE_NONE;
}

GeData StaticDescription::defaultOf(Int32 id) const
{
    const DescribedParameter* parameter = find(id);
    if (!parameter || parameter->id[0].dtype == DTYPE_GROUP) return {};
    const GeData* told = parameter->container.GetDataPointer(DESC_DEFAULT);
    return told ? *told : EmptyValue(parameter->id[0].dtype);
}

GeData EmptyValue(Int32 dataType)
{
    switch (dataType) {
    case DTYPE_BOOL:
    case DTYPE_LONG: return GeData(Int32{0});
    case DTYPE_REAL: return GeData(0.0);
    case DTYPE_VECTOR:
    case DTYPE_COLOR:
    case DTYPE_NORMAL: return GeData(Vector());
    case DTYPE_MATRIX: return GeData(Matrix());
    case DTYPE_TIME: return GeData(BaseTime());
    case DTYPE_STRING:
    case DTYPE_STATICTEXT: return GeData(String());
    case DTYPE_FILENAME: return GeData(Filename());
    case DTYPE_BASELISTLINK: return GeData(static_cast<BaseList2D*>(nullptr));
    default: return isCustomType(dataType) ? GeData(dataType, DEFAULTVALUE) : GeData();
    }
}

} // namespace host

Description::Description() : data(std::make_unique<host::DescriptionData>())
{
}

Description::~Description() = default;

Description* Description::Alloc()
{
    return new (std::nothrow) Description();
}

void Description::Free(Description*& description)
{
    delete description;
    description = nullptr;
}

Bool Description::LoadDescription(Int32 id)
{
    const host::StaticDescription* found = host::FindDescription(id);
    if (!found) return false;
    const std::optional<DescID> single = data->single;
    *data = found->data;
    data->single = single;
    return true;
}

Bool Description::LoadDescription(const String& id)
{
    const host::StaticDescription* found = host::FindDescription(host::Utf8Of(id));
    if (!found) return false;
    const std::optional<DescID> single = data->single;
    *data = found->data;
    data->single = single;
    return true;
}

BaseContainer* Description::GetParameterI(const DescID& id, AtomArray*)
{
    host::DescribedParameter* parameter = id.GetDepth() == 1 ? data->find(id[0].id) : nullptr;
    return parameter ? &parameter->container : nullptr;
}

const BaseContainer* Description::GetParameter(const DescID& id, BaseContainer& temp, AtomArray*) const
{
    const host::DescribedParameter* parameter = id.GetDepth() == 1 ? std::as_const(*data).find(id[0].id) : nullptr;
    if (!parameter) return nullptr;
    temp = parameter->container;
    return &parameter->container;
}

Bool Description::SetParameter(const DescID& id, const BaseContainer& param, const DescID& groupid)
{
    if (id.GetDepth() != 1) return false;
    host::DescribedParameter& parameter = data->enter(id);
    parameter.id = id;
    parameter.container = param;
    parameter.group = groupid;
    return true;
}

const DescID* Description::GetSingleDescID()
{
    return data->single ? &*data->single : nullptr;
}

void* Description::BrowseInit()
{
    return new (std::nothrow) host::BrowseCursor();
}

Bool Description::GetNext(void* handle, const BaseContainer** bc, DescID& id, DescID& groupid)
{
    auto* cursor = static_cast<host::BrowseCursor*>(handle);
    if (!cursor || cursor->next >= data->parameters.size()) return false;
    const host::DescribedParameter& parameter = data->parameters[cursor->next++];
    if (bc) *bc = &parameter.container;
    id = parameter.id;
    groupid = parameter.group;
    return true;
}

void Description::BrowseFree(void*& handle)
{
    delete static_cast<host::BrowseCursor*>(handle);
    handle = nullptr;
}
