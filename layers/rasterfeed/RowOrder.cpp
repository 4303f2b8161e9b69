#include "rasterfeed/RowOrder.h"

#include "rasterfeed/Refusal.h"

#include <string>
#include <utility>

namespace RasterFeed
{
    RowOrder::RowOrder(std::unique_ptr<RowSource> rows, std::uint32_t count, bool lastFirst)
        : source(std::move(rows))
        , height(count)
        , fromBottom(lastFirst)
    {
    }

    const unsigned char* RowOrder::Next(unsigned char* space)
    {
        if (taken >= height)
        {
            throw Refusal("no line is left; as many are read as there are");
        }
        try
        {
            const unsigned char* const row = source->Row(fromBottom ? height - 1 - taken : taken, space);
            ++taken;
            return row;
        }
        catch (const Refusal& refusal)
        {
            throw Refusal(
                "line " + std::to_string(taken + 1) + " of " + std::to_string(height) + ": " + refusal.what());
        }
    }
}
