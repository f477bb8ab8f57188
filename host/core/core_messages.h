// Core messages: posted from any thread, delivered one by one on the main thread, in the order of posting.
//
// Changes of documents are told by one message however often they were announced; it keeps the place of the first
// announcement. Whoever takes core messages (dialogs, for the most part) enters as a receiver.
#pragma once

#include "core/application.h"

#include <deque>
#include <mutex>
#include <vector>

namespace host {

class CoreMessageReceiver {
public:
    virtual ~CoreMessageReceiver() = default;
    /// `message` carries the id and both parameters under the keys of core messages. Main thread.
    virtual void takeCoreMessage(Int32 id, const BaseContainer& message) = 0;
};

class CoreMessages final : public ApplicationPart {
public:
    /// Any thread.
    void post(Int32 id, UInt first, UInt second);
    /// Announces a change of a document. Main thread. Without a user interface nobody is told.
    void postChange(EVENT flags);
    /// Delivers what is waiting now, not what is posted meanwhile. Gives the number of messages. Main thread.
    size_t deliver();

    /// Receivers are told in the order of their entering. One that leaves while a message goes round gets it no more.
    void enter(CoreMessageReceiver& receiver);
    void leave(CoreMessageReceiver& receiver);

    /// Called once a change has been told to all receivers: evaluates the active document and draws it anew.
    std::function<void(EVENT flags)> onChange;

private:
    struct Message {
        Int32 id = 0;
        UInt first = 0, second = 0;
        bool change = false; // parameters are read at delivery: the flags of all announcements together
    };
    void send(const Message& message);

    std::mutex lock;
    std::deque<Message> waiting;
    bool changeWaiting = false;
    UInt changeFlags = 0;
    std::vector<CoreMessageReceiver*> receivers; // null where one left during a delivery
    int rounds = 0;                              // deliveries going on, one inside the other
    Int32 uniqueId = 0;
};

} // namespace host
