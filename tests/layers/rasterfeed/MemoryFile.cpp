// The callbacks, on bytes in memory.
#include "tests/layers/rasterfeed/MemoryFile.h"

#include <algorithm>
#include <cstring>

namespace RasterFeedTest
{
    namespace
    {
        struct State
        {
            std::string bytes;
            HostFaults faults;
            std::uint32_t position = 0;
            int opened = 0;
            int closed = 0;
            int reads = 0;
        };
        State state;

        FileBlock Open(const char*)
        {
            if (state.faults.openThrows)
            {
                throw HostFailure{"open"};
            }
            ++state.opened;
            return reinterpret_cast<FileBlock>(&state);
        }

        std::int64_t Seek(FileBlock, std::uint32_t position)
        {
            if (state.faults.isMissing)
            {
                return -1;
            }
            state.position = position;
            return position < state.bytes.size() ? static_cast<std::int64_t>(state.bytes.size() - position) : 0;
        }

        std::int64_t Read(FileBlock, void* buffer, std::uint32_t size)
        {
            ++state.reads;
            if (state.reads == state.faults.readThrows)
            {
                throw HostFailure{"read"};
            }
            if (state.faults.isMissing || state.reads == state.faults.readFails)
            {
                return -1;
            }
            if (state.reads == state.faults.shrinksAt)
            {
                state.bytes.resize(state.faults.shrunkenSize);
            }
            const std::size_t left = state.bytes.size() - std::min<std::size_t>(state.position, state.bytes.size());
            const std::size_t count = std::min<std::size_t>(size, left);
            std::memcpy(buffer, state.bytes.data() + (state.bytes.size() - left), count);
            state.position += static_cast<std::uint32_t>(count);
            return static_cast<std::int64_t>(count);
        }

        std::int32_t Close(FileBlock)
        {
            ++state.closed;
            if (state.faults.closeThrows)
            {
                throw HostFailure{"close"};
            }
            return 0;
        }

        void Fail()
        {
            throw HostFailure{"failure"};
        }
    }

    void MemoryFile::Reset(std::string bytes, const HostFaults& faults)
    {
        state = State();
        state.bytes = std::move(bytes);
        state.faults = faults;
    }

    int MemoryFile::Opened()
    {
        return state.opened;
    }

    int MemoryFile::Closed()
    {
        return state.closed;
    }

    int MemoryFile::Reads()
    {
        return state.reads;
    }

    RasterFeedOpenRecord MemoryFile::Record(const char* name)
    {
        RasterFeedOpenRecord record;
        std::memset(&record, 0xA5, sizeof record); // reserved fields may hold anything
        std::strcpy(record.path, name);
        record.callbacks = {Open, Seek, Read, Close, [] {}, Fail};
        return record;
    }
}
