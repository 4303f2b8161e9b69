// The receiving end of a notification. Either end of a link may die first: it takes itself out of the other's list.
#pragma once

#include <cstdint>
#include <vector>

namespace RasterOutput
{
    class Broadcaster;

    /// Hears the messages of any number of broadcasters. Known by its address, so never copied; owns no broadcaster.
    class Listener
    {
    public:
        Listener() = default;
        Listener(const Listener&) = delete;
        Listener& operator=(const Listener&) = delete;

        /// Leaves all broadcasters. A broadcast that is running on one of them goes on without this listener.
        virtual ~Listener();

        /// Receives a message. What the two values mean is between sender and receiver. Does nothing by default.
        virtual void HandleBroadcast(std::uint32_t message, std::uint32_t data);

        /// Leaves all broadcasters, last joined first. Throws Exception at the first one on which a broadcast is
        /// running; that one and those joined before it stay attached.
        void StopListening();

        /// True if `broadcaster` has this listener in its list.
        bool HasBroadcaster(const Broadcaster* broadcaster) const;

        /// Near half of a link, for Broadcaster: records `broadcaster` unless it is there. May throw std::bad_alloc.
        void AddBroadcaster(Broadcaster* broadcaster);

        /// Near half of a link, for Broadcaster: strikes out `broadcaster` if it is there.
        void RemoveBroadcaster(Broadcaster* broadcaster) noexcept;

    private:
        /// Takes the last broadcaster out of the list, and this listener out of that broadcaster's.
        void LeaveLast() noexcept;

        /// Every broadcaster that has this listener in its list, in the order of joining.
        std::vector<Broadcaster*> broadcasters;
    };
}
