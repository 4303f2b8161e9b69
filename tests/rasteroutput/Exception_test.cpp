// The two roots of the framework's failures.
#include "rasteroutput/Exception.h"

#include <gtest/gtest.h>

#include <exception>
#include <type_traits>

namespace RasterOutputTest
{
    using namespace RasterOutput;

    static_assert(!std::is_base_of_v<std::exception, Exception>);

    TEST(Exception, IsCaughtAsTheRootWithItsTextAndModule)
    {
        try
        {
            throw Exception(std::string("No ink"));
        }
        catch (const Tarnel::Exception& failure)
        {
            EXPECT_STREQ(failure.what(), "No ink");
            EXPECT_EQ(failure.LocalisedMessage(), "No ink");
            EXPECT_STREQ(failure.ModuleName(), "Raster Ouptput framework");
        }
    }

    TEST(TarnelException, MessageIsTheTextUnlessTranslated)
    {
        struct Untranslated : Tarnel::Exception
        {
            const char* what() const noexcept override { return "as it is"; }
            const char* ModuleName() const noexcept override { return "test"; }
        };
        EXPECT_EQ(Untranslated().LocalisedMessage(), "as it is");
    }
}
