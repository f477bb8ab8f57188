#include "core/application.h"

#include "core/worker.h"

#include <cassert>
#include <iostream>

namespace host {
namespace {

Application* runningApplication = nullptr;

} // namespace

Application::Application(ApplicationOptions options) : told(std::move(options)), mainThread(std::this_thread::get_id())
{
    assert(!runningApplication);
    runningApplication = this;
}

Application::~Application()
{
    part<Worker>().stop();
    for (const Ending step : {Ending::Announcement, Ending::Dialogs, Ending::Activity, Ending::Documents,
                              Ending::Modules, Ending::Settings, Ending::Registrations}) {
        // By index: what is asked for meanwhile is made at the back and needs no ending.
        for (size_t i = parts.size(); i-- > 0;) parts[i]->end(step);
        runTasks();
    }
    while (!parts.empty()) {
        std::erase_if(partOfType, [this](const auto& entry) { return entry.second == parts.back().get(); });
        parts.pop_back();
    }
    runningApplication = nullptr;
}

bool Application::running()
{
    return runningApplication;
}

Application& Application::current()
{
    assert(runningApplication);
    return *runningApplication;
}

ApplicationPart* Application::keep(std::unique_ptr<ApplicationPart> part)
{
    return parts.emplace_back(std::move(part)).get();
}

void Application::runOnMain(std::function<void()> task)
{
    if (onMainThread()) {
        runTasks();
        return task();
    }
    const std::lock_guard guard(tasksLock);
    tasks.push_back(std::move(task));
}

void Application::runTasks()
{
    std::vector<std::function<void()>> due;
    {
        const std::lock_guard guard(tasksLock);
        due.swap(tasks);
    }
    for (const std::function<void()>& task : due) task();
}

void Application::print(std::string_view line)
{
    runOnMain([this, text = std::string(line)] {
        if (told.console) return told.console(text);
        std::cerr << text << '\n';
    });
}

} // namespace host
