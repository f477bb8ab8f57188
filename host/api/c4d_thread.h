// Threads.
#pragma once

#include "ge_sys_math.h"

#include <memory>

namespace host {
class ThreadRecord;
}

enum THREADMODE { THREADMODE_DEPRECATED_SYNCHRONOUS = 0, THREADMODE_ASYNC = 1 } ENUM_END_LIST(THREADMODE);
enum THREADPRIORITY {
    THREADPRIORITY_NORMAL = 0,
    THREADPRIORITY_ABOVE = 1000,
    THREADPRIORITY_BELOW = 1001,
    THREADPRIORITY_LOWEST = 1002
} ENUM_END_LIST(THREADPRIORITY);

/// A thread of the host's.
class BaseThread {
public:
    Bool TestBreak(); // true once it is to stop
    void End(Bool wait = true);
    Bool IsRunning();

    BaseThread(const BaseThread&) = delete;
    BaseThread& operator=(const BaseThread&) = delete;

private:
    friend class host::ThreadRecord;
    explicit BaseThread(host::ThreadRecord& owner) : record(&owner) {}

    host::ThreadRecord* record;
};

/// A thread of a plug-in's: runs Main(). It may be started again once that has returned. Derived classes call End() in
/// their destructor.
class C4DThread {
public:
    C4DThread();
    C4DThread(const C4DThread&) = delete;
    C4DThread& operator=(const C4DThread&) = delete;
    virtual ~C4DThread();

    virtual Bool TestDBreak() { return false; }
    virtual void Main() = 0;
    virtual const Char* GetThreadName() = 0;

    /// False if it runs already.
    Bool Start(THREADMODE mode = THREADMODE_ASYNC, THREADPRIORITY priority = THREADPRIORITY_NORMAL);
    void End(Bool wait = true);
    Bool IsRunning();
    Bool TestBreak();
    void Wait(Bool checkevents = false);
    BaseThread* Get() const;

private:
    friend class host::ThreadRecord;
    std::unique_ptr<host::ThreadRecord> record;
};

/// The running thread, as far as the host knows it; null on the main thread.
BaseThread* GeGetCurrentThread();
Bool GeIsMainThread();
void GeSleep(Int32 milliseconds);
