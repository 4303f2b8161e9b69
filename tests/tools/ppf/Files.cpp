#include "tests/tools/ppf/Files.h"

#include "ppf/DocumentReader.h"
#include "ppf/Failure.h"
#include "ppf/ScanLineReader.h"
#include "tests/TwoSheetExample.h"
#include "tests/cip3output/PlainLoops.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>

namespace PpfTest
{
    using namespace Ppf;

    std::string Header()
    {
        return TwoSheetExample::Header;
    }

    std::string Closing()
    {
        return TwoSheetExample::Trailer;
    }

    std::string TwoSheets()
    {
        return TwoSheetExample::File();
    }

    std::string Front(const std::string& content)
    {
        return Header() +
               "CIP3BeginSheet\n"
               "/CIP3AdmJobName (Job) def\n"
               "/CIP3AdmPSExtent [ 10 cm 10 cm ] def\n"
               "CIP3BeginFront\n" +
               content +
               "CIP3EndFront\n"
               "CIP3EndSheet\n\n" +
               Closing();
    }

    std::string Separation(
        int width, int height, const std::string& compression, const std::string& encoding, const std::string& data,
        const std::string& entries)
    {
        const std::string w = std::to_string(width);
        const std::string h = std::to_string(height);
        return "CIP3BeginSeparation\n"
               "/CIP3PreviewImageWidth " +
               w + " def\n/CIP3PreviewImageHeight " + h +
               " def\n"
               "/CIP3PreviewImageBitsPerComp 8 def\n"
               "/CIP3PreviewImageComponents 1 def\n"
               "/CIP3PreviewImageMatrix [" +
               w + " 0 0 -" + h + " 0 " + h +
               "] def\n"
               "/CIP3PreviewImageResolution [72 72] def\n"
               "/CIP3PreviewImageCompression /" +
               compression + " def\n/CIP3PreviewImageEncoding /" + encoding + " def\n" + entries +
               "CIP3PreviewImage\n" + data + "\nCIP3EndSeparation\n";
    }

    std::string HexPixels(int width, int height, const std::string& digits, const std::string& entries)
    {
        return Separation(width, height, "None", "ASCIIHexDecode", digits, entries);
    }

    std::string Repeated(const std::string& text, int times)
    {
        std::string all;
        for (int i = 0; i < times; ++i)
        {
            all += text;
        }
        return all;
    }

    RandomRuns::RandomRuns(std::size_t size)
    {
        std::minstd_rand random(3);
        while (bytes.size() < size)
        {
            const std::size_t length = std::min<std::size_t>(random() % 128 + 1, size - bytes.size());
            const bool isRun = length > 1 && random() % 2 == 0;
            std::string data(isRun ? 1 : length, '\0');
            std::generate(data.begin(), data.end(), [&] { return static_cast<char>(random() >> 8); });
            tokens += static_cast<char>(isRun ? 257 - length : length - 1) + data;
            bytes += isRun ? std::string(length, data[0]) : data;
        }
    }

    std::string FrontOf(const std::string& names, const std::string& separations)
    {
        return Front(
            "/CIP3AdmSeparationNames [" + names + "] def\nCIP3BeginPreviewImage\n" + separations +
            "CIP3EndPreviewImage\n");
    }

    SoundFile::SoundFile(std::string theBytes)
        : bytes(std::move(theBytes))
        , document(ReadDocument(bytes))
    {
        EXPECT_EQ(Text(document.damage), "");
    }

    const Preview& SoundFile::Preview(std::size_t index) const
    {
        return document.sheets.at(0).surfaces.at(0).previews.at(index);
    }

    std::string Rows(const Document& document, const Preview& preview)
    {
        std::string text;
        ScanLineReader rows(document, preview);
        while (const unsigned char* row = rows.Next())
        {
            text += text.empty() ? "" : "/";
            text += PlainLoops::ASCIIHex(std::string(row, row + preview.RowSamples()));
        }
        return text;
    }

    std::string FailureOf(const std::function<void()>& action)
    {
        try
        {
            action();
            return "none";
        }
        catch (const FormatError& error)
        {
            return Text(error.AsFinding());
        }
    }

    std::string Text(const std::optional<Finding>& finding)
    {
        return finding ? std::to_string(finding->offset) + ": " + finding->text : "";
    }
}
