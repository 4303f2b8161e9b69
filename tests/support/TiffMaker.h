// Makes TIFF files in memory with libtiff's writer, from a description and a rule for the samples. It stands apart from the
// tests so that the fuzzer's seeds and the benchmarks are made of the same files.
#pragma once

#include <tiff.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace TestSupport
{
    /// A page of a TIFF in every form that the reader accepts, and in many that it does not.
    struct TiffForm
    {
        std::uint32_t width = 37; // no multiple of 8: rows end inside a byte
        std::uint32_t height = 23;
        std::uint16_t bits = 8;
        std::uint16_t samples = 1;
        std::uint16_t photometric = PHOTOMETRIC_MINISBLACK;
        std::uint16_t compression = COMPRESSION_NONE;
        std::uint16_t predictor = 0;   ///< 0: no tag
        std::uint32_t faxOptions = 0;  ///< T4Options
        std::uint16_t fillOrder = 0;   ///< 0: no tag
        std::uint16_t orientation = 0; ///< 0: no tag
        std::uint16_t planar = PLANARCONFIG_CONTIG;
        std::uint16_t sampleFormat = 0; ///< 0: no tag
        std::uint32_t rowsPerStrip = 5; ///< does not divide the height
        std::uint32_t tileWidth = 0;    ///< 0: strips
        std::uint32_t tileLength = 0;
        bool bigEndian = false;
        bool bigTiff = false;
        double resolution = 0;         ///< 0: no tag; the nearest ratio of 32-bit numbers
        double yResolution = 0;        ///< 0: as `resolution`
        std::uint32_t subfileType = 0; ///< 0: no tag
        std::uint16_t inkSet = 0;      ///< 0: no tag
        std::vector<std::uint16_t> extraSamples;
        std::string inkNames; ///< each with its zero; empty: no tag
        std::string pageName; ///< empty: no tag
        std::string imageResources;
    };

    /// The value of the sample at column x of stored row y, in the form's own range.
    using SampleRule = std::function<std::uint32_t(std::uint32_t x, std::uint32_t y)>;

    /// The value of a sample of a pixel, the first of which is 0.
    using InkRule = std::function<std::uint32_t(unsigned sample, std::uint32_t x, std::uint32_t y)>;

    /// A rule with long runs, single pixels and every value: what each codec finds hard.
    SampleRule MixedSamples(unsigned bits);

    /// The same, for each sample another.
    InkRule MixedInks(unsigned bits);

    /// A block of the image resources.
    std::string ImageResource(std::uint16_t identifier, const std::string& data);

    /// Names as the image resources 1045 and 1006 have them.
    std::string UnicodeNames(const std::vector<std::u16string>& names);
    std::string PascalNames(const std::vector<std::string>& names);

    /// The file of one page; the samples of a pixel of several are all the same. Throws std::runtime_error if libtiff cannot
    /// write that form.
    std::string MakeTiff(const TiffForm& form, const SampleRule& rule);

    /// The file with one page after the other.
    std::string MakeTiff(const TiffForm& first, const TiffForm& second, const SampleRule& rule);
    std::string MakePages(const std::vector<TiffForm>& pages, const InkRule& rule);
}
