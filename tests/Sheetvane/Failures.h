// One way to look at a failure of the converter: class, exact text, and what came instead.
#pragma once

#include <Sheetvane/KX_ECIP3Exception.h>

#include <gtest/gtest.h>

#include <exception>
#include <string>

namespace SheetvaneTest
{
    /// Text of the KX_ECIP3Exception that `action` throws; what happened instead, in brackets, if it throws none.
    template <class Action>
    std::string FailureOf(Action action)
    {
        try
        {
            action();
        }
        catch (const KX_ECIP3Exception& failure)
        {
            EXPECT_STREQ(failure.ClassName(), "KX_ECIP3Exception");
            EXPECT_STREQ(failure.KX_ExceptionFile(), "Sheetvane/Private/Source/Sheetvane");
            EXPECT_NE(failure.KX_ExceptionLine(), 0u);
            return failure.KX_Message().c_str();
        }
        catch (const KX_EException& failure)
        {
            return std::string("[KX_EException: ") + failure.KX_Message().c_str() + "]";
        }
        catch (const std::exception& failure)
        {
            return std::string("[std::exception: ") + failure.what() + "]";
        }
        catch (...)
        {
            return "[something else]";
        }
        return "[nothing]";
    }
}
