// Out of line throughout, so that the class and its type information exist once, in this library.
#include "rasteroutput/Exception.h"

namespace RasterOutput
{
    Exception::Exception(const std::string& text)
        : message(text)
    {
    }
    Exception::Exception(const Exception&) = default;
    Exception& Exception::operator=(const Exception&) = default;
    Exception::~Exception() = default;

    const char* Exception::what() const noexcept
    {
        return message.c_str();
    }

    // The spelling is part of the interface: hosts may compare it.
    const char* Exception::ModuleName() const noexcept
    {
        return "Raster Ouptput framework";
    }

    std::string Exception::LocalisedMessage() const
    {
        return message;
    }
}
