// Ghostscript as a process of its own: started without a shell, in a process group that ends with us, with its output in
// our hands.
#pragma once

#include "host/Descriptor.h"
#include "pdf2ppf/Messages.h"

#include <array>
#include <chrono>
#include <string>
#include <vector>

#include <sys/types.h>

namespace Pdf2Ppf
{
    /// Calls: Ghostscript Listen* ExitFault. Its end ends the process.
    class Ghostscript
    {
    public:
        /// Starts `gs`, found on the PATH, with these arguments in the folder `folder`, absolute, where it keeps its
        /// temporary files, too. Throws Host::Failure.
        Ghostscript(const std::vector<std::string>& arguments, const std::string& folder);

        ~Ghostscript();
        Ghostscript(const Ghostscript&) = delete;
        Ghostscript& operator=(const Ghostscript&) = delete;

        /// Hands on to `messages` what is printed, waiting for it for `patience` at most. False once the process has ended
        /// and all is handed on. Throws Host::Failure.
        bool Listen(Messages& messages, std::chrono::milliseconds patience);

        /// How it ended, if not well, as "was ended by signal 9 (Killed)"; empty if it ended well.
        std::string ExitFault() const;

    private:
        void ReadWhatIsThere(Messages& messages, Source source);
        bool HasEnded() const;
        void Reap() noexcept;

        pid_t process = 0;                       ///< leader of its group; 0 once it is reaped
        std::array<Host::Descriptor, 2> outlets; ///< by Source; closed once the other side is
        int status = 0;                          ///< as waitpid gives it
    };
}
