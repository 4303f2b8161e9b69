// An output that is written directly: a device, a pipe, or whatever standard output is connected to.
#pragma once

#include "Descriptor.h"
#include "Output.h"

namespace Tiff2Ppf
{
    class StreamOutput : public Output
    {
    public:
        /// Takes over the open descriptor `stream`. The work file is in the folder for temporary files. Throws
        /// ConversionError.
        StreamOutput(const std::string& name, int stream);

        /// Copies the work file.
        void Publish() override;

    private:
        Descriptor m_stream;
    };
}
