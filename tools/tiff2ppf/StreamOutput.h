// An output that is written directly: a device, a pipe, or whatever standard output is connected to.
#pragma once

#include "tiff2ppf/Descriptor.h"
#include "tiff2ppf/Output.h"

namespace Tiff2Ppf
{
    class StreamOutput : public Output
    {
    public:
        /// Takes over the open descriptor `stream`. The work file is in the folder for temporary files. Throws
        /// ConversionError.
        StreamOutput(const std::string& name, int theStream);

        /// Copies the work file.
        void Publish() override;

    private:
        Descriptor stream;
    };
}
