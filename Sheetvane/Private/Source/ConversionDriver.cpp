// Each function is one level of the document: file, sheet, surface. What fails on any level rises to CreateCIP3File.
#include "frontend/ConversionDriver.h"

#include "cip3output/CIP3Painter.h"
#include "cip3output/CIP3PainterException.h"
#include "cip3output/CIP3ParameterExtractor.h"
#include "frontend/ConverterImpl.h"
#include "frontend/Failure.h"
#include "frontend/FailureTexts.h"
#include "frontend/HostValues.h"
#include "frontend/TiffSeparation.h"
#include "rasteroutput/Exception.h"
#include "rasteroutput/PainterRegistry.h"

#include <WidePathLib.h>
#include <kxtypes.h>

#include <boost/filesystem/operations.hpp>

namespace Sheetvane
{
    namespace
    {
        using RasterOutput::CIP3Painter;

        constexpr std::int32_t FrontSide = 0;
        constexpr std::int32_t BackSide = 1;

        void MakeFolder(const boost::filesystem::path& folder)
        {
            const boost::filesystem::file_type found = boost::filesystem::status(folder).type();
            if (found != boost::filesystem::status_error && found != boost::filesystem::file_not_found)
            {
                return;
            }
            try
            {
                // Level by level: for several missing ones at once Boost calls itself where nothing may be thrown, and an
                // allocation that fails there ends the process.
                boost::filesystem::path level;
                bool made = false;
                for (const boost::filesystem::path& name : folder)
                {
                    level /= name;
                    made = boost::filesystem::create_directories(level) || made;
                }
                if (!made)
                {
                    ThrowFailure(FailureText::FolderNotCreated, __LINE__);
                }
            }
            catch (...)
            {
                ThrowFailure(FailureText::FolderNotCreated, __LINE__);
            }
        }

        /// A painter with its file open.
        boost::shared_ptr<RasterOutput::Painter> StartPainter(const ConverterImpl& job)
        {
            CIP3ParameterExtractor extractor;
            extractor.painterParameters = job.painterParameters;
            boost::shared_ptr<RasterOutput::Painter> painter = RasterOutput::MakePainter(PainterIdentifier);
            painter->Initialize(job.processorParameters, extractor);
            return painter;
        }

        /// All surfaces of a sheet are described by its first file; the others only say what lines they deliver.
        const std::string& FirstFileOf(const SheetRecord& sheet)
        {
            if (!sheet.frontFilePaths.empty())
            {
                return sheet.frontFilePaths.front();
            }
            if (!sheet.backFilePaths.empty())
            {
                return sheet.backFilePaths.front();
            }
            ThrowFailure(FailureText::TiffNotOpened, __LINE__);
        }

        void ApplySheetGeometry(ConverterImpl& job, CIP3Painter& painter, SheetRecord& sheet)
        {
            std::uint32_t width = 0;
            std::uint32_t height = 0;
            double resolution = 0.0;
            ReadTiffGeometry(FirstFileOf(sheet), width, height, resolution);

            sheet.parameters.extentX = static_cast<double>(width) / resolution;
            sheet.parameters.extentY = static_cast<double>(height) / resolution;

            job.processorParameters.width = static_cast<std::int32_t>(width);
            job.processorParameters.height = static_cast<std::int32_t>(height);
            job.processorParameters.xResolution = resolution;
            job.processorParameters.yResolution = resolution;
            painter.parameters = job.processorParameters;
        }

        void WriteSurface(
            CIP3Painter& painter, RasterOutput::CIP3SurfaceParameters& surface, std::int32_t side,
            const std::vector<std::string>& names, const std::vector<std::string>& paths)
        {
            if (names.empty())
            {
                return;
            }
            surface.side = side;
            surface.separationNames = names;
            painter.BeginSurface(surface);
            for (const std::string& path : paths)
            {
                ConvertSeparation(painter, path);
            }
            painter.EndSurface();
        }

        void WriteSheet(
            ConverterImpl& job, CIP3Painter& painter, RasterOutput::CIP3SurfaceParameters& surface, SheetRecord& sheet)
        {
            ApplySheetGeometry(job, painter, sheet);
            if (sheet.parameters.jobName.empty())
            {
                ThrowFailure(FailureText::RequiredParametersNotSet, __LINE__);
            }
            painter.BeginSheet(sheet.parameters);
            WriteSurface(painter, surface, FrontSide, sheet.frontSeparationNames, sheet.frontFilePaths);
            WriteSurface(painter, surface, BackSide, sheet.backSeparationNames, sheet.backFilePaths);
            painter.EndSheet();
        }

        void WriteDocument(ConverterImpl& job, const std::string& localName)
        {
            job.painterParameters.filePath = Utf8ToWide(localName);
            job.painterParameters.sheetCount = static_cast<std::uint32_t>(job.sheets.size());

            const boost::shared_ptr<RasterOutput::Painter> painter = StartPainter(job);
            auto& cip3Painter = static_cast<CIP3Painter&>(*painter); // it was asked for by that name
            RasterOutput::CIP3SurfaceParameters surface = job.surfaceTemplate;
            for (SheetRecord& sheet : job.sheets)
            {
                WriteSheet(job, cip3Painter, surface, sheet);
            }
            painter->Finalize();
        }
    }

    void CreateCIP3File(ConverterImpl& job, const KX_TURL& location)
    {
        const std::string localName = TextOf(location.LocalName());
        MakeFolder(boost::filesystem::path(localName).parent_path());
        try
        {
            WriteDocument(job, localName);
        }
        catch (const RasterOutput::CIP3PainterException& failure)
        {
            ThrowFailure(failure.what(), __LINE__);
        }
        catch (const RasterOutput::Exception& failure)
        {
            ThrowFailure(failure.what(), __LINE__);
        }
        catch (...)
        {
            ThrowFailure(FailureText::ConversionFailed, __LINE__);
        }
    }
}
