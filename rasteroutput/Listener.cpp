// The listener's half of each link.
#include "rasteroutput/Listener.h"

#include "rasteroutput/Broadcaster.h"

#include <algorithm>

namespace RasterOutput
{
    Listener::~Listener()
    {
        while (!broadcasters.empty())
        {
            LeaveLast();
        }
    }

    void Listener::HandleBroadcast(std::uint32_t, std::uint32_t) {}

    void Listener::StopListening()
    {
        while (!broadcasters.empty())
        {
            broadcasters.back()->RequireIdle();
            LeaveLast();
        }
    }

    bool Listener::HasBroadcaster(const Broadcaster* broadcaster) const
    {
        return std::find(broadcasters.begin(), broadcasters.end(), broadcaster) != broadcasters.end();
    }

    void Listener::AddBroadcaster(Broadcaster* broadcaster)
    {
        if (!HasBroadcaster(broadcaster))
        {
            broadcasters.push_back(broadcaster);
        }
    }

    void Listener::RemoveBroadcaster(Broadcaster* broadcaster) noexcept
    {
        broadcasters.erase(std::remove(broadcasters.begin(), broadcasters.end(), broadcaster), broadcasters.end());
    }

    void Listener::LeaveLast() noexcept
    {
        Broadcaster* const last = broadcasters.back();
        broadcasters.pop_back();
        last->Forget(this);
    }
}
