// File access for the TIFF reader, as the six plain functions that it calls back, and the events it reports.
#pragma once

#include <RasterFeedLib.h>

namespace Sheetvane
{
    /// A block on the file `name`; ".tif" is tried where that has no extension. Whether the file opened shows in the
    /// first access. Throws KX_ECIP3Exception NoFileHandle.
    FileBlock OpenSeparationFile(const char* name);

    std::int64_t SeekSeparationFile(FileBlock block, std::uint32_t position);

    constexpr auto ReadSeparationFile = &FileBlockRead;

    /// Closes the file and ends its block.
    std::int32_t CloseSeparationFile(FileBlock block);

    void IgnoreSeparationEvent();

    /// Throws KX_ECIP3Exception FileAccessFailed.
    [[noreturn]] void FailSeparationRead();

    constexpr RasterFeedCallbacks SeparationCallbacks = {&OpenSeparationFile,    &SeekSeparationFile,
                                                         ReadSeparationFile,     &CloseSeparationFile,
                                                         &IgnoreSeparationEvent, &FailSeparationRead};
}
