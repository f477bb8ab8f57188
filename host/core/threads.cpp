#include "core/application.h"
#include "core/thread_record.h"

#include <chrono>

namespace host {
namespace {

thread_local BaseThread* currentThread = nullptr;

} // namespace

ThreadRecord::ThreadRecord(C4DThread& runs) : body(runs), facade(*this)
{
}

ThreadRecord::~ThreadRecord()
{
    stop();
    wait();
    if (thread.joinable()) thread.join();
}

bool ThreadRecord::start()
{
    const std::lock_guard guard(lock);
    if (running) return false;

    if (thread.joinable()) thread.join(); // the run before, which is over
    stopping = false;
    running = true;
    thread = std::thread([this] {
        currentThread = &facade;
        body.Main();
        const std::lock_guard atEnd(lock);
        running = false;
        over.notify_all();
    });
    return true;
}

void ThreadRecord::wait()
{
    if (currentThread == &facade) return;
    std::unique_lock guard(lock);
    over.wait(guard, [this] { return !running; });
}

bool ThreadRecord::isRunning()
{
    const std::lock_guard guard(lock);
    return running;
}

} // namespace host

C4DThread::C4DThread() : record(std::make_unique<host::ThreadRecord>(*this))
{
}

C4DThread::~C4DThread() = default;

Bool C4DThread::Start(THREADMODE, THREADPRIORITY)
{
    return record->start();
}

void C4DThread::End(Bool wait)
{
    record->stop();
    if (wait) record->wait();
}

Bool C4DThread::IsRunning()
{
    return record->isRunning();
}

Bool C4DThread::TestBreak()
{
    return record->isStopping();
}

void C4DThread::Wait(Bool)
{
    record->wait();
}

BaseThread* C4DThread::Get() const
{
    return &record->facade;
}

Bool BaseThread::TestBreak()
{
    return record->isStopping();
}

void BaseThread::End(Bool wait)
{
    record->stop();
    if (wait) record->wait();
}

Bool BaseThread::IsRunning()
{
    return record->isRunning();
}

BaseThread* GeGetCurrentThread()
{
    return host::currentThread;
}

Bool GeIsMainThread()
{
    return host::Application::current().onMainThread();
}

void GeSleep(Int32 milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}
