// Writes documents in few words: a painter with its file in a folder of its own, and what these tests do with it.
#pragma once

#include "cip3output/CIP3Painter.h"
#include "rasteroutput/ScanLineRef.h"
#include "tests/support/Folder.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace CIP3OutputTest
{
    constexpr std::int32_t None = 0;
    constexpr std::int32_t RunLength = 1;
    constexpr std::int32_t Binary = 0;
    constexpr std::int32_t ASCIIHex = 1;
    constexpr std::int32_t ASCII85 = 2;

    /// A document of one sheet size: job J, sheets of 2 x 1 inch, separations at a resolution of 2.
    class PpfScribe
    {
    public:
        PpfScribe(std::uint32_t sheetCount, std::int32_t compression, std::int32_t encoding);
        ~PpfScribe();
        PpfScribe(const PpfScribe&) = delete;
        PpfScribe& operator=(const PpfScribe&) = delete;

        /// Initialises the painter, as `Finish` finalises it.
        void Start();
        /// The same up to a surface's separations, and from there on.
        void StartSurface(const std::vector<std::string>& names = {"Black"});
        std::string FinishSurface();
        void BeginSheet(const std::string& name = "S1");
        void BeginSurface(std::int32_t side = 0, const std::vector<std::string>& names = {"Black"});
        /// A whole separation of these lines.
        void Separation(const std::vector<std::string>& lines);
        void EndSurface() { painter.EndSurface(); }
        void EndSheet() { painter.EndSheet(); }
        /// The finished file.
        std::string Finish();

        /// A sheet of one front surface of one separation.
        void Sheet(const std::string& name, const std::vector<std::string>& lines);

        /// The file as it is now.
        std::string File() const;
        bool FileExists() const { return std::filesystem::exists(path); }

        const TestSupport::Folder& Folder() const { return folder; }

        RasterOutput::CIP3PainterParameters document;
        RasterOutput::CIP3SheetParameters sheet;
        RasterOutput::CIP3Painter painter;

    private:
        TestSupport::Folder folder;
        std::string path = folder / "out.ppf";
    };

    /// A line of one 8-bit component over these bytes.
    RasterOutput::ScanLineRef LineOver(std::string& bytes);

    /// What stands in `text` between the first `begin` and the first `end` after it.
    std::string Between(const std::string& text, const std::string& begin, const std::string& end);

    /// The data of a file's first preview, from after the blank to the LF before "CIP3EndSeparation".
    std::string PreviewData(const std::string& file);

    /// A whole file of one sheet with one separation of these lines.
    std::string FileOf(std::int32_t compression, std::int32_t encoding, const std::vector<std::string>& lines);
}
