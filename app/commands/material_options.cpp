#include "commands/material_options.h"

#include "commands/command.h"

#include <algorithm>

namespace verdanth {
namespace {

constexpr const char* kAll = "all";

std::string joined(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : "|") + word;
    return text;
}

int32_t rendererOf(const std::string& name)
{
    return static_cast<int32_t>(std::ranges::find(kRendererNames, name) - std::begin(kRendererNames));
}

} // namespace

void AddQualityOption(CLI::App& command, MaterialQuality& quality)
{
    AddChoice<MaterialQuality>(
        command, "--quality", quality,
        {{"high", MaterialQuality::High}, {"medium", MaterialQuality::Medium}, {"low", MaterialQuality::Low}},
        "Which of a material's pictures are used: all, those of the main things, or none");
}

void AddBacksOption(CLI::App& command, BackForm& backs)
{
    AddChoice<BackForm>(command, "--backs", backs, {{"shared", BackForm::Shared}, {"own", BackForm::Own}},
                        "Backs that look other than their fronts, in glTF: like these, or as surfaces of their own");
}

CLI::Option* AddRendererOption(CLI::App& command, std::optional<int32_t>& renderer, const std::string& description)
{
    const std::vector<std::string> names(std::begin(kRendererNames), std::end(kRendererNames));
    return command
        .add_option_function<std::string>(
            "--renderer", [&renderer](const std::string& name) { renderer = rendererOf(name); }, description)
        ->transform(CLI::IsMember(names, CLI::ignore_case).description(""))
        ->type_name(joined(names));
}

void AddRendererListOption(CLI::App& command, std::vector<int32_t>& renderers)
{
    std::vector<std::string> names(std::begin(kRendererNames), std::end(kRendererNames));
    names.insert(names.begin() + 1, kAll);
    const auto take = [&renderers](const std::vector<std::string>& words) {
        renderers.clear();
        for (const std::string& word : words) {
            if (word != kAll) {
                renderers.push_back(rendererOf(word));
                continue;
            }
            for (size_t i = kSceneRenderer + 1; i < std::size(kRendererNames); ++i)
                renderers.push_back(static_cast<int32_t>(i));
        }
    };
    renderers = {kSceneRenderer};
    command
        .add_option_function<std::vector<std::string>>("--renderer", take,
                                                       "For which renderers; the scene's own is one")
        ->delimiter(',')
        ->expected(1, static_cast<int>(std::size(kRendererNames)))
        ->transform(CLI::IsMember(names, CLI::ignore_case).description(""))
        ->default_str(names.front())
        ->type_name(joined(names));
}

} // namespace verdanth
