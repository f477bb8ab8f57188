#include "core/console.h"
#include "core/core_messages.h"
#include "core/worker.h"
#include "gui.h"
#include "support/test_host.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>

namespace host::test {
namespace {

class Job : public C4DThread {
public:
    explicit Job(std::function<void(Job&)> does) : work(std::move(does)) {}
    ~Job() override { End(); }
    void Main() override { work(*this); }
    const Char* GetThreadName() override { return "job"; }
    Bool TestDBreak() override { return breakItself; }

    std::function<void(Job&)> work;
    std::atomic<bool> breakItself = false;
};

void untilBroken(Job& job)
{
    while (!job.TestBreak()) std::this_thread::yield();
}

TEST(Threads, AThreadRunsAgainAndAgainAndItsWritesAreSeenByWhoEndsIt)
{
    const TestHost host;
    int runs = 0; // not atomic: End and Start order the writes
    Job job([&runs](Job& self) {
        ++runs;
        EXPECT_FALSE(GeIsMainThread());
        EXPECT_EQ(GeGetCurrentThread(), self.Get());
        untilBroken(self);
    });
    job.End(); // never ran: returns at once
    for (int round = 1; round <= 20; ++round) {
        ASSERT_TRUE(job.Start());
        EXPECT_FALSE(job.Start()); // runs already
        job.Get()->End();
        EXPECT_FALSE(job.IsRunning());
        EXPECT_EQ(runs, round);
    }
    EXPECT_TRUE(GeIsMainThread());
    EXPECT_EQ(GeGetCurrentThread(), nullptr);
}

TEST(Threads, EndingWithoutWaitingAsksAndWaitingDoesNotAsk)
{
    const TestHost host;
    std::promise<void> mayGo;
    Job waits([go = mayGo.get_future().share()](Job& self) {
        go.wait();
        EXPECT_TRUE(self.TestBreak());
    });
    ASSERT_TRUE(waits.Start());
    waits.End(false);
    EXPECT_TRUE(waits.Get()->IsRunning());
    mayGo.set_value();
    waits.Wait();

    Job finishes([](Job& self) { EXPECT_FALSE(self.TestBreak()); });
    ASSERT_TRUE(finishes.Start());
    finishes.Wait();
    Job own(untilBroken);
    ASSERT_TRUE(own.Start());
    own.breakItself = true; // its own condition counts too
    own.Wait();
}

TEST(Threads, TheWorkerTakesOneJobAtATimeAndIsStoppedForTheMainThread)
{
    const TestHost host;
    Worker& worker = PartOf<Worker>();
    std::vector<int> order; // unguarded: every access is joined
    worker.start([&order](BaseThread*) { order.push_back(1); });
    worker.start([&order](BaseThread*) {
        order.push_back(2);
        StopAllThreads(); // from the worker itself: no waiting for oneself
        PartOf<Worker>().join();
    });
    worker.join();
    order.push_back(3);
    worker.start([&order](BaseThread* thread) {
        while (!thread->TestBreak()) std::this_thread::yield();
        order.push_back(4);
    });
    EXPECT_TRUE(worker.busy());
    StopAllThreads();
    EXPECT_FALSE(worker.busy());
    EXPECT_EQ(order, (std::vector{1, 2, 3, 4}));
}

TEST(Threads, ARunningJobIsBrokenOffAtTheEndOfTheHost)
{
    TestHost host;
    bool broken = false;
    PartOf<Worker>().start([&broken](BaseThread* thread) {
        while (!thread->TestBreak()) std::this_thread::yield();
        broken = true;
    });
    host.end();
    EXPECT_TRUE(broken);
}

// Takes what comes by, as a dialog would.
struct Listener final : CoreMessageReceiver {
    Listener() { PartOf<CoreMessages>().enter(*this); }
    ~Listener() override { PartOf<CoreMessages>().leave(*this); }
    void takeCoreMessage(Int32 id, const BaseContainer& message) override { onMessage(id, message); }

