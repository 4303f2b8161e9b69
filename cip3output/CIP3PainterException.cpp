// Construction and texts of the painter's failure.
#include "cip3output/CIP3PainterException.h"

namespace RasterOutput
{
    CIP3PainterException::CIP3PainterException(const char* failureText, std::int32_t failureCode)
        : code(failureCode)
        , message(failureText)
    {
    }

    CIP3PainterException::CIP3PainterException(const char* failureText, CIP3PainterFailure failure)
        : CIP3PainterException(failureText, static_cast<std::int32_t>(failure))
    {
    }

    CIP3PainterException::CIP3PainterException(const CIP3PainterException&) = default;

    CIP3PainterException::~CIP3PainterException() = default;

    const char* CIP3PainterException::what() const noexcept
    {
        return message.c_str();
    }

    const char* CIP3PainterException::ModuleName() const noexcept
    {
        return "CIP3Painter";
    }
}
