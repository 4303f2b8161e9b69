// Faults of the operating system below the file layer. The test program is linked so that the layer's calls of the functions
// below come here first (--wrap); without an order they go on to the system.
#pragma once

#include <cstddef>

/// Orders for the calls to come. A call that is not ordered is the system's own.
struct SystemFaults
{
    int openInterruptions = 0;   ///< open fails this often with EINTR
    int readInterruptions = 0;   ///< pread fails this often with EINTR
    std::size_t longestRead = 0; ///< pread gives no more than this at once; 0: no limit
    int readError = 0;           ///< pread fails with this errno value
    int fstatError = 0;          ///< fstat fails with this errno value
    int closeError = 0;          ///< close reports this errno value, having closed
};

/// The orders in force.
SystemFaults& Faults();

/// Files that this process has open.
int OpenFiles();
