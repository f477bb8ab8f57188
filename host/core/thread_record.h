// What stands behind a thread of the API: restartable, and a run's writes are seen by whoever waited for its end.
#pragma once

#include "c4d_thread.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace host {

class ThreadRecord {
public:
    /// Starts the Main() of `runs`, which outlives this record but for its own end.
    explicit ThreadRecord(C4DThread& runs);
    ThreadRecord(const ThreadRecord&) = delete;
    ThreadRecord& operator=(const ThreadRecord&) = delete;
    ~ThreadRecord();

    /// False while a run goes on.
    bool start();
    /// Asks the run to end.
    void stop() { stopping = true; }
    /// Until the run is over. Within the run itself it does nothing.
    void wait();
    bool isRunning();
    bool isStopping() { return stopping || body.TestDBreak(); }

    C4DThread& body;
    BaseThread facade;

private:
    std::atomic<bool> stopping = false;
    std::mutex lock; // of what follows
    std::condition_variable over;
    bool running = false;
    std::thread thread;
};

} // namespace host
