// The entries that describe a preview image, as they gather while sections open: an entry of an outer section holds in
// the inner ones until they define it anew.
#pragma once

#include <cstdint>
#include <string_view>

#include "ppf/Document.h"

namespace ppf
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
        std::string_view m_width;
        std::string_view m_height;
        std::string_view m_bitsPerComponent;
        std::string_view m_components;
        std::string_view m_matrix;
        std::string_view m_resolution;
        std::string_view m_compression;
        std::string_view m_encoding;
    };
}
