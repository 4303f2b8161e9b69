// The example of the format that every road to a file is held against: a job of two sheets, one with a front and one with a
// back, of one separation of 4 x 2 pixels each, run-length compressed and in ASCIIHex.
#pragma once

#include <string>

namespace TwoSheetExample
{
    const std::string Header = "%!PS-Adobe-3.0\n%%CIP3-File Version 3.0\n%\xE2\xE3\xCF\xD3\n\n";
    const std::string Trailer = "%%CIP3EndOfFile\n";

    inline std::string DirectoryLine(const std::string& numbersAndName)
    {
        return numbersAndName + std::string(238 - numbersAndName.size(), ' ') + " CIP3PPFDirEntry \n";
    }

    inline std::string Section(const std::string& sheetName, const std::string& side)
    {
        return "CIP3BeginSheet\n/CIP3AdmJobName (J) def\n/CIP3AdmSheetName (" + sheetName +
               ") def\n/CIP3AdmPSExtent [ 2 inch 1 inch ] def\n/CIP3TransferFilmCurveData [0.0 0.0 1.0 1.0] "
               "def\n/CIP3TransferPlateCurveData [0.0 0.0 1.0 1.0] def\n\nCIP3Begin" +
               side +
               "\n/CIP3AdmSeparationNames [ (Black) ] def\nCIP3BeginPreviewImage\n\nCIP3BeginSeparation\n"
               "/CIP3PreviewImageWidth 4 def\n/CIP3PreviewImageHeight 2 def\n/CIP3PreviewImageBitsPerComp 8 def\n"
               "/CIP3PreviewImageComponents 1 def\n/CIP3PreviewImageMatrix [4 0 0 -2 0 2] def\n"
               "/CIP3PreviewImageResolution [2 2] def\n/CIP3PreviewImageCompression /RunLengthDecode def\n"
               "/CIP3PreviewImageEncoding /ASCIIHexDecode def\nCIP3PreviewImage \nfdff\nff0001ff7f80>\n"
               "CIP3EndSeparation\n\nCIP3EndPreviewImage\nCIP3End" +
               side + "\n\nCIP3EndSheet\n\n";
    }

    /// All 2039 bytes of the file.
    inline std::string File()
    {
        return Header + "CIP3BeginPPFDirectory\n" + DirectoryLine("0000000601 0000000712 (S1)") +
               DirectoryLine("0000001313 0000000710 (S2)") + "CIP3EndPPFDirectory\n\n" + Section("S1", "Front") +
               Section("S2", "Back") + Trailer;
    }
}
