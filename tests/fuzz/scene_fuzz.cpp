#include "core/application.h"
#include "core/node_class.h"
#include "core/scene_file.h"
#include "fuzz/entries.h"
#include "support/note_plugin.h"

#include <algorithm>
#include <span>

namespace vdt::test {
namespace {

using namespace ::host;

constexpr size_t kSmallestNode = 40; // bytes that a node has at least in a file
constexpr size_t kMostLines = 51;

// The host that the inputs are read in: the test's, or one of the fuzzer's own.
void startHost()
{
    static std::unique_ptr<Application> own;
    if (!Application::running())
        own = std::make_unique<Application>(ApplicationOptions{.console = [](std::string_view) {}});
    if (!FindCustomDataType(::host::test::kNoteType)) ::host::test::RegisterNotes();
}

struct Scene {
    Scene() : document(BaseDocument::Alloc()) {}
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;
    ~Scene() { BaseDocument::Free(document); }

    bool read(std::span<const uint8_t> bytes) { return ReadScene(bytes, "input", *CoreOf(document), report); }
    std::vector<uint8_t> bytes()
    {
        std::string ignored;
        return SceneBytes(*CoreOf(document), ignored);
    }
    size_t nodeCount() const
    {
        size_t count = 0;
        VisitBelow(*CoreOf(document), [&count](const NodeCore&) { ++count; });
        return count;
    }

    BaseDocument* document;
    std::string report;
};

} // namespace

std::string FuzzScene(std::string_view input)
{
    startHost();
    Scene scene;
    const size_t freshCount = scene.nodeCount();
    const bool isScene = scene.read({reinterpret_cast<const uint8_t*>(input.data()), input.size()});
    if (static_cast<size_t>(std::ranges::count(scene.report, '\n')) >= kMostLines) return "the report has no end";
    if (!isScene && scene.report.empty()) return "no scene, and no word about it";
    if (!isScene) return scene.nodeCount() == freshCount ? "" : "nodes came from what is no scene";
    if (scene.nodeCount() > freshCount + input.size() / kSmallestNode) return "more nodes than the input can hold";

    // What was kept is a sound scene of its own.
    const std::vector<uint8_t> saved = scene.bytes();
    Scene again;
    if (!again.read(saved)) return "what was saved cannot be read";
    if (!again.report.empty()) return "what was saved is damaged: " + again.report;
    return again.bytes() == saved ? "" : "saving again gives another scene";
}

} // namespace vdt::test
