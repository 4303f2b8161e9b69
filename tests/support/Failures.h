// What a test sees of a failure: its class and its exact text, or that there is none.
#pragma once

#include <string>

namespace TestSupport
{
    /// The text of the `Failure` that `action` throws; "no failure" if it throws nothing. Another exception passes through.
    template <class Failure, class Action>
    std::string FailureOf(Action action)
    {
        try
        {
            action();
        }
        catch (const Failure& failure)
        {
            return failure.what();
        }
        return "no failure";
    }
}
