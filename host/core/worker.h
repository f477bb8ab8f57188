// The one thread on which the host evaluates and draws beside the main thread.
//
// It works on live documents, so the main thread joins it before it calls into any node: what the worker wrote is seen
// by the main thread then, and no node is ever entered by both.
#pragma once

#include "core/application.h"

#include <functional>
#include <memory>

namespace host {

class Worker final : public ApplicationPart {
public:
    Worker();
    ~Worker() override;
    void end(Ending) override { stop(); }

    /// Waits for the job before, then runs `job` on the worker. The thread that it is given tells when to break off.
    void start(std::function<void(BaseThread*)> job);
    /// Waits until the job is over. On the worker itself this does nothing.
    void join();
    /// Tells the job to break off and waits until it has. On the worker itself this does nothing.
    void stop();
    bool busy() const;

private:
    struct Thread;
    std::unique_ptr<Thread> thread;
};

} // namespace host
