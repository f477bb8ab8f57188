// Which plant an object shows: a model file, one of its variants and one of the variant's qualifiers.
//
// A scene keeps the file and the two chosen names; all else follows from the model and comes back with Update. While
// the file cannot be found the choice stays as it is, so that the scene finds its plant again elsewhere. Variants and
// qualifiers may lack names or share them; the two indices tell which of those is meant as long as the value lives.
#pragma once

#include "c4d.h"
#include "vdt/cache/cache.h"

#include <cstdint>
#include <vector>

struct PlantChoice {
    String name;
    String label;
    Filename file; // with the variant's geometry
};

struct QualifierChoice {
    String name;
    String label;
};

class VerdanthSelectionData : public iCustomDataType<VerdanthSelectionData> {
public:
    /// Forgets the choice and all that follows from it; keeps `file`.
    void Clear();

    /// Makes the lists true, and the choice if the model does not have it. False if there is no such model file; the
    /// chosen names stay then unless `file` is empty. `shown`, unless null, is told the chosen variant.
    Bool Update(BaseDocument* document, vdt::ModelHandle* shown = nullptr);

    /// Where the file is: beside the document if it is relative. With `search` a file that is not there is looked for
    /// in the plant library and in the document's folder. Existing or not; empty if `file` is.
    Filename ResolvePath(BaseDocument* document, Bool search) const;

    /// -1 if the choice is not in the list.
    Int32 GetPlantIndex() const;
    Int32 GetQualifierIndex() const;
    /// An index outside the list takes the choice back. The lists stay as they are.
    void SetPlantIndex(Int32 index);
    void SetQualifierIndex(Int32 index);

    Filename file; // possibly relative
    String plantName;
    String qualifierName;

    std::vector<PlantChoice> plants;
    std::vector<QualifierChoice> qualifiers; // of the chosen variant
    String speciesName;
    String label;
    Int32 plantIndex = NOTOK; // which of several entries with the chosen name
    Int32 qualifierIndex = NOTOK;

private:
    void clearLists();
};

/// True for the empty path and for network paths too.
Bool IsRelativePath(const Filename& path);

/// Looks for a model by its file name in the plant library, in the folder of the species.
Bool FindInLibrary(const Filename& path, Filename& found);

/// The variant's label, or its number.
String VariantLabel(const vdt::ModelVariant& variant, Int32 index);

/// The qualifier's label, or its name.
String QualifierLabel(const vdt::Qualifier& qualifier);

/// Reads a stub variant that does not tell its qualifiers. A variant that is known to have none is not read again.
void LoadMissingQualifiers(const vdt::ModelHandle& model);

/// The library's index: all ones for none.
inline uint64_t ToVariantIndex(Int32 index)
{
    return index < 0 ? vdt::kNone : static_cast<uint64_t>(index);
}
