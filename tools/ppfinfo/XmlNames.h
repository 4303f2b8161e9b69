// Names of a job as names of a document in XML: any text can stand in a job file, but only some in such a document.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace PpfInfo
{
    /// What a document takes for a name.
    enum class NameForm
    {
        Text, ///< characters that print, of a bounded number
        Token ///< the letters, digits and "._:-" that an NMTOKEN takes
    };

    /// A text of any bytes as an attribute can hold it: what is not UTF-8 as ISO 8859-1, control characters as \xNN.
    std::string XmlText(std::string_view bytes);

    /// For each name one of the form: the name itself where it fits, or else one that is like it. No two are alike, also
    /// where two of the names are.
    std::vector<std::string> DistinctNames(const std::vector<std::string>& names, NameForm form);

    /// The name of a job for a document that is read beside those of other jobs: itself where it fits, or else one that is
    /// like it and ends in a number that depends on every byte of it.
    std::string JobIdOf(const std::string& name, NameForm form);
}
