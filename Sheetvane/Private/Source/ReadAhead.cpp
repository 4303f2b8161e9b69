#include "frontend/ReadAhead.h"

#include <algorithm>
#include <utility>

namespace Sheetvane
{
    ReadAhead::ReadAhead(std::size_t count, unsigned int threadCount, Reader theReader)
        : reader(std::move(theReader))
        , mostHeld(std::min<std::size_t>(count, threadCount))
    {
        if (mostHeld < 2)
        {
            return;
        }
        places.resize(count);
        threads.reserve(mostHeld);
        try
        {
            while (threads.size() < mostHeld)
            {
                threads.emplace_back(&ReadAhead::Work, this);
            }
        }
        catch (...)
        {
            // The system gives no further thread: those that there are read everything, or the caller does.
        }
    }

    ReadAhead::~ReadAhead()
    {
        {
            const std::lock_guard<std::mutex> lock(guard);
            isEnding = true;
        }
        changed.notify_all();
        for (std::thread& thread : threads)
        {
            thread.join();
        }
    }

    std::unique_ptr<Preview> ReadAhead::Take()
    {
        if (threads.empty())
        {
            return nullptr;
        }
        std::unique_lock<std::mutex> lock(guard);
        Place& place = places.at(nextToTake);
        changed.wait(lock, [&] { return place.isDone; });
        ++nextToTake;
        changed.notify_all();
        return std::move(place.preview);
    }

    void ReadAhead::Work()
    {
        std::unique_lock<std::mutex> lock(guard);
        while (true)
        {
            changed.wait(
                lock, [&] { return isEnding || nextToRead == places.size() || nextToRead < nextToTake + mostHeld; });
            if (isEnding || nextToRead == places.size())
            {
                return;
            }
            Place& place = places[nextToRead];
            const std::size_t position = nextToRead++;
            lock.unlock();
            std::unique_ptr<Preview> preview;
            try
            {
                preview = reader(position, isEnding);
            }
            catch (...)
            {
                // Whoever takes it reads it, and fails as if nothing had been read ahead.
            }
            lock.lock();
            place.preview = std::move(preview);
            place.isDone = true;
            changed.notify_all();
        }
    }
}
