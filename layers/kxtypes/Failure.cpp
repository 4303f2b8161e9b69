// The library's own failures are of the root class: hosts read the message.
#include "kxtypes/Failure.h"

#include <kxtypes.h>

namespace KxTypes
{
    void ThrowFailure(const std::string& message, std::uint32_t line, const char* file)
    {
        throw KX_EException(KX_EException(KX_TString(message.c_str())).__PREPARE_FOR_THROW__(line, file));
    }
}
