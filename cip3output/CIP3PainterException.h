// The painter's failure. A sibling of RasterOutput::Exception, not a kind of it: a handler for one does not catch the
// other.
#pragma once

#include "cip3output/CIP3PainterFailure.h"
#include "cip3output/LocalisableException.h"

#include <cstdint>
#include <string>

namespace RasterOutput
{
    /// Thrown by value, caught by constant reference, as itself or as any of its bases.
    class CIP3PainterException
        : public Tarnel::LocalisableException<CIP3PainterException, Tarnel::Localiser<CIP3PainterException>>,
          public Tarnel::ExceptionParams
    {
    public:
        /// `failureText` is zero-terminated and copied. May throw std::bad_alloc.
        CIP3PainterException(const char* failureText, std::int32_t failureCode);
        CIP3PainterException(const char* failureText, CIP3PainterFailure failure);
        CIP3PainterException(const CIP3PainterException&);
        CIP3PainterException& operator=(const CIP3PainterException&) = default;
        ~CIP3PainterException() override;

        const char* what() const noexcept override;
        const char* ModuleName() const noexcept override;

        /// The failure's number, one of CIP3PainterFailure.
        std::int32_t Code() const noexcept { return code; }

    private:
        std::int32_t code;
        std::string message;
    };
}
