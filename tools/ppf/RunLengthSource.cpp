// Literal and repeat runs into the buffer that is asked for, however they fall across its end.
#include "ppf/RunLengthSource.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "ppf/Failure.h"
#include "ppf/Keywords.h"
#include "ppf/RunLengthToken.h"

namespace ppf
{
    namespace
    {
        constexpr std::size_t blockSize = 64u << 10;
        constexpr std::ptrdiff_t longestRun = 128;
        /// Bytes that runs are copied by where there is room to write beyond their end.
        constexpr unsigned stride = 16;
        constexpr std::ptrdiff_t longestToken = 1 + longestRun;
        constexpr std::uint64_t everyByte = 0x0101010101010101;
    }

    RunLengthSource::RunLengthSource(std::unique_ptr<ByteSource> encoded)
        : m_encoded(std::move(encoded))
        , m_block(blockSize)
    {
    }

    std::size_t RunLengthSource::Read(unsigned char* out, std::size_t count)
    {
        std::size_t done = 0;
        while (done < count)
        {
            if (m_runLeft == 0)
            {
                done += ReadWholeRuns(out + done, count - done);
                if (m_ended || !BeginRun())
                {
                    break;
                }
            }
            if (m_next == m_end && !Refill())
            {
                throw FormatError(Offset(), "run-length data ends within a run");
            }
            std::size_t taken = std::min(m_runLeft, count - done);
            if (m_runIsLiteral)
            {
                taken = std::min(taken, m_end - m_next);
                std::memcpy(out + done, m_block.data() + m_next, taken);
                m_next += taken;
            }
            else
            {
                std::memset(out + done, m_block[m_next], taken);
                m_next += taken == m_runLeft ? 1 : 0;
            }
            m_runLeft -= taken;
            done += taken;
        }
        return done;
    }

    /// Expands runs as long as the block holds all of the next one and `out` has room for the longest. Whether a run is
    /// literal or repeated is noise to the branch predictor, so the first stride is written the same way for both.
    std::size_t RunLengthSource::ReadWholeRuns(unsigned char* out, std::size_t count)
    {
        // Locals, since bytes written through `out` might be the members for all that the compiler knows.
        const unsigned char* token = m_block.data() + m_next;
        const unsigned char* const end = m_block.data() + m_end;
        unsigned char* to = out;
        while (out + count - to >= longestRun && end - token >= longestToken && *token != filter::runLengthEnd)
        {
            const RunLengthToken run(*token++);
            const std::uint64_t ofLiteral = run.LiteralMask();
            const std::uint64_t repeated = (*token * everyByte) & ~ofLiteral;
            for (unsigned i = 0; i < run.Run(); i += stride)
            {
                std::array<std::uint64_t, 2> bytes = {};
                static_assert(sizeof bytes == stride);
                std::memcpy(bytes.data(), token + i, stride);
                bytes = {(bytes[0] & ofLiteral) | repeated, (bytes[1] & ofLiteral) | repeated};
                std::memcpy(to + i, bytes.data(), stride);
            }
            to += run.Run();
            token += run.DataBytes();
        }
        m_next = static_cast<std::size_t>(token - m_block.data());
        return static_cast<std::size_t>(to - out);
    }

    /// False at the end of the data.
    bool RunLengthSource::BeginRun()
    {
        if (m_next == m_end && !Refill())
        {
            m_ended = true;
            return false;
        }
        const unsigned char length = m_block[m_next++];
        m_ended = length == filter::runLengthEnd;
        const RunLengthToken run(length);
        m_runIsLiteral = run.IsLiteral();
        m_runLeft = m_ended ? 0 : run.Run();
        return !m_ended;
    }

    bool RunLengthSource::Refill()
    {
        m_next = 0;
        m_end = m_encoded->Read(m_block.data(), blockSize);
        return m_end > 0;
    }
}
