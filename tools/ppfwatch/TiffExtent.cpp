#include "ppfwatch/TiffExtent.h"

#include "host/Descriptor.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <set>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace PpfWatch
{
    namespace
    {
        // The first bytes of a file, and the tags that say where its data lies.
        constexpr std::uint64_t VersionClassic = 42;
        constexpr std::uint64_t VersionBig = 43;
        constexpr std::uint64_t TagStripOffsets = 273;
        constexpr std::uint64_t TagStripByteCounts = 279;
        constexpr std::uint64_t TagTileOffsets = 324;
        constexpr std::uint64_t TagTileByteCounts = 325;

        /// Bytes of one value of a field, by the field's type; 0 for a type that is none.
        constexpr std::array<std::uint64_t, 19> TypeBytes = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 0, 0, 8, 8, 8};

        /// More directories than any file has pages: a chain that is longer is not followed further.
        constexpr std::size_t MaxDirectories = 10000;

        /// What stops the look, with what it found.
        struct Found
        {
            TiffExtent extent;
        };

        /// The bytes of the file, in its own order.
        class Reader
        {
        public:
            explicit Reader(const std::string& path)
                : file(Host::Uninterrupted(
                      [&] { return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }))
            {
                struct stat status = {};
                if (!file.IsOpen() || fstat(file.Number(), &status) != 0 || !S_ISREG(status.st_mode))
                {
                    throw Found{TiffExtent::NoTiff};
                }
                size = static_cast<std::uint64_t>(status.st_size);
            }

            /// Throws Found if not all of these bytes are there.
            void Demand(std::uint64_t offset, std::uint64_t bytes) const
            {
                if (bytes > size || offset > size - bytes)
                {
                    throw Found{TiffExtent::Growing};
                }
            }

            std::vector<unsigned char> Bytes(std::uint64_t offset, std::uint64_t count) const
            {
                Demand(offset, count);
                std::vector<unsigned char> bytes(count);
                std::size_t got = 0;
                while (got < count)
                {
                    const ssize_t next = Host::Uninterrupted(
                        [&]
                        { return pread(file.Number(), &bytes[got], count - got, static_cast<off_t>(offset + got)); });
                    if (next <= 0)
                    {
                        throw Found{next < 0 ? TiffExtent::NoTiff : TiffExtent::Growing};
                    }
                    got += static_cast<std::size_t>(next);
                }
                return bytes;
            }

            std::uint64_t Number(const unsigned char* bytes, std::uint64_t count) const
            {
                std::uint64_t value = 0;
                for (std::uint64_t i = 0; i < count; ++i)
                {
                    value = value << 8U | bytes[isBigEndian ? i : count - 1 - i];
                }
                return value;
            }

            std::uint64_t Size() const { return size; }

            bool isBigEndian = false;

        private:
            Host::Descriptor file;
            std::uint64_t size = 0;
        };

        /// A field with the numbers that it holds, wherever they lie.
        struct Numbers
        {
            std::uint64_t offset = 0;
            std::uint64_t count = 0;
            std::uint64_t bytesEach = 0;
        };

        class Directories
        {
        public:
            explicit Directories(Reader& theReader)
                : reader(theReader)
            {
            }

            void Check()
            {
                std::uint64_t next = FirstDirectory();
                std::set<std::uint64_t> seen;
                while (next != 0 && seen.size() < MaxDirectories && seen.insert(next).second)
                {
                    next = CheckDirectory(next);
                }
            }

        private:
            std::uint64_t FirstDirectory()
            {
                constexpr std::uint64_t HeadBytes = 8;
                const std::vector<unsigned char> head = reader.Bytes(0, std::min(HeadBytes, reader.Size()));
                for (std::size_t i = 0; i < std::min<std::size_t>(head.size(), 2); ++i)
                {
                    if ((head[i] != 'I' && head[i] != 'M') || head[i] != head[0])
                    {
                        throw Found{TiffExtent::NoTiff};
                    }
                }
                reader.Demand(0, HeadBytes);
                reader.isBigEndian = head[0] == 'M';
                const std::uint64_t version = reader.Number(&head[2], 2);
                if (version != VersionClassic && version != VersionBig)
                {
                    throw Found{TiffExtent::NoTiff};
                }
                isBig = version == VersionBig;
                const std::uint64_t first =
                    isBig ? reader.Number(reader.Bytes(HeadBytes, 8).data(), 8) : reader.Number(&head[4], 4);
                if (first == 0)
                {
                    // A writer puts the place of the directory in when it has written it.
                    throw Found{TiffExtent::Growing};
                }
                return first;
            }

            /// Gives the offset of the next one.
            std::uint64_t CheckDirectory(std::uint64_t offset)
            {
                const std::uint64_t countBytes = isBig ? 8 : 2;
                const std::uint64_t entryBytes = isBig ? 20 : 12;
                const std::uint64_t offsetBytes = isBig ? 8 : 4;
                const std::uint64_t count = reader.Number(reader.Bytes(offset, countBytes).data(), countBytes);
                constexpr std::uint64_t MaxEntries = 65535;
                if (count == 0 || count > MaxEntries)
                {
                    throw Found{TiffExtent::NoTiff};
                }
                const std::vector<unsigned char> entries =
                    reader.Bytes(offset + countBytes, count * entryBytes + offsetBytes);
                Numbers offsets;
                Numbers sizes;
                for (std::uint64_t i = 0; i < count; ++i)
                {
                    const unsigned char* const entry = &entries[i * entryBytes];
                    const std::uint64_t tag = reader.Number(entry, 2);
                    const std::uint64_t entryOffset = offset + countBytes + i * entryBytes;
                    const Numbers numbers = CheckEntry(entry, entryOffset, offsetBytes);
                    if (tag == TagStripOffsets || tag == TagTileOffsets)
                    {
                        offsets = numbers;
                    }
                    else if (tag == TagStripByteCounts || tag == TagTileByteCounts)
                    {
                        sizes = numbers;
                    }
                }
                CheckData(offsets, sizes);
                return reader.Number(&entries[count * entryBytes], offsetBytes);
            }

            /// Checks that the field's values are in the file; gives where.
            Numbers CheckEntry(const unsigned char* entry, std::uint64_t entryOffset, std::uint64_t offsetBytes) const
            {
                const std::uint64_t type = reader.Number(entry + 2, 2);
                const std::uint64_t bytesEach = type < TypeBytes.size() ? TypeBytes[type] : 0;
                const std::uint64_t count = reader.Number(entry + 4, offsetBytes);
                if (bytesEach == 0)
                {
                    return {}; // of a type that nobody knows: whoever reads the file passes over it
                }
                if (count > reader.Size())
                {
                    throw Found{TiffExtent::Growing};
                }
                const bool isInPlace = count * bytesEach <= offsetBytes;
                const std::uint64_t place = 4 + offsetBytes;
                const std::uint64_t offset =
                    isInPlace ? entryOffset + place : reader.Number(entry + place, offsetBytes);
                reader.Demand(offset, count * bytesEach);
                return {offset, count, bytesEach};
            }

            /// Checks that every piece of the image's data lies in the file.
            void CheckData(const Numbers& offsets, const Numbers& sizes) const
            {
                constexpr std::uint64_t AtOnce = 8192;
                for (std::uint64_t first = 0; first < offsets.count; first += AtOnce)
                {
                    const std::vector<std::uint64_t> begins = ValuesOf(offsets, first, AtOnce);
                    const std::vector<std::uint64_t> lengths = ValuesOf(sizes, first, AtOnce);
                    for (std::size_t i = 0; i < begins.size(); ++i)
                    {
                        reader.Demand(begins[i], i < lengths.size() ? lengths[i] : 0);
                    }
                }
            }

            /// Up to `most` of the numbers, from the one at `first`.
            std::vector<std::uint64_t> ValuesOf(const Numbers& numbers, std::uint64_t first, std::uint64_t most) const
            {
                std::vector<std::uint64_t> values;
                if (first >= numbers.count)
                {
                    return values;
                }
                const std::uint64_t count = std::min(most, numbers.count - first);
                const std::uint64_t each = numbers.bytesEach;
                const std::vector<unsigned char> bytes = reader.Bytes(numbers.offset + first * each, count * each);
                for (std::uint64_t i = 0; i < count; ++i)
                {
                    values.push_back(reader.Number(&bytes[i * each], each));
                }
                return values;
            }

            Reader& reader;
            bool isBig = false;
        };
    }

    TiffExtent ExtentOfTiff(const std::string& path)
    {
        try
        {
            Reader reader(path);
            Directories(reader).Check();
            return TiffExtent::Whole;
        }
        catch (const Found& found)
        {
            return found.extent;
        }
    }
}
