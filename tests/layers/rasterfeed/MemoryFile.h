// A file in memory below the reader's callbacks, with faults on order. It stands in for a host: the reader under test
// gets its bytes, its failures and its exceptions from here.
#pragma once

#include <RasterFeedLib.h>

#include <cstdint>
#include <string>

namespace RasterFeedTest
{
    /// What the callbacks throw, so that no other failure can be taken for it.
    struct HostFailure
    {
        std::string from; ///< the callback: "open", "read", "close", "failure"
    };

    /// What goes wrong, and at which call (from 1; 0 for never).
    struct HostFaults
    {
        bool openThrows = false;
        bool isMissing = false; ///< the block has no file: every access gives -1
        int readFails = 0;      ///< this read gives -1
        int readThrows = 0;     ///< this read throws
        int shrinksAt = 0;      ///< from this read on the file is only `shrunkenSize` long
        std::size_t shrunkenSize = 0;
        bool closeThrows = false;
    };

    /// The one file of the running test. The callbacks are plain functions, so its state is static.
    class MemoryFile
    {
    public:
        static void Reset(std::string bytes, const HostFaults& faults = {});

        static int Opened(); ///< calls of `open` that gave a file
        static int Closed(); ///< calls of `close`
        static int Reads();  ///< calls of `read`

        /// A record with the callbacks of this file.
        static RasterFeedOpenRecord Record(const char* name = "memory.tif");
    };
}
