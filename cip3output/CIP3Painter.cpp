// A document's life: parameters, header, directory, closing, file. The sections inside a sheet are in
// CIP3PainterSections.cpp.
#include "cip3output/CIP3Painter.h"

#include "cip3output/CIP3PainterException.h"
#include "cip3output/CIP3ParameterExtractor.h"
#include "cip3output/Platform.h"

#include <ios>

namespace RasterOutput
{
    CIP3Painter::CIP3Painter() = default;

    CIP3Painter::~CIP3Painter() = default;

    void CIP3Painter::HandleBroadcast(std::uint32_t, std::uint32_t) {}

    void CIP3Painter::InitializePainter()
    {
        if (outputFile)
        {
            throw CIP3PainterException(CIP3PainterText::FileStillOpen, CIP3PainterFailure::FileStillOpen);
        }
        outputFile = std::make_unique<CIP3OutputFile>();
        Platform::OpenOutputFile(outputFile->file, painterParameters.filePath);
        if (!outputFile->file.is_open())
        {
            throw CIP3PainterException(CIP3PainterText::CouldNotOpenFile, CIP3PainterFailure::CouldNotOpenFile);
        }
        directory.assign(painterParameters.sheetCount, PPFDirectoryEntry());
        WriteHeader();
        directoryOffset = static_cast<std::uint32_t>(Document().Position());
        WriteDirectory();
    }

    void CIP3Painter::FinalizePainter()
    {
        WriteTrailer();
        Document().Seek(directoryOffset);
        WriteDirectory();
        directory.clear();
        directoryOffset = 0;

        std::ofstream& file = outputFile->file;
        Document().ForEachPiece([&file](std::string_view piece)
                                { file.write(piece.data(), static_cast<std::streamsize>(piece.size())); });
        outputFile.reset();

        sheetIndex = 0;
        runLengthFilter.reset();
        asciiHexFilter.reset();
        ascii85Filter.reset();
    }

    void CIP3Painter::WriteHeader()
    {
        Document().Write(PpfFormat::Header);
    }

    void CIP3Painter::WriteTrailer()
    {
        Document().Write(PpfFormat::Trailer);
    }

    void CIP3Painter::WriteDirectory()
    {
        if (directory.size() < PpfFormat::MinSheetsForDirectory)
        {
            return;
        }
        Document().Write(PpfFormat::BeginDirectory);
        for (const PPFDirectoryEntry& entry : directory)
        {
            const PPFDirectoryLine line = FormatDirectoryLine(entry);
            Document().Write({line.data(), line.size()});
        }
        Document().Write(PpfFormat::EndDirectory);
    }

    void ApplyParameters(Processor& processor, ClientParameterExtractor& extractor)
    {
        dynamic_cast<CIP3Painter&>(processor).painterParameters =
            dynamic_cast<Sheetvane::CIP3ParameterExtractor&>(extractor).painterParameters;
    }
}
