#include "core/worker.h"

#include <cassert>

namespace host {

struct Worker::Thread final : C4DThread {
    ~Thread() override { End(); }
    void Main() override { job(Get()); }
    const Char* GetThreadName() override { return "evaluation and drawing"; }

    std::function<void(BaseThread*)> job;
};

Worker::Worker() : thread(std::make_unique<Thread>())
{
}

Worker::~Worker() = default;

void Worker::start(std::function<void(BaseThread*)> job)
{
    assert(Application::current().onMainThread());
    join();
    thread->job = std::move(job);
    thread->Start();
}

void Worker::join()
{
    thread->Wait();
}

void Worker::stop()
{
    thread->End();
}

bool Worker::busy() const
{
    return thread->IsRunning();
}

} // namespace host

void StopAllThreads()
{
    host::PartOf<host::Worker>().stop();
}
