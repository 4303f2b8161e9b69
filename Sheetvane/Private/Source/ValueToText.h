// The text of a host's number, as it stands in the file.
#pragma once

#include <string>

class KX_TObject;

namespace Sheetvane
{
    /// A KX_TDouble or KX_TFloat as printf's "%f" gives it in the C locale, whatever locale is set; a KX_TInt32 or
    /// KX_TUInt32 in plain decimal. Empty for anything else, and if anything at all is thrown. Never throws.
    std::string ValueToText(const KX_TObject& value) noexcept;
}
