// The one place where a KX_ECIP3Exception is made.
#include "frontend/Failure.h"

#include <Sheetvane/KX_ECIP3Exception.h>

#include <exception>

namespace Sheetvane
{
    void ThrowFailure(const char* text, std::uint32_t line)
    {
        const KX_TString message(text, KX_TString::ToTerminator);
        KX_ECIP3Exception failure(message);
        KX_IThrowable& prepared = failure.__PREPARE_FOR_THROW__(line, SourceUnit);
        prepared.KX_Throw();
        std::terminate(); // never reached, which a compiler cannot see through the virtual call
    }
}
