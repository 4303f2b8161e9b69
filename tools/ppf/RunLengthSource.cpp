#include "ppf/RunLengthSource.h"

#include "ppf/Failure.h"
#include "ppf/Keywords.h"
#include "ppf/RunLengthToken.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace Ppf
{
    namespace
    {
        constexpr std::size_t BlockSize = 64u << 10;
        constexpr std::ptrdiff_t LongestRun = 128;
        /// Bytes that runs are copied by where there is space to write beyond their end.
        constexpr unsigned Stride = 16;
        constexpr std::ptrdiff_t LongestToken = 1 + LongestRun;
        constexpr std::uint64_t EveryByte = 0x0101010101010101;
    }

    RunLengthSource::RunLengthSource(std::unique_ptr<ByteSource> theEncoded)
        : encoded(std::move(theEncoded))
        , block(BlockSize)
    {
    }

    std::size_t RunLengthSource::Read(unsigned char* out, std::size_t count)
    {
        std::size_t done = 0;
        while (done < count)
        {
            if (runLeft == 0)
            {
                done += ReadWholeRuns(out + done, count - done);
                if (ended || !BeginRun())
                {
                    break;
                }
            }
            if (next == end && !Refill())
            {
                throw FormatError(Offset(), "run-length data ends within a run");
            }
            std::size_t taken = std::min(runLeft, count - done);
            if (runIsLiteral)
            {
                taken = std::min(taken, end - next);
                std::memcpy(out + done, block.data() + next, taken);
                next += taken;
            }
            else
            {
                std::memset(out + done, block[next], taken);
                next += taken == runLeft ? 1 : 0;
            }
            runLeft -= taken;
            done += taken;
        }
        return done;
    }

    /// Expands runs as long as the block holds all of the next one and `out` has space for the longest. Whether a run is
    /// literal or repeated is noise to the branch predictor, so the first stride is written the same way for both.
    std::size_t RunLengthSource::ReadWholeRuns(unsigned char* out, std::size_t count)
    {
        // Locals, since bytes written through `out` might be the members for all that the compiler knows.
        const unsigned char* token = block.data() + next;
        const unsigned char* const blockEnd = block.data() + end;
        unsigned char* to = out;
        while (out + count - to >= LongestRun && blockEnd - token >= LongestToken && *token != Filter::RunLengthEnd)
        {
            const RunLengthToken run(*token++);
            const std::uint64_t ofLiteral = run.LiteralMask();
            const std::uint64_t repeated = (*token * EveryByte) & ~ofLiteral;
            for (unsigned i = 0; i < run.Run(); i += Stride)
            {
                std::array<std::uint64_t, 2> bytes = {};
                static_assert(sizeof bytes == Stride);
                std::memcpy(bytes.data(), token + i, Stride);
                bytes = {(bytes[0] & ofLiteral) | repeated, (bytes[1] & ofLiteral) | repeated};
                std::memcpy(to + i, bytes.data(), Stride);
            }
            to += run.Run();
            token += run.DataBytes();
        }
        next = static_cast<std::size_t>(token - block.data());
        return static_cast<std::size_t>(to - out);
    }

    /// False at the end of the data.
    bool RunLengthSource::BeginRun()
    {
        if (next == end && !Refill())
        {
            ended = true;
            return false;
        }
        const unsigned char length = block[next++];
        ended = length == Filter::RunLengthEnd;
        const RunLengthToken run(length);
        runIsLiteral = run.IsLiteral();
        runLeft = ended ? 0 : run.Run();
        return !ended;
    }

    bool RunLengthSource::Refill()
    {
        next = 0;
        end = encoded->Read(block.data(), BlockSize);
        return end > 0;
    }
}
