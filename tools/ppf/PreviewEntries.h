// The entries that describe a preview image, as they gather while sections open: an entry of an outer section holds in
// the inner ones until they define it anew.
#pragma once

#include "ppf/Document.h"

#include <cstdint>
#include <string_view>

namespace Ppf
{
    /// The text of the entries so far; a field whose text has no storage is not defined. Copied from a section to the
    /// ones within it.
    class PreviewEntries
    {
    public:
        /// Keeps the entry's value if its key is one of a preview image. Returns whether it is.
        bool Take(const Entry& entry);

        /// The record of a preview image whose word stands at an offset; its data and inks are left empty. Throws
        /// FormatError if an entry that reading cannot do without is missing, or its value makes no sense.
        Preview MakePreview(std::string_view bytes, std::uint64_t imageOffset) const;

    private:
        std::string_view width;
        std::string_view height;
        std::string_view bitsPerComponent;
        std::string_view components;
        std::string_view matrix;
        std::string_view resolution;
        std::string_view compression;
        std::string_view encoding;
    };
}
