// The root of the raster framework's failures. It stands apart from the standard exception class on purpose: a handler
// for that class does not catch a failure of the framework.
#pragma once

#include "rasteroutput/Export.h"

#include <string>

namespace Tarnel
{
    /// Abstract failure. Thrown by value as one of its concrete classes, caught by constant reference.
    class SHEETVANE_EXPORT Exception
    {
    public:
        Exception() = default;
        Exception(const Exception&) = default;
        Exception& operator=(const Exception&) = default;
        virtual ~Exception();

        /// The failure's text, zero-terminated; valid as long as this object.
        virtual const char* what() const noexcept = 0;

        /// Name of the module that failed, zero-terminated; valid for as long as the library is loaded.
        virtual const char* ModuleName() const noexcept = 0;

        /// The text in the user's language; what() unless a derived class translates. May throw std::bad_alloc.
        virtual std::string LocalisedMessage() const;
    };
}
