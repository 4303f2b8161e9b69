// The sending end of a notification: calls one operation on each of its listeners, in the order of their attachment.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <vector>

namespace RasterOutput
{
    class Listener;

    /// Sends messages to any number of listeners, for one thread at a time. Known by its address, so never copied; owns
    /// no listener. While a broadcast runs, listeners may be added (the running broadcast does not reach them) but not
    /// removed. No listener pointer may be null.
    class Broadcaster
    {
    public:
        /// No listeners. May throw std::bad_alloc.
        Broadcaster();
        Broadcaster(const Broadcaster&) = delete;
        Broadcaster& operator=(const Broadcaster&) = delete;

        /// Lets go of all listeners. A broadcast that is running on this object ends with the handler that destroyed it.
        virtual ~Broadcaster();

        /// Attaches `listener` at both ends, unless it is attached already. May throw std::bad_alloc, and then neither
        /// end has changed.
        void AddListener(Listener* listener);

        /// Detaches `listener` at both ends; nothing happens for one that is not attached. Throws Exception while a broadcast
        /// is running, and then nothing has changed.
        void RemoveListener(Listener* listener);

        /// Detaches every listener. Throws Exception while a broadcast is running, and then nothing has changed.
        void RemoveAllListeners();

        /// True if `listener` is attached.
        bool HasListener(const Listener* listener) const;

        /// Calls HandleBroadcast(message, data) on each listener that is attached now. What a handler throws ends the
        /// broadcast and passes to the caller. Handlers may broadcast in turn.
        void BroadcastMessage(std::uint32_t message, std::uint32_t data);

        /// Number of broadcasts now running on this object, each inside a handler of the one before; 0 when idle.
        std::int32_t BroadcastDepth() const { return *broadcastDepth; }

    private:
        friend class Listener;
        class Walk;

        /// Throws Exception while a broadcast is running.
        void RequireIdle() const;
        /// Strikes out `listener` on this side alone, even while a broadcast is running.
        void Forget(const Listener* listener) noexcept;
        /// Detaches every listener at both ends, even while a broadcast is running.
        void DetachAll() noexcept;

        /// In the order of attachment. During a broadcast the place of a listener that died is kept, as null, so that
        /// the others stay where the broadcast looks for them.
        std::vector<Listener*> listeners;
        /// The counter that BroadcastDepth() reads. In an allocation of its own, so that a running broadcast can tell that
        /// its broadcaster has been destroyed.
        boost::shared_ptr<std::int32_t> broadcastDepth;
    };
}
