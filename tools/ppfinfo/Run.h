// What the program does once the command line is read.
#pragma once

#include "host/DescriptorStream.h"
#include "host/Failure.h"
#include "ppfinfo/Options.h"

namespace PpfInfo
{
    /// Looks into the file as the options ask. What was asked for goes to `out`, all of it when this returns or throws.
    /// Throws Host::Failure with the error line if the file or an output cannot be dealt with, and about the first thing
    /// wrong with the file after everything that can be read was written. What --check finds is not a failure of the
    /// program: the result is ExitFailed then.
    Host::ExitStatus Run(const Options& options, Host::DescriptorStream& out);
}
