// The one way in which these tests look at the painter's failures. It tells apart nothing thrown, another class, another
// text and another code.
#pragma once

#include "cip3output/CIP3PainterException.h"

#include <gmock/gmock.h>

namespace CIP3OutputTest
{
    /// Matches a callable that throws CIP3PainterException with exactly this text and code.
    inline auto FailsWith(const char* text, std::int32_t code)
    {
        using RasterOutput::CIP3PainterException;
        return testing::Throws<CIP3PainterException>(testing::AllOf(
            testing::Property("what", &CIP3PainterException::what, testing::StrEq(text)),
            testing::Property("Code", &CIP3PainterException::Code, code)));
    }
}
