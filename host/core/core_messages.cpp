#include "core/core_messages.h"

#include "gui.h"

#include <algorithm>
#include <utility>

namespace host {

void CoreMessages::post(Int32 id, UInt first, UInt second)
{
    const std::lock_guard guard(lock);
    waiting.push_back({.id = id, .first = first, .second = second});
}

void CoreMessages::postChange(EVENT flags)
{
    if (!Application::current().options().userInterface) return;

    const std::lock_guard guard(lock);
    changeFlags |= static_cast<UInt>(flags);
    if (std::exchange(changeWaiting, true)) return;
    waiting.push_back({.id = EVMSG_CHANGE, .change = true});
}

size_t CoreMessages::deliver()
{
    Application::current().runTasks();

    std::deque<Message> due;
    {
        const std::lock_guard guard(lock);
        due.swap(waiting);
    }
    for (Message& message : due) {
        if (!message.change) {
            send(message);
            continue;
        }
        {
            // What is announced from here on is a change of its own.
            const std::lock_guard guard(lock);
            message.first = std::exchange(changeFlags, 0);
            changeWaiting = false;
        }
        send(message);
        if (onChange) onChange(static_cast<EVENT>(message.first));
    }
    return due.size();
}

void CoreMessages::enter(CoreMessageReceiver& receiver)
{
    receivers.push_back(&receiver);
}

void CoreMessages::leave(CoreMessageReceiver& receiver)
{
    std::ranges::replace(receivers, &receiver, nullptr);
    if (rounds == 0) std::erase(receivers, nullptr);
}

void CoreMessages::send(const Message& message)
{
    BaseContainer container(BFM_CORE_MESSAGE);
    container.SetInt32(BFM_CORE_ID, message.id);
    container.SetInt32(BFM_CORE_UNIQUEID, ++uniqueId);
    container.SetVoid(BFM_CORE_PAR1, reinterpret_cast<void*>(message.first));
    container.SetVoid(BFM_CORE_PAR2, reinterpret_cast<void*>(message.second));

    ++rounds;
    // Who enters meanwhile did not exist when the message was sent.
    const size_t count = receivers.size();
    for (size_t i = 0; i < count; ++i)
        if (receivers[i]) receivers[i]->takeCoreMessage(message.id, container);
    if (--rounds == 0) std::erase(receivers, nullptr);
}

} // namespace host

void SpecialEventAdd(Int32 messageid, UInt p1, UInt p2)
{
    host::PartOf<host::CoreMessages>().post(messageid, p1, p2);
}

void EventAdd(EVENT eventflag)
{
    host::PartOf<host::CoreMessages>().postChange(eventflag);
}
