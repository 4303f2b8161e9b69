// What a signal that ends the program has to end and to remove: Ghostscript, and the private folder with what it wrote.
// Everything here may be called by a signal's handler, so it takes no memory and no lock.
#pragma once

#include <sys/types.h>

namespace Pdf2Ppf
{
    /// From now on signals end the process group `group`; 0: none. Its leader is a child of this process.
    void EndOnSignal(pid_t group) noexcept;

    /// From now on signals remove the folder at `path`, open as `folder`, with all the files in it. Both stay valid until
    /// ForgetFolder. One folder at a time.
    void RemoveFolderOnSignal(int folder, const char* path) noexcept;

    void ForgetFolder() noexcept;

    /// Removes all files in the open folder `folder`.
    void EmptyFolder(int folder) noexcept;
}
