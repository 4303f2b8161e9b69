// A window of the file between the callbacks and everything that reads.
#include "rasterfeed/SourceFile.h"

#include "rasterfeed/Refusal.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace RasterFeed
{
    namespace
    {
        // Large enough that reading line by line costs few system calls, small enough to stay in the processor's cache.
        constexpr std::size_t WindowBytes = std::size_t{64} * 1024;
    }

    SourceFile::SourceFile(const RasterFeedCallbacks& hostCallbacks, FileBlock opened)
        : callbacks(hostCallbacks)
        , block(opened)
    {
    }

    // The object is complete before anything is tried, so that its destructor closes the file when that fails.
    SourceFile::SourceFile(const RasterFeedCallbacks& hostCallbacks, const char* name)
        : SourceFile(hostCallbacks, hostCallbacks.open(name))
    {
        // A block whose file did not open is first seen here; that is not a failed access.
        const std::int64_t bytes = block != nullptr ? callbacks.seek(block, 0) : -1;
        if (bytes < 0)
        {
            throw Refusal("the file could not be opened; a readable file is needed");
        }
        if (bytes > std::int64_t{UINT32_MAX})
        {
            throw Refusal("larger than 4294967295 bytes; files up to that size are accepted");
        }
        size = static_cast<std::uint32_t>(bytes);
    }

    SourceFile::~SourceFile()
    {
        try
        {
            Close();
        }
        catch (...)
        {
            // Whoever wants to know calls Close.
        }
    }

    void SourceFile::Close()
    {
        if (block != nullptr)
        {
            callbacks.close(std::exchange(block, nullptr));
        }
    }

    std::size_t SourceFile::Read(std::uint64_t position, void* to, std::size_t count)
    {
        auto* out = static_cast<unsigned char*>(to);
        std::size_t done = 0;
        if (position >= size)
        {
            return 0;
        }
        count = static_cast<std::size_t>(std::min<std::uint64_t>(count, size - position));
        while (done < count)
        {
            const std::uint64_t at = position + done;
            if (at < windowStart || at >= windowStart + windowSize)
            {
                if (count - done >= WindowBytes)
                {
                    return done + Fetch(at, out + done, count - done);
                }
                LoadWindow(at);
                if (at >= windowStart + windowSize)
                {
                    break;
                }
            }
            const auto offset = static_cast<std::size_t>(at - windowStart);
            const std::size_t part = std::min(count - done, windowSize - offset);
            std::memcpy(out + done, window.get() + offset, part);
            done += part;
        }
        return done;
    }

    const unsigned char* SourceFile::Peek(std::uint64_t position, std::size_t count)
    {
        if (position >= size || count > WindowBytes)
        {
            return nullptr;
        }
        if (position < windowStart || position >= windowStart + windowSize)
        {
            LoadWindow(position);
        }
        const std::uint64_t offset = position - windowStart;
        return offset < windowSize && count <= windowSize - offset ? window.get() + offset : nullptr;
    }

    void SourceFile::LoadWindow(std::uint64_t position)
    {
        if (!window)
        {
            window.reset(new unsigned char[WindowBytes]);
        }
        windowSize = 0;
        // Windows begin at fixed places, so that going through a file from its end reads no byte twice either.
        windowStart = position / WindowBytes * WindowBytes;
        windowSize = Fetch(windowStart, window.get(), WindowBytes);
    }

    std::size_t SourceFile::Fetch(std::uint64_t position, unsigned char* to, std::size_t count)
    {
        count = static_cast<std::size_t>(std::min<std::uint64_t>(count, size - position));
        if (position != blockPosition)
        {
            if (callbacks.seek(block, static_cast<std::uint32_t>(position)) < 0)
            {
                Fail();
            }
            blockPosition = position;
        }
        const std::int64_t got = callbacks.read(block, to, static_cast<std::uint32_t>(count));
        if (got < 0 || static_cast<std::uint64_t>(got) > count)
        {
            Fail();
        }
        blockPosition += static_cast<std::uint64_t>(got);
        return static_cast<std::size_t>(got);
    }

    void SourceFile::Fail()
    {
        callbacks.failure();
        throw Refusal("the file could not be read; a readable file is needed");
    }
}
