// ppfinfo: look into a print production file, check it, and see the ink.

#include "host/DescriptorStream.h"
#include "host/Program.h"
#include "ppfinfo/Options.h"
#include "ppfinfo/Run.h"

#include <unistd.h>

namespace
{
    Host::ExitStatus Work(int argc, const char* const* argv)
    {
        const PpfInfo::CommandLine line = PpfInfo::ReadCommandLine(argc, argv);
        if (!line.answer.empty())
        {
            Host::Answer(line.answer);
            return Host::ExitDone;
        }
        Host::DescriptorStream out(STDOUT_FILENO);
        return PpfInfo::Run(line.options, out);
    }
}

int main(int argc, char** argv)
{
    return Host::RunProgram("ppfinfo", argc, argv, &Work);
}