    std::function<void(Int32, const BaseContainer&)> onMessage;
};

TEST(Threads, WhatThreadsSayAndPostArrivesWholeAndInOrderOnTheMainThread)
{
    TestHost host;
    constexpr int kThreads = 4, kMessages = 200;
    std::vector<std::unique_ptr<Job>> jobs;
    for (int t = 0; t < kThreads; ++t)
        jobs.push_back(std::make_unique<Job>([t](Job&) {
            for (int i = 0; i < kMessages; ++i) {
                SpecialEventAdd(1033808, static_cast<UInt>(t), static_cast<UInt>(i));
                GePrint(String::IntToString(Int32{t * kMessages + i}));
                StatusSetBar(t * 1000);
            }
            EXPECT_EQ(GeOutString("Asked", GEMB_YESNO), GEMB_R_NO); // nobody is asked from here
        }));
    for (const auto& job : jobs) ASSERT_TRUE(job->Start());
    for (const auto& job : jobs) job->Wait();

    std::vector<int> next(kThreads), nextLine(kThreads);
    Listener listener;
    listener.onMessage = [&next](Int32 id, const BaseContainer& message) {
        EXPECT_TRUE(GeIsMainThread());
        EXPECT_EQ(id, 1033808);
        const auto thread = reinterpret_cast<UInt>(message.GetVoid(BFM_CORE_PAR1));
        EXPECT_EQ(reinterpret_cast<UInt>(message.GetVoid(BFM_CORE_PAR2)), static_cast<UInt>(next.at(thread)++));
    };
    EXPECT_TRUE(host.console.empty());
    EXPECT_EQ(PartOf<CoreMessages>().deliver(), static_cast<size_t>(kThreads * kMessages));
    EXPECT_EQ(next, std::vector<int>(kThreads, kMessages));

    for (const std::string& line : host.console) {
        if (line.find("Asked") != std::string::npos) continue;
        const int number = std::stoi(line);
        EXPECT_EQ(number % kMessages, nextLine.at(static_cast<size_t>(number / kMessages))++);
    }
    EXPECT_EQ(nextLine, std::vector<int>(kThreads, kMessages));
    EXPECT_EQ(host.console.size(), static_cast<size_t>(kThreads * (kMessages + 1)));
    EXPECT_EQ(PartOf<StatusBar>().percent % 100, 0); // 0 or, from 1000 on, the full bar
    EXPECT_TRUE(host.dialogs.messages.empty());
}

TEST(CoreMessages, AChangeIsToldOnceAtThePlaceOfItsFirstAnnouncement)
{
    TestHost host({.userInterface = true});
    CoreMessages& messages = PartOf<CoreMessages>();
    std::vector<std::pair<Int32, UInt>> told;
    Listener listener;
    listener.onMessage = [&told](Int32 id, const BaseContainer& message) {
        told.emplace_back(id, reinterpret_cast<UInt>(message.GetVoid(BFM_CORE_PAR1)));
        if (told.size() == 2) EventAdd(); // a change made by who hears of one is a change of its own
    };
    int passes = 0;
    messages.onChange = [&passes](EVENT) { ++passes; };
    SpecialEventAdd(1);
    EventAdd(EVENT_ANIMATE);
    SpecialEventAdd(2);
    EventAdd(EVENT_FORCEREDRAW);
    EXPECT_EQ(messages.deliver(), 3u);
    EXPECT_EQ(told,
              (std::vector<std::pair<Int32, UInt>>{{1, 0}, {EVMSG_CHANGE, EVENT_ANIMATE | EVENT_FORCEREDRAW}, {2, 0}}));
    EXPECT_EQ(messages.deliver(), 1u);
    EXPECT_EQ(messages.deliver(), 0u);
    EXPECT_EQ(passes, 2);
}

TEST(CoreMessages, WithoutAUserInterfaceChangesAreNotTold)
{
    TestHost host;
    EventAdd();
    SpecialEventAdd(7);
    EXPECT_EQ(PartOf<CoreMessages>().deliver(), 1u);
}

TEST(CoreMessages, WhoLeavesHearsNoMoreAndWhoEntersHearsTheNext)
{
    TestHost host;
    std::string heard;
    auto second = std::make_unique<Listener>();
    std::unique_ptr<Listener> third;
    {
        Listener first;
        second->onMessage = [&](Int32, const BaseContainer&) {
            heard += '2';
            if (third) return;
            third = std::make_unique<Listener>();
            third->onMessage = [&](Int32, const BaseContainer&) {
                heard += '3';
                second.reset();
            };
        };
        first.onMessage = [&](Int32, const BaseContainer&) { heard += '1'; };
        SpecialEventAdd(1);
        SpecialEventAdd(2);
        PartOf<CoreMessages>().deliver();
    }
    SpecialEventAdd(3);
    PartOf<CoreMessages>().deliver();
    EXPECT_EQ(heard, "21"
                     "213"
                     "3");
}

} // namespace
} // namespace host::test
