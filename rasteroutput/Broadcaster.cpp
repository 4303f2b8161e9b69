// The broadcaster's half of each link, and the walk along its listeners, which must stay sound whatever a handler does:
// add listeners, broadcast again, throw, or destroy a listener or the broadcaster itself.
#include "rasteroutput/Broadcaster.h"

#include "rasteroutput/Exception.h"
#include "rasteroutput/Listener.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>

#include <algorithm>
#include <cstddef>

namespace RasterOutput
{
    /// Counts one broadcast for as long as it runs, and tells whether its broadcaster still exists.
    class Broadcaster::Walk
    {
    public:
        explicit Walk(Broadcaster& broadcaster)
            : owner(broadcaster)
            , depth(broadcaster.broadcastDepth)
        {
            ++*owner.broadcastDepth;
        }

        Walk(const Walk&) = delete;
        Walk& operator=(const Walk&) = delete;

        ~Walk()
        {
            if (OwnerLives() && --*owner.broadcastDepth == 0)
            {
                auto& places = owner.listeners;
                places.erase(std::remove(places.begin(), places.end(), nullptr), places.end());
            }
        }

        bool OwnerLives() const { return !depth.expired(); }

    private:
        Broadcaster& owner;
        boost::weak_ptr<std::int32_t> depth;
    };

    Broadcaster::Broadcaster()
        : broadcastDepth(boost::make_shared<std::int32_t>(0))
    {
    }

    Broadcaster::~Broadcaster()
    {
        DetachAll();
    }

    void Broadcaster::AddListener(Listener* listener)
    {
        if (HasListener(listener))
        {
            return;
        }
        // Room first: a link is recorded at both ends or at none.
        if (listeners.size() == listeners.capacity())
        {
            listeners.reserve(2 * listeners.size() + 1);
        }
        listener->AddBroadcaster(this);
        listeners.push_back(listener);
    }

    void Broadcaster::RemoveListener(Listener* listener)
    {
        RequireIdle();
        listener->RemoveBroadcaster(this);
        Forget(listener);
    }

    void Broadcaster::RemoveAllListeners()
    {
        RequireIdle();
        DetachAll();
    }

    bool Broadcaster::HasListener(const Listener* listener) const
    {
        return std::find(listeners.begin(), listeners.end(), listener) != listeners.end();
    }

    void Broadcaster::BroadcastMessage(std::uint32_t message, std::uint32_t data)
    {
        const Walk walk(*this);
        // By index and up to the present number: handlers may add listeners, and the list may move.
        const std::size_t count = listeners.size();
        for (std::size_t i = 0; i < count && walk.OwnerLives(); ++i)
        {
            if (Listener* const listener = listeners[i])
            {
                listener->HandleBroadcast(message, data);
            }
        }
    }

    void Broadcaster::RequireIdle() const
    {
        if (BroadcastDepth() > 0)
        {
            throw Exception("Removing listeners mid-broadcast is not supported");
        }
    }

    void Broadcaster::Forget(const Listener* listener) noexcept
    {
        const auto place = std::find(listeners.begin(), listeners.end(), listener);
        if (place == listeners.end())
        {
            return;
        }
        if (BroadcastDepth() > 0)
        {
            *place = nullptr;
        }
        else
        {
            listeners.erase(place);
        }
    }

    void Broadcaster::DetachAll() noexcept
    {
        for (Listener* const listener : listeners)
        {
            if (listener != nullptr)
            {
                listener->RemoveBroadcaster(this);
            }
        }
        listeners.clear();
    }
}
