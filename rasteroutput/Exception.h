// The failure that the raster framework's own code throws: a text and nothing else.
#pragma once

#include "rasteroutput/TarnelException.h"

#include <string>

namespace RasterOutput
{
    /// Failure of the framework itself. Can be caught as itself and as Tarnel::Exception.
    class SHEETVANE_EXPORT Exception : public Tarnel::Exception
    {
    public:
        /// `text` says what failed; it is copied. May throw std::bad_alloc.
        explicit Exception(const std::string& text);
        Exception(const Exception&);
        Exception& operator=(const Exception&);
        ~Exception() override;

        const char* what() const noexcept override;
        const char* ModuleName() const noexcept override;
        std::string LocalisedMessage() const override;

    private:
        std::string message;
    };
}
