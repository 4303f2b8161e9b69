// The one place where a KX_ECIP3Exception is made.
#include "frontend/Failure.h"

#include <Sheetvane/KX_ECIP3Exception.h>

#include <exception>
#include <new>

namespace Sheetvane
{
    namespace
    {
        void Throw(const char* text, std::uint32_t line)
        {
            KX_ECIP3Exception failure(KX_TString(text, KX_TString::ToTerminator));
            KX_IThrowable& prepared = failure.__PREPARE_FOR_THROW__(line, SourceUnit);
            prepared.KX_Throw();
        }
    }

    void ThrowFailure(const char* text, std::uint32_t line)
    {
        try
        {
            Throw(text, line);
        }
        catch (const std::bad_alloc&)
        {
            // Where a single allocation failed, the host still reads what went wrong.
        }
        Throw(text, line);
        std::terminate(); // never reached, which a compiler cannot see through the virtual call
    }
}
