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
        GrowFilterOutput(output, input.size(), (count + input.size()) / ASCII85GroupSize * ASCII85DigitCount);
        unsigned char* end = output.begin;
        const unsigned char* next = input.begin;
        if (count != 0 && count + input.size() >= ASCII85GroupSize)
        {
            const std::size_t missing = ASCII85GroupSize - count;
            std::copy_n(next, missing, group.begin() + count);
            next += missing;
            count = 0;
            end = Kernels::EncodeASCII85(group.data(), 1, end);
        }
        const std::size_t groups = static_cast<std::size_t>(input.end - next) / ASCII85GroupSize;
        end = Kernels::EncodeASCII85(next, groups, end);
        next += groups * ASCII85GroupSize;

        std::copy(next, static_cast<const unsigned char*>(input.end), group.begin() + count);
        count += static_cast<std::uint32_t>(input.end - next);
        return FilledPart(output, end);
    }

    DataRef ASCII85Filter::Finish()
    {
        GrowFilterOutput(output, 0, ASCII85DigitCount + PpfFormat::EndOfASCII85Data.size());
        unsigned char* end = output.begin;
        if (count != 0)
        {
            // Never the short form: a decoder reads only as many digits as there are bytes, and one more.
            std::fill(group.begin() + count, group.end(), static_cast<unsigned char>(0));
            Kernels::EncodeASCII85Digits(group.data(), end);
            end += count + 1;
            count = 0;
        }
        return FilledPart(output, Put(PpfFormat::EndOfASCII85Data, end));
    }
}
