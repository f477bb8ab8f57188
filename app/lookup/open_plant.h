// From what the user names to a plant in memory.
#pragma once

#include "vdt/cache/cache.h"
#include "vdt/messages/message_handler.h"

#include <string>
#include <string_view>

namespace verdanth {

class Console;

/// An open model file. While it lives, its model stays.
struct OpenPlant {
    std::string file;
    vdt::Cache cache{nullptr};
    vdt::ModelHandle handle; // on the default variant; declared behind the cache, so that it goes first

    const vdt::Model& model() const { return *handle.model(); }
};

/// Opens the file or species that `request` means. False, with the error told, if there is none, it is unusable or
/// the user cancels.
bool OpenRequestedPlant(const std::string& request, const std::string& libraryFolder, OpenPlant& plant,
                        Console& console);

/// The position of the variant that `wanted` names: by name, by label, or by position, counted from 0. Empty for the
/// default variant. kNone, with the error told, if there is none.
uint64_t FindVariant(const vdt::Model& model, const std::string& wanted, vdt::MessageHandler& messages);

/// The name of the season that `wanted` means: a qualifier of the variant by name or label; empty for the variant's
/// default. False, with the error told, if there is none such.
bool FindSeason(const vdt::ModelVariant& variant, const std::string& wanted, std::string& season,
                vdt::MessageHandler& messages);

/// The season in which the variant is shown if nobody asks for another; empty if it has none.
std::string DefaultSeason(const vdt::ModelVariant& variant);

/// The variant's name, or "variant N" if it has none.
std::string VariantTitle(const vdt::Model& model, uint64_t variant);

/// How many metres a model unit is.
double MetersPerUnit(int32_t unit);

/// "centimeters"
std::string_view UnitName(int32_t unit);

} // namespace verdanth
