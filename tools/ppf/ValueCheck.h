// Are the values of a document's entries of the form that the format gives them? Apart from the check of the structure,
// since a file can be read whatever they are.
#pragma once

#include "ppf/Document.h"

#include <vector>

namespace Ppf
{
    /// What is wrong with the version, and with the entries of sheets and sides; previews have their own in the reader.
    std::vector<Finding> CheckValues(const Document& document);
}
