// Host values become plain ones: bytes up to the first zero byte, not transcoded. Host objects are only read here and
// never kept.
#pragma once

#include <string>
#include <vector>

class KX_TArray;
class KX_TString;

namespace Sheetvane
{
    /// The bytes of `text` before its first zero byte.
    std::string TextOf(const KX_TString& text);

    /// The elements of `names`, each a KX_TString. Throws what the object library throws if one is not.
    std::vector<std::string> NamesOf(const KX_TArray& names);

    /// The local names of the elements of `locations`, each a KX_TURL. Throws what the object library throws if one is
    /// not, or has no local name. Nothing is normalised.
    std::vector<std::string> LocalPathsOf(const KX_TArray& locations);
}
