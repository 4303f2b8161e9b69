// The one place in which the type information of the failures' root is emitted.
#include "rasteroutput/TarnelException.h"

namespace Tarnel
{
    Exception::~Exception() = default;

    std::string Exception::LocalisedMessage() const
    {
        return what();
    }
}
