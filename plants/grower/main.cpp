// verdanth-grow DIRECTORY: grows the default plant library into the directory.
#include "grower/plant_library.h"

#include <cstdio>
#include <future>

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

    // Species do not touch each other's files.
    ErrorPrinter messages;
    std::vector<std::future<bool>> growing;
    for (const grower::SpeciesRecipe& recipe : grower::DefaultSpecies()) {
        for (const std::string& fault : grower::RecipeFaults(recipe)) messages.error(recipe.name + ": " + fault);
        growing.push_back(std::async(std::launch::async, [&recipe, &messages, directory = std::string(arguments[1])] {
            return grower::WriteSpecies(recipe, directory, messages);
        }));
    }
    bool isGrown = true;
    for (std::future<bool>& species : growing) isGrown &= species.get();
    return isGrown ? 0 : 1;
}
