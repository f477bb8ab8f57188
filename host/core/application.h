// The host as a whole, from start to end: what it was told at the start, the parts that it is made of, its main thread
// and its console.
//
// One application lives at a time; every function of the API works on it. The subsystems (registrations, documents,
// settings, string tables, ...) are parts: each is made when it is first asked for and lives until the application
// ends, so a process may start and end applications again and again. The thread that makes the application is its main
// thread.
#pragma once

#include "c4d.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <typeindex>
#include <typeinfo>
#include <utility>
#include <vector>

namespace host {

class Dialogs;

/// What the host is told when it starts. Texts are UTF-8.
struct ApplicationOptions {
    std::filesystem::path settingsFile = {};              // empty: settings last as long as the application
    std::string language = "US";                          // an extension of the list of languages
    bool userInterface = false;                           // without one no events are sent and loading asks nobody
    std::function<void(std::string_view)> console = {};   // takes a line, on the main thread; empty: the error stream
    std::vector<std::filesystem::path> texturePaths = {}; // searched for textures, in this order
    std::map<char, std::filesystem::path> drives = {};    // 'C' to the folder that stands for "C:\"
    Int32 apiLevel = API_VERSION;                         // what plug-ins are told
    Dialogs* dialogs = nullptr;                           // answers questions; null: every question is refused
};

/// The steps of the end, in order.
enum class Ending {
    Announcement,  // plug-ins hear that the program is about to end
    Dialogs,       // all windows close
    Activity,      // plug-ins hear that work is over
    Documents,     // all nodes go
    Modules,       // plug-ins end
    Settings,      // the settings are stored
    Registrations, // what plug-ins registered is dropped
};

/// The state of one subsystem for the time of one application.
class ApplicationPart {
public:
    ApplicationPart() = default;
    ApplicationPart(const ApplicationPart&) = delete;
    ApplicationPart& operator=(const ApplicationPart&) = delete;
    virtual ~ApplicationPart() = default;

    /// Comes once a step, to the part that was made last first. All parts live until the last step is over.
    virtual void end(Ending) {}
};

class Application {
public:
    /// Starts the host. No other application may be running.
    explicit Application(ApplicationOptions told = {});
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    /// Goes through the steps of the end, then frees the parts, last made first.
    ~Application();

    static bool running();
    /// The running application.
    static Application& current();

    const ApplicationOptions& options() const { return told; }

    /// The one `Part` of this application, made (by its default constructor) if this is the first time. Any thread.
    template <class Part> Part& part()
    {
        const std::lock_guard guard(partsLock);
        ApplicationPart*& known = partOfType[typeid(Part)];
        if (!known) known = keep(std::make_unique<Part>());
        return static_cast<Part&>(*known);
    }

    bool onMainThread() const { return std::this_thread::get_id() == mainThread; }
    /// Runs `task` on the main thread: at once if this is it, else when the main thread next turns to its queue. Tasks
    /// of one thread run in the order of the calls. Tasks touch no nodes.
    void runOnMain(std::function<void()> task);
    /// Runs what other threads left. Main thread.
    void runTasks();

    /// A line to the console. Any thread; the lines of one thread stay in order.
    void print(std::string_view line);

private:
    ApplicationPart* keep(std::unique_ptr<ApplicationPart> part);

    ApplicationOptions told;
    std::thread::id mainThread;

    std::recursive_mutex partsLock; // a part's constructor may ask for others
    std::map<std::type_index, ApplicationPart*> partOfType;
    std::vector<std::unique_ptr<ApplicationPart>> parts; // in order of their making

    std::mutex tasksLock;
    std::vector<std::function<void()>> tasks;
};

/// Short for Application::current().part<Part>().
template <class Part> Part& PartOf()
{
    return Application::current().part<Part>();
}

} // namespace host
