#include "selection/selection_data_type.h"

#include "dvdtselection.h"
#include "lib_net.h"
#include "selection/models_being_read.h"
#include "support/plugin_ids.h"

namespace {

const VerdanthSelectionData& selectionIn(const CustomDataType* data)
{
    return *static_cast<const VerdanthSelectionData*>(data);
}

VerdanthSelectionData& selectionIn(CustomDataType* data)
{
    return *static_cast<VerdanthSelectionData*>(data);
}

Int32 compareIndices(Int32 first, Int32 second)
{
    return first < second ? -1 : first > second ? 1 : 0;
}

// On a render client files come from the server on demand. True if `file` stands elsewhere now.
Bool fetchFromServer(Filename& file)
{
    NetRenderService* service = GetGlobalNetRenderService();
    if (!service || !file.Content()) return false;
    Filename found;
    NetRenderGetFileFromServer(service, file, found);
    if (!found.Content()) return false;
    file = found;
    return true;
}

} // namespace

Int32 VerdanthSelectionDataType::GetId()
{
    return kSelectionDataTypeId;
}

CustomDataType* VerdanthSelectionDataType::AllocData()
{
    return VerdanthSelectionData::Alloc();
}

void VerdanthSelectionDataType::FreeData(CustomDataType* data)
{
    VerdanthSelectionData* selection = static_cast<VerdanthSelectionData*>(data);
    VerdanthSelectionData::Free(selection);
}

Bool VerdanthSelectionDataType::CopyData(const CustomDataType* source, CustomDataType* destination,
                                         AliasTrans* /*trans*/)
{
    selectionIn(destination) = selectionIn(source);
    return true;
}

Int32 VerdanthSelectionDataType::Compare(const CustomDataType* first, const CustomDataType* second)
{
    const VerdanthSelectionData& a = selectionIn(first);
    const VerdanthSelectionData& b = selectionIn(second);
    if (a.file != b.file) return -1;
    const Int32 order = compareIndices(a.GetPlantIndex(), b.GetPlantIndex());
    return order != 0 ? order : compareIndices(a.GetQualifierIndex(), b.GetQualifierIndex());
}

Bool VerdanthSelectionDataType::WriteData(const CustomDataType* data, HyperFile* file)
{
    const VerdanthSelectionData& selection = selectionIn(data);
    return file->WriteFilename(selection.file) && file->WriteString(selection.plantName) &&
           file->WriteString(selection.qualifierName);
}

Bool VerdanthSelectionDataType::ReadData(CustomDataType* data, HyperFile* file, Int32 /*level*/)
{
    VerdanthSelectionData& selection = selectionIn(data);
    if (file->ReadFilename(&selection.file) && file->ReadString(&selection.plantName))
        file->ReadString(&selection.qualifierName);
    selection.plantIndex = selection.qualifierIndex = 0; // what stands in a scene was chosen, also without a name
    if (!ModelsBeingRead::Update(selection) && fetchFromServer(selection.file)) ModelsBeingRead::Update(selection);
    return true; // what could be read counts; the scene goes on
}

const Char* VerdanthSelectionDataType::GetResourceSym()
{
    return "VERDANTHSELECTION";
}

CustomProperty* VerdanthSelectionDataType::GetProperties()
{
    static CustomProperty none[] = {{CUSTOMTYPE_END, 0, ""}};
    return none;
}

void VerdanthSelectionDataType::GetDefaultProperties(BaseContainer& data)
{
    data.SetInt32(DESC_ANIMATE, DESC_ANIMATE_ON);
    data.SetBool(DESC_HIDE, false);
    data.SetBool(DESC_REMOVEABLE, false);
    data.SetInt32(DESC_CUSTOMGUI, kSelectionGuiId);
}

Bool VerdanthSelectionDataType::GetParameter(const CustomDataType* data, const DescID& id, GeData& value,
                                             DESCFLAGS_GET& flags)
{
    const VerdanthSelectionData& selection = selectionIn(data);
    switch (id[0].id) {
    case VDTSELECTION_FILE: value = GeData(selection.file); break;
    case VDTSELECTION_VARIANT: value = GeData(selection.GetPlantIndex()); break;
    case VDTSELECTION_QUALIFIER: value = GeData(selection.GetQualifierIndex()); break;
    default: return CustomDataTypeClass::GetParameter(data, id, value, flags);
    }
    flags |= DESCFLAGS_GET_PARAM_GET;
    return true;
}

// The lists are not made anew for another variant: who sets several parts ends with the value as a whole.
Bool VerdanthSelectionDataType::SetDParameter(CustomDataType* data, const DescID& id, const GeData& value,
                                              DESCFLAGS_SET& flags)
{
    VerdanthSelectionData& selection = selectionIn(data);
    switch (id[0].id) {
    case VDTSELECTION_FILE:
        selection.file = value.GetFilename();
        selection.Update(GetActiveDocument());
        break;
    case VDTSELECTION_VARIANT:
        if (value.GetInt32() >= 0) selection.SetPlantIndex(value.GetInt32());
        break;
    case VDTSELECTION_QUALIFIER:
        if (value.GetInt32() >= 0) selection.SetQualifierIndex(value.GetInt32());
        break;
    default: return CustomDataTypeClass::SetDParameter(data, id, value, flags);
    }
    flags |= DESCFLAGS_SET_PARAM_SET;
    return true;
}
