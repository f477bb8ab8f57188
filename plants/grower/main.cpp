// verdanth-grow DIRECTORY: grows the default plant library into the directory.
#include "grower/plant_library.h"

#include <chrono>
#include <cstdio>

namespace {

class ErrorPrinter final : public vdt::MessageHandler {
public:
    void endProgress() override {}
    void beginProgress(std::string_view) override {}
    void progress(float) override {}
    void message(std::string_view text) override { print(text); }
    void warning(std::string_view text) override { print(text); }
    void error(std::string_view text) override { print(text); }
    void debug(std::string_view) override {}
    bool isCancelled() override { return false; }

private:
    static void print(std::string_view text)
    {
        std::fprintf(stderr, "verdanth-grow: %.*s\n", static_cast<int>(text.size()), text.data());
    }
};

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2) {
        std::fprintf(stderr, "usage: verdanth-grow DIRECTORY\n");
        return 2;
    }

    ErrorPrinter messages;
    for (const grower::SpeciesRecipe& recipe : grower::DefaultSpecies()) {
        const auto begin = std::chrono::steady_clock::now();
        for (const std::string& fault : grower::RecipeFaults(recipe)) messages.error(recipe.name + ": " + fault);
        if (!grower::WriteSpecies(recipe, arguments[1], messages)) return 1;
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
        std::printf("%s, %.1f s\n", recipe.name.c_str(), taken.count());
    }
    return 0;
}
