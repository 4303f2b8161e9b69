// Edits the first directory of a TIFF in memory: the way to files that no writer would make. Every damage in the tests is a
// sound file with one such edit.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace TestSupport
{
    /// A TIFF of either byte order, classic or BigTIFF. (Set | SetRaw | Remove | SetNext)* Bytes
    class TiffEditor
    {
    public:
        explicit TiffEditor(std::string tiff);

        /// Gives `tag` these values, of the whole-number type `type`, instead of those it has, if any.
        void Set(std::uint16_t tag, std::uint16_t type, const std::vector<std::uint64_t>& values);

        /// Gives `tag` an entry that claims `count` values, with `offset` in the place of the value or its offset.
        void SetRaw(std::uint16_t tag, std::uint16_t type, std::uint64_t count, std::uint64_t offset);

        void Remove(std::uint16_t tag);

        /// Claims that the next directory is at `offset`.
        void SetNext(std::uint64_t offset) { next = offset; }

        /// Value `index` of `tag`, of a whole-number type.
        std::uint64_t Get(std::uint16_t tag, std::size_t index = 0) const;

        /// Where the edited directory will be in Bytes().
        std::uint64_t DirectoryOffset() const { return bytes.size(); }

        /// The file with the edited directory after everything else.
        std::string Bytes() const;

    private:
        struct Entry
        {
            std::uint16_t tag;
            std::uint16_t type;
            std::uint64_t count;
            std::string field; ///< the value or its offset, as in the file
        };

        std::uint64_t Number(const std::string& text, std::size_t position, unsigned width) const;
        std::string Encode(std::uint64_t number, unsigned width) const;
        void Replace(const Entry& entry);

        std::string bytes;
        bool bigEndian;
        bool big;
        unsigned word; ///< bytes of an offset
        std::vector<Entry> entries;
        std::uint64_t next;
    };
}
