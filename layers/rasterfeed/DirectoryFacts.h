// What a TIFF's directory says in its own bytes: the few facts that libtiff gives only after rounding, guessing or
// allocating. The x resolution comes as the ratio that the file states and not as a float; a missing or odd photometric
// form stays missing or odd; and the bytes that a directory would make libtiff load are known before it loads them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace RasterFeed
{
    class SourceFile;

    /// The first bytes of a TIFF.
    struct TiffPreamble
    {
        bool bigEndian;               ///< numbers have their highest byte first
        bool big;                     ///< BigTIFF: 64-bit offsets and counts
        std::uint64_t firstDirectory; ///< bytes from the start of the file
    };

    /// Reads a TIFF's preamble. Throws Refusal for a file that is not a TIFF.
    TiffPreamble ReadPreamble(SourceFile& file);

    /// Whole numbers that stand one after the other in the file.
    struct NumberList
    {
        std::uint64_t position = 0; ///< of the first, bytes from the start of the file
        std::uint64_t count = 0;
        unsigned width = 0; ///< bytes of each
    };

    /// Whether images of that compression may have a predictor.
    bool HasPredictor(std::uint32_t compression);

    /// Whether a compression is one of the CCITT's.
    bool IsFax(std::uint32_t compression);

    /// The facts of one directory.
    struct DirectoryFacts
    {
        bool isReducedImage = false; ///< by the old SubfileType, where the directory has no NewSubfileType
        NumberList stripBytes;       ///< StripByteCounts as stated; libtiff replaces those that it disbelieves
        std::optional<std::uint32_t> photometric; ///< PhotometricInterpretation, as stated
        double resolution = 0;      ///< pixels per inch across; 0 if the file states none that makes sense
        double resolutionDown = 0;  ///< pixels per inch down; likewise
        std::uint64_t tagBytes = 0; ///< bytes of values outside the directory, without the lists of strips or tiles
        std::optional<std::uint32_t> compression; ///< Compression, as stated; 0 for one that is not a whole number
        std::optional<std::uint32_t> predictor;   ///< Predictor, as stated; 0 for one that is not a whole number
        std::optional<std::uint32_t> faxOptions;  ///< T4Options, as stated
        /// The entries that say how the image is stored, each as it stands in the file. Compressions other than none and
        /// JPEG are PackBits here, and have no entries of their own.
        std::string formEntries;
        std::optional<std::uint32_t> inkSet; ///< InkSet, as stated
        NumberList extraSamples;             ///< ExtraSamples
        NumberList inkNames;                 ///< the bytes of InkNames
        NumberList pageName;                 ///< the bytes of PageName
        NumberList imageResources;           ///< the bytes of the image resources, tag 34377
        std::uint64_t entries = 0;           ///< how many it has
        std::uint64_t next = 0;              ///< the next directory, bytes from the start of the file; 0 for none
    };

    /// A value that libtiff would have to allocate more for than this is never loaded: its tag is passed over, or, where the
    /// image needs the tag, the file is refused. Bytes.
    constexpr std::uint64_t LargestTag = 16ull * 1024 * 1024;

    /// The bytes of a directory of `entries`, each as it stands in a file of that preamble, with none after it.
    std::string DirectoryBytes(const TiffPreamble& preamble, const std::string& entries);

    /// The number at `index`, less than the list's count. Throws Refusal if the file ends before it.
    std::uint64_t
    NumberInList(SourceFile& file, const TiffPreamble& preamble, const NumberList& list, std::uint64_t index);

    /// The next directory after that at `offset`, bytes from the start of the file; 0 for none. Throws Refusal if that at
    /// `offset` cannot be one.
    std::uint64_t NextDirectory(SourceFile& file, const TiffPreamble& preamble, std::uint64_t offset);

    /// Reads the directory at `offset`. A value of more than largestTag bytes does not count in tagBytes. Throws Refusal if the
    /// file ends inside the directory.
    DirectoryFacts ReadDirectoryFacts(SourceFile& file, const TiffPreamble& preamble, std::uint64_t offset);
}
