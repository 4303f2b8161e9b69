// The one way in which these tests look at failures. It tells apart nothing thrown, another class and another text.
#pragma once

#include "rasteroutput/Exception.h"

#include <gmock/gmock.h>

namespace RasterOutputTest
{
    /// Matches a callable that throws RasterOutput::Exception with exactly this text.
    inline auto FailsWith(const char* text)
    {
        return testing::Throws<RasterOutput::Exception>(
            testing::Property("what", &RasterOutput::Exception::what, testing::StrEq(text)));
    }
}
