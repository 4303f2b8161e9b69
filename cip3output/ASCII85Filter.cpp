// ASCII85 encoding: the groups that cross from call to call, and the last one.
#include "cip3output/ASCII85Filter.h"

#include "cip3output/kernels/ASCII85.h"

#include <algorithm>

namespace RasterOutput
{
    using PpfFormat::ASCII85DigitCount;
    using PpfFormat::ASCII85GroupSize;

    DataRef ASCII85Filter::Filter(const DataRef& input)
    {
        // One byte can complete a group, so that twice the input is not always enough.
        GrowFilterOutput(output, input.size(), RoomFor(input.size()));
        return FilledPart(output, FilterInto(input, output.begin));
    }

    std::size_t ASCII85Filter::RoomFor(std::size_t inputSize) const noexcept
    {
        return (count + inputSize) / ASCII85GroupSize * ASCII85DigitCount;
    }

    unsigned char* ASCII85Filter::FilterInto(const DataRef& input, unsigned char* room) noexcept
    {
        const unsigned char* next = input.begin;
        if (count != 0 && count + input.size() >= ASCII85GroupSize)
        {
            const std::size_t missing = ASCII85GroupSize - count;
            std::copy_n(next, missing, group.begin() + count);
            next += missing;
            count = 0;
            room = Kernels::EncodeASCII85(group.data(), 1, room);
        }
        const std::size_t groups = static_cast<std::size_t>(input.end - next) / ASCII85GroupSize;
        room = Kernels::EncodeASCII85(next, groups, room);
        next += groups * ASCII85GroupSize;

        std::copy(next, static_cast<const unsigned char*>(input.end), group.begin() + count);
        count += static_cast<std::uint32_t>(input.end - next);
        return room;
    }

    DataRef ASCII85Filter::Finish()
    {
        GrowFilterOutput(output, 0, ASCII85DigitCount);
        unsigned char* end = output.begin;
        if (count != 0)
        {
            // Never the short form: a decoder reads only as many digits as there are bytes, and one more.
            std::fill(group.begin() + count, group.end(), static_cast<unsigned char>(0));
            Kernels::EncodeASCII85Digits(group.data(), output.begin);
            end += count + 1;
            count = 0;
        }
        return FilledPart(output, end);
    }
}
