// Is a file what it should be? The structure comes from the reader; here the parts are held against each other: the
// directory against the sections, the previews against their sizes, the names against the previews.
#pragma once

#include "ppf/Document.h"

#include <string>
#include <string_view>
#include <vector>

namespace Ppf
{
    enum class CheckDepth
    {
        /// Sections, directory, end marks and closing comment, at about the speed of a search for one byte. Every
        /// writer can afford it after each file.
        Structure,
        /// The same, and the decoded size of every preview is held against its width and height. Pixels are made of JPEG
        /// data only. What a writer can hold its own file against, whatever values it was given to write.
        Sizes,
        /// The same, and the values of entries, the sides of sheets and the form of data are what the format asks for.
        Everything
    };

    /// What is wrong with a document that was read, in the order of the file. An empty list: it is well formed.
    std::vector<Finding> Check(const Document& document, CheckDepth depth);

    /// The same for the bytes of a file.
    std::vector<Finding> Check(std::string_view bytes, CheckDepth depth);
}
