// The options by which a command lets its user choose for which renderer, and how well, materials are made.
#pragma once

#include "export/export_scene.h"
#include "host/renderer_materials.h"

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

namespace verdanth {

/// Adds --quality; high is the default.
void AddQualityOption(CLI::App& command, MaterialQuality& quality);

/// Adds --backs; one look for both sides is the default.
void AddBacksOption(CLI::App& command, BackForm& backs);

/// Adds --renderer. Without it no renderer's materials are asked for.
CLI::Option* AddRendererOption(CLI::App& command, std::optional<int32_t>& renderer, const std::string& description);

/// Adds --renderer for a list, or "all" that there are; the scene's own by default.
void AddRendererListOption(CLI::App& command, std::vector<int32_t>& renderers);

} // namespace verdanth
