// Ink zones of files of 100 MB, by encoding and kind of picture, beside memcpy of as many pixels; and the check of the
// structure beside memchr over the file. Bytes per second are decoded pixels for the first and bytes of the file for
// the second. Every file's zones are compared with those of its pixels before they are timed.

#include "ppf/Check.h"
#include "ppf/DocumentReader.h"
#include "ppf/InkColumns.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace
{
    using Bytes = std::vector<unsigned char>;

    constexpr std::size_t fileSize = 100u << 20;
    /// A sheet of 1050 x 740 mm at 100 pixels per inch.
    constexpr std::size_t width = 4134;
    constexpr std::size_t height = 2913;
    constexpr std::size_t zoneCount = 32;
    constexpr double repeatedMeasures = 5;

    enum Kind
    {
        flat,  ///< every row one value
        photo, ///< neighbours differ by little, with some equal
        noise  ///< no two neighbours equal but by chance
    };

    const char* const kindNames[] = {"flat", "photo", "noise"};

    Bytes MakePixels(Kind kind)
    {
        std::minstd_rand random(5);
        Bytes pixels(width * height);
        for (std::size_t i = 0; i < pixels.size(); ++i)
        {
            const auto drawn = static_cast<unsigned>(random() >> 8);
            const std::size_t x = i % width;
            const std::size_t y = i / width;
            pixels[i] = static_cast<unsigned char>(
                kind == flat    ? y
                : kind == photo ? (x / 7 + y / 5 + drawn % 3 / 2) & 0xFF
                                : drawn & 0xFF);
        }
        return pixels;
    }

    void AppendRunLength(const unsigned char* row, std::string& out)
    {
        constexpr std::size_t longest = 128;
        for (std::size_t i = 0; i < width;)
        {
            std::size_t run = 1;
            while (i + run < width && run < longest && row[i + run] == row[i])
            {
                ++run;
            }
            if (run > 1)
            {
                out += static_cast<char>(257 - run);
                out += static_cast<char>(row[i]);
                i += run;
                continue;
            }
            std::size_t end = i + 1;
            while (end < width && end - i < longest && !(end + 1 < width && row[end] == row[end + 1]))
            {
                ++end;
            }
            out += static_cast<char>(end - i - 1);
            out.append(reinterpret_cast<const char*>(row) + i, end - i);
            i = end;
        }
    }

    std::string Compressed(const Bytes& pixels)
    {
        std::string out;
        for (std::size_t y = 0; y < height; ++y)
        {
            AppendRunLength(pixels.data() + y * width, out);
        }
        return out + "\x80";
    }

    std::string AsAscii85(const std::string& bytes)
    {
        std::string text;
        for (std::size_t i = 0; i < bytes.size(); i += 4)
        {
            const std::size_t count = std::min<std::size_t>(4, bytes.size() - i);
            std::uint32_t value = 0;
            for (std::size_t k = 0; k < 4; ++k)
            {
                value = value << 8 | (k < count ? static_cast<unsigned char>(bytes[i + k]) : 0u);
            }
            std::string digits(5, '!');
            for (std::size_t k = 5; k-- > 0; value /= 85)
            {
                digits[k] = static_cast<char>('!' + value % 85);
            }
            text += digits == "!!!!!" && count == 4 ? "z" : digits.substr(0, count + 1);
        }
        return text + "~>";
    }

    std::string AsHex(const std::string& bytes)
    {
        constexpr char digits[] = "0123456789abcdef";
        std::string text;
        for (const char c : bytes)
        {
            text += digits[static_cast<unsigned char>(c) >> 4];
            text += digits[static_cast<unsigned char>(c) & 15];
        }
        return text + ">";
    }

    /// A file of about 100 MB: one separation as often as it takes, or 64 times if that is smaller.
    std::string MakeFile(const std::string& encoding, const std::string& data)
    {
        constexpr std::size_t mostSeparations = 64;
        const std::string w = std::to_string(width);
        const std::string h = std::to_string(height);
        const std::string separation =
            "CIP3BeginSeparation\n/CIP3PreviewImageWidth " + w + " def\n/CIP3PreviewImageHeight " + h +
            " def\n/CIP3PreviewImageBitsPerComp 8 def\n/CIP3PreviewImageComponents 1 def\n/CIP3PreviewImageMatrix [" +
            w + " 0 0 -" + h + " 0 " + h +
            "] def\n/CIP3PreviewImageResolution [100 100] def\n/CIP3PreviewImageCompression /RunLengthDecode def\n"
            "/CIP3PreviewImageEncoding /" +
            encoding + " def\nCIP3PreviewImage " + (encoding == "Binary" ? "" : "\n") + data +
            "\nCIP3EndSeparation\n\n";
        const std::size_t count = std::clamp<std::size_t>(fileSize / separation.size(), 1, mostSeparations);
        std::string file = "%!PS-Adobe-3.0\n%%CIP3-File Version 3.0\n\nCIP3BeginSheet\n/CIP3AdmJobName (J) def\n"
                           "/CIP3AdmPSExtent [ 1050 mm 740 mm ] def\nCIP3BeginFront\n/CIP3AdmSeparationNames [ ";
        for (std::size_t i = 0; i < count; ++i)
        {
            file += "(Ink " + std::to_string(i) + ") ";
        }
        file += "] def\nCIP3BeginPreviewImage\n";
        for (std::size_t i = 0; i < count; ++i)
        {
            file += separation;
        }
        return file + "CIP3EndPreviewImage\nCIP3EndFront\n\nCIP3EndSheet\n\n%%CIP3EndOfFile\n";
    }

    std::string MakeFile(const std::string& encoding, const Bytes& pixels)
    {
        const std::string data = Compressed(pixels);
        return MakeFile(
            encoding, encoding == "ASCII85Decode"    ? AsAscii85(data)
                      : encoding == "ASCIIHexDecode" ? AsHex(data)
                                                     : data);
    }

    /// Mean coverage of one zone, pixel by pixel.
    double PlainZone(const Bytes& pixels, std::size_t zone)
    {
        const double left = static_cast<double>(zone * width) / zoneCount;
        const double right = static_cast<double>((zone + 1) * width) / zoneCount;
        double ink = 0;
        for (std::size_t i = 0; i < pixels.size(); ++i)
        {
            const auto x = static_cast<double>(i % width);
            ink += pixels[i] * std::max(0.0, std::min(right, x + 1) - std::max(left, x));
        }
        return ink / (right - left) / static_cast<double>(height) / 255 * 100;
    }

    bool AreZonesRight(const Bytes& pixels, const std::vector<double>& zones)
    {
        for (const std::size_t zone : {std::size_t{0}, zoneCount / 2, zoneCount - 1})
        {
            if (std::abs(zones[zone] - PlainZone(pixels, zone)) > 1e-6)
            {
                return false;
            }
        }
        return zones.size() == zoneCount;
    }

    void Zones(benchmark::State& state, const std::string& encoding, Kind kind)
    {
        const Bytes pixels = MakePixels(kind);
        const std::string file = MakeFile(encoding, pixels);
        std::size_t separations = 0;
        std::vector<double> zones;
        for (auto _ : state)
        {
            const Ppf::Document document = Ppf::ReadDocument(file);
            const Ppf::Surface& surface = document.sheets.at(0).surfaces.at(0);
            separations = surface.previews.size();
            for (const Ppf::Preview& preview : surface.previews)
            {
                zones = Ppf::Measure(document, preview).inks[0].Zones(Ppf::EdgesOfEqualZones(width, zoneCount));
            }
        }
        if (!AreZonesRight(pixels, zones))
        {
            state.SkipWithError("the zones are not those of the pixels");
        }
        state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * separations * width * height));
        state.counters["file_MB"] = static_cast<double>(file.size()) / (1 << 20);
    }

    /// The peer of the zones: as many pixels, only copied.
    void Copy(benchmark::State& state)
    {
        const Bytes pixels = MakePixels(noise);
        Bytes row(width);
        for (auto _ : state)
        {
            for (std::size_t y = 0; y < height; ++y)
            {
                std::memcpy(row.data(), pixels.data() + y * width, width);
                benchmark::DoNotOptimize(row.data());
                benchmark::ClobberMemory();
            }
        }
        state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * pixels.size()));
    }

    void CheckStructure(benchmark::State& state, const std::string& encoding)
    {
        const std::string file = MakeFile(encoding, MakePixels(photo));
        for (auto _ : state)
        {
            if (!Ppf::Check(file, Ppf::CheckDepth::Structure).empty())
            {
                state.SkipWithError("the file is not well formed");
            }
        }
        state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * file.size()));
    }

    /// The peer of the check: one search over the file for a byte that it does not hold.
    void SearchOneByte(benchmark::State& state)
    {
        const std::string file = MakeFile("ASCII85Decode", MakePixels(photo));
        for (auto _ : state)
        {
            benchmark::DoNotOptimize(std::memchr(file.data(), '\f', file.size()));
        }
        state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * file.size()));
    }

    void Repeat(benchmark::internal::Benchmark* benchmark)
    {
        benchmark->Unit(benchmark::kMillisecond)
            ->Repetitions(static_cast<int>(repeatedMeasures))
            ->ReportAggregatesOnly();
    }

    const bool registered = []
    {
        Repeat(benchmark::RegisterBenchmark("copy_pixels", Copy));
        for (const char* const encoding : {"ASCII85Decode", "ASCIIHexDecode", "Binary"})
        {
            for (const Kind kind : {flat, photo, noise})
            {
                Repeat(benchmark::RegisterBenchmark(
                    ("zones/RunLengthDecode/" + std::string(encoding) + "/" + kindNames[kind]).c_str(),
                    [encoding, kind](benchmark::State& state) { Zones(state, encoding, kind); }));
            }
        }
        Repeat(benchmark::RegisterBenchmark("search_one_byte", SearchOneByte));
        for (const char* const encoding : {"ASCII85Decode", "ASCIIHexDecode", "Binary"})
        {
            Repeat(benchmark::RegisterBenchmark(
                ("check_structure/" + std::string(encoding)).c_str(),
                [encoding](benchmark::State& state) { CheckStructure(state, encoding); }));
        }
        return true;
    }();
}
