// The one way this layer says no to a file. It stands apart from the callbacks' failures, which pass through the layer
// unchanged: a refusal never leaves it, and becomes a result or a reason at its border.
#pragma once

#include <stdexcept>

namespace RasterFeed
{
    /// A file that cannot be a separation. what() is one line without the file's name: what was found; what is accepted.
    class Refusal : public std::runtime_error
    {
    public:
        using std::runtime_error::runtime_error;
    };
}
