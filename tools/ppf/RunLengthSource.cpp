#include "ppf/RunLengthSource.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "ppf/Failure.h"
#include "ppf/Keywords.h"

namespace ppf
{
    namespace
    {
        constexpr std::size_t blockSize = 64u << 10;
        constexpr std::size_t longestRun = 128;
        /// Bytes that runs are copied by where there is room to write beyond their end.
        constexpr std::size_t stride = 16;
        constexpr std::size_t longestToken = 1 + longestRun;
    }

    RunLengthSource::RunLengthSource(std::unique_ptr<ByteSource> encoded)
        : m_encoded(std::move(encoded))
        , m_block(blockSize + stride)
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

    /// Expands runs as long as the block holds all of the next one and `out` has room for the longest.
    std::size_t RunLengthSource::ReadWholeRuns(unsigned char* out, std::size_t count)
    {
        std::size_t done = 0;
        while (count - done >= longestRun + stride && m_end - m_next >= longestToken)
        {
            const unsigned char* const token = m_block.data() + m_next;
            const unsigned length = token[0];
            if (length == filter::runLengthEnd)
            {
                break;
            }
            if (length < filter::runLengthEnd)
            {
                const std::size_t run = length + 1;
                for (std::size_t i = 0; i < run; i += stride)
                {
                    std::memcpy(out + done + i, token + 1 + i, stride);
                }
                done += run;
                m_next += 1 + run;
            }
            else
            {
                const std::size_t run = filter::runLengthRepeatBase - length;
                for (std::size_t i = 0; i < run; i += stride)
                {
                    std::memset(out + done + i, token[1], stride);
                }
                done += run;
                m_next += 2;
            }
        }
        return done;
    }

    /// False at the end of the data.
    bool RunLengthSource::BeginRun()
    {
        if (m_next == m_end && !Refill())
        {
            m_ended = true;
            return false;
        }
        const unsigned length = m_block[m_next++];
        m_ended = length == filter::runLengthEnd;
        m_runIsLiteral = length < filter::runLengthEnd;
        m_runLeft = m_ended ? 0 : m_runIsLiteral ? length + 1 : filter::runLengthRepeatBase - length;
        return !m_ended;
    }

    bool RunLengthSource::Refill()
    {
        m_next = 0;
        m_end = m_encoded->Read(m_block.data(), blockSize);
        return m_end > 0;
    }
}
