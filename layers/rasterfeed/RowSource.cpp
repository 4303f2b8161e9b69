// One source for each way from the file to rows.
#include "rasterfeed/RowSource.h"

#include "rasterfeed/ScanlineRows.h"
#include "rasterfeed/StoredRows.h"
#include "rasterfeed/StripRows.h"
#include "rasterfeed/TileRows.h"

namespace RasterFeed
{
    std::unique_ptr<RowSource> MakeRowSource(TiffFile& file, const SeparationForm& form, const DecodePlan& plan)
    {
        switch (plan.way)
        {
        case DecodeWay::Stored:
            return std::make_unique<StoredRows>(file, form);
        case DecodeWay::Scanlines:
            return std::make_unique<ScanlineRows>(file, form);
        case DecodeWay::Strips:
            return std::make_unique<StripRows>(file, form, plan.blockBytes);
        case DecodeWay::Tiles:
            break;
        }
        return std::make_unique<TileRows>(file, form, plan.blockBytes);
    }
}
