// Opening the TIFF reader on a separation, and ending it on every path.
#pragma once

#include <RasterFeedLib.h>

#include <string>

namespace Sheetvane
{
    /// A reader on the file at `path`, never null; the caller ends it. Throws KX_ECIP3Exception TiffNotOpened, also for
    /// a path that does not fit the reader's record (1024 bytes or more), and what the callbacks throw.
    RasterFeedHandle OpenTiffReader(const std::string& path);

    /// Scoped owner of a reader.
    class TiffReaderGuard
    {
    public:
        explicit TiffReaderGuard(RasterFeedHandle theReader)
            : reader(theReader)
        {
        }
        ~TiffReaderGuard();
        TiffReaderGuard(const TiffReaderGuard&) = delete;
        TiffReaderGuard& operator=(const TiffReaderGuard&) = delete;

        RasterFeedHandle Get() const { return reader; }

    private:
        RasterFeedHandle reader;
    };
}
