#include "tests/tools/ppf/Files.h"

#include "ppf/ScanLineReader.h"

namespace PpfTest
{
    using namespace Ppf;

    namespace
    {
        std::string DirectoryLine(const std::string& offset, const std::string& length, const std::string& name)
        {
            std::string field = "(" + name + ")";
            field.resize(216, ' ');
            return offset + " " + length + " " + field + " CIP3PPFDirEntry \n";
        }

        std::string SmallSheet(const std::string& name, const std::string& side)
        {
            return "CIP3BeginSheet\n"
                   "/CIP3AdmJobName (J) def\n"
                   "/CIP3AdmSheetName (" +
                   name +
                   ") def\n"
                   "/CIP3AdmPSExtent [ 2 inch 1 inch ] def\n"
                   "/CIP3TransferFilmCurveData [0.0 0.0 1.0 1.0] def\n"
                   "/CIP3TransferPlateCurveData [0.0 0.0 1.0 1.0] def\n"
                   "\n"
                   "CIP3Begin" +
                   side +
                   "\n"
                   "/CIP3AdmSeparationNames [ (Black) ] def\n"
                   "CIP3BeginPreviewImage\n"
                   "\n"
                   "CIP3BeginSeparation\n"
                   "/CIP3PreviewImageWidth 4 def\n"
                   "/CIP3PreviewImageHeight 2 def\n"
                   "/CIP3PreviewImageBitsPerComp 8 def\n"
                   "/CIP3PreviewImageComponents 1 def\n"
                   "/CIP3PreviewImageMatrix [4 0 0 -2 0 2] def\n"
                   "/CIP3PreviewImageResolution [2 2] def\n"
                   "/CIP3PreviewImageCompression /RunLengthDecode def\n"
                   "/CIP3PreviewImageEncoding /ASCIIHexDecode def\n"
                   "CIP3PreviewImage \n"
                   "fdff\n"
                   "ff0001ff7f80>\n"
                   "CIP3EndSeparation\n"
                   "\n"
                   "CIP3EndPreviewImage\n"
                   "CIP3End" +
                   side +
                   "\n"
                   "\n"
                   "CIP3EndSheet\n"
                   "\n";
        }
    }

    std::string Header()
    {
        return "%!PS-Adobe-3.0\n"
               "%%CIP3-File Version 3.0\n"
               "%\xE2\xE3\xCF\xD3\n"
               "\n";
    }

    std::string Closing()
    {
        return "%%CIP3EndOfFile\n";
    }

    std::string TwoSheets()
    {
        return Header() + "CIP3BeginPPFDirectory\n" + DirectoryLine("0000000601", "0000000712", "S1") +
               DirectoryLine("0000001313", "0000000710", "S2") + "CIP3EndPPFDirectory\n\n" + SmallSheet("S1", "Front") +
               SmallSheet("S2", "Back") + Closing();
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

    std::string FrontOf(const std::string& names, const std::string& separations)
    {
        return Front(
            "/CIP3AdmSeparationNames [" + names + "] def\nCIP3BeginPreviewImage\n" + separations +
            "CIP3EndPreviewImage\n");
    }

    std::string Rows(const Document& document, const Preview& preview)
    {
        constexpr char Digits[] = "0123456789abcdef";
        std::string text;
        ScanLineReader rows(document, preview);
        while (const unsigned char* row = rows.Next())
        {
            text += text.empty() ? "" : "/";
            for (std::uint64_t i = 0; i < preview.RowSamples(); ++i)
            {
                text += Digits[row[i] >> 4];
                text += Digits[row[i] & 15];
            }
        }
        return text;
    }

    std::string Text(const std::optional<Finding>& finding)
    {
        return finding ? std::to_string(finding->offset) + ": " + finding->text : "";
    }
}
