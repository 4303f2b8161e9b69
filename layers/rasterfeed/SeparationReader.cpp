// From directory to plan, from rows to lines, and from stored order to upright.
#include "rasterfeed/SeparationReader.h"

#include "rasterfeed/Refusal.h"

#include <string>

namespace RasterFeed
{
    SeparationReader::SeparationReader(const RasterFeedCallbacks& callbacks, const char* name)
        : source(callbacks, name)
    {
        file.emplace(source);
    }

    void SeparationReader::ReadHeader()
    {
        file->SelectImage();
        form = InspectForm(*file);
        file->UseCodec();
        rows = MakeRowSource(*file, form, PlanDecoding(*file, form));
        expansion.emplace(form.bits, form.inverted, form.mirrored, form.width);
        if (!expansion->WorksInPlace())
        {
            packedRow.reset(new unsigned char[static_cast<std::size_t>(form.RowBytes())]);
        }
        units = ExpressWidth(form.width, form.resolution);
    }

    void SeparationReader::ReadLine(unsigned char* line)
    {
        if (nextLine >= form.height)
        {
            throw Refusal("no line is left; as many are read as there are");
        }
        const std::uint32_t row = form.bottomUp ? form.height - 1 - nextLine : nextLine;
        try
        {
            expansion->Expand(rows->Row(row, packedRow ? packedRow.get() : line), line);
        }
        catch (const Refusal& refusal)
        {
            throw Refusal(
                "line " + std::to_string(nextLine + 1) + " of " + std::to_string(form.height) + ": " + refusal.what());
        }
        ++nextLine;
    }

    void SeparationReader::Close()
    {
        rows.reset();
        file.reset();
        source.Close();
    }
}
