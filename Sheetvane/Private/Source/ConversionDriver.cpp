// Each function is one level of the document: file, sheet, surface. What fails on any level rises to CreateCIP3File.
#include "frontend/ConversionDriver.h"

#include "cip3output/CIP3Painter.h"
#include "cip3output/CIP3PainterException.h"
#include "cip3output/CIP3ParameterExtractor.h"
#include "frontend/ConverterImpl.h"
#include "frontend/Failure.h"
#include "frontend/FailureTexts.h"
#include "frontend/HostValues.h"
#include "frontend/ReadAhead.h"
#include "frontend/TiffSeparation.h"
#include "rasteroutput/Exception.h"
#include "rasteroutput/PainterRegistry.h"

#include <WidePathLib.h>
#include <kxtypes.h>

#include <boost/filesystem/operations.hpp>

#include <array>

namespace Sheetvane
{
    namespace
    {
        using RasterOutput::CIP3Painter;

        /// One side of a sheet.
        struct Surface
        {
            std::int32_t side; ///< as the document has it
            const std::vector<std::string>& names;
            const std::vector<std::string>& paths;
            RasterFeedSelection view; ///< of each of its files
        };

        std::array<Surface, 2> SurfacesOf(const ConverterImpl& job, const SheetRecord& sheet)
        {
            std::array<Surface, 2> surfaces{
                {{0, sheet.frontSeparationNames, sheet.frontFilePaths, job.view},
                 {1, sheet.backSeparationNames, sheet.backFilePaths, job.view}}};
            surfaces[0].view.orientation = sheet.frontOrientation;
            surfaces[1].view.orientation = sheet.backOrientation;
            return surfaces;
        }

        struct Separation
        {
            const std::string& path;
            RasterFeedSelection view;
        };

        /// What is to be read ahead: all separations in the order in which they are written, or none.
        std::vector<Separation> SeparationsToReadAhead(const ConverterImpl& job)
        {
            std::vector<Separation> separations;
            if (job.view.resolution == 0 || job.threads < 2)
            {
                return separations;
            }
            for (const SheetRecord& sheet : job.sheets)
            {
                for (const Surface& surface : SurfacesOf(job, sheet))
                {
                    for (std::size_t index = 0; !surface.names.empty() && index < surface.paths.size(); ++index)
                    {
                        separations.push_back({surface.paths[index], surface.view});
                    }
                }
            }
            return separations;
        }

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
        Separation FirstFileOf(const ConverterImpl& job, const SheetRecord& sheet)
        {
            for (const Surface& surface : SurfacesOf(job, sheet))
            {
                if (!surface.paths.empty())
                {
                    return {surface.paths.front(), surface.view};
                }
            }
            ThrowFailure(FailureText::TiffNotOpened, __LINE__);
        }

        void ApplySheetGeometry(ConverterImpl& job, CIP3Painter& painter, SheetRecord& sheet)
        {
            std::uint32_t width = 0;
            std::uint32_t height = 0;
            double resolution = 0.0;
            const Separation first = FirstFileOf(job, sheet);
            ReadTiffGeometry(first.path, first.view, width, height, resolution);

            sheet.parameters.extentX = static_cast<double>(width) / resolution;
            sheet.parameters.extentY = static_cast<double>(height) / resolution;

            job.processorParameters.width = static_cast<std::int32_t>(width);
            job.processorParameters.height = static_cast<std::int32_t>(height);
            job.processorParameters.xResolution = resolution;
            job.processorParameters.yResolution = resolution;
            painter.parameters = job.processorParameters;
        }

        void WriteSurface(
            CIP3Painter& painter, RasterOutput::CIP3SurfaceParameters& parameters, const Surface& surface,
            ReadAhead& previews)
        {
            if (surface.names.empty())
            {
                return;
            }
            parameters.side = surface.side;
            parameters.separationNames = surface.names;
            painter.BeginSurface(parameters);
            for (const std::string& path : surface.paths)
            {
                if (const std::unique_ptr<Preview> preview = previews.Take())
                {
                    ConvertPreview(painter, *preview);
                }
                else
                {
                    ConvertSeparation(painter, path, surface.view);
                }
            }
            painter.EndSurface();
        }

        void WriteSheet(
            ConverterImpl& job, CIP3Painter& painter, RasterOutput::CIP3SurfaceParameters& parameters,
            SheetRecord& sheet, ReadAhead& previews)
        {
            ApplySheetGeometry(job, painter, sheet);
            if (sheet.parameters.jobName.empty())
            {
                ThrowFailure(FailureText::RequiredParametersNotSet, __LINE__);
            }
            painter.BeginSheet(sheet.parameters);
            for (const Surface& surface : SurfacesOf(job, sheet))
            {
                WriteSurface(painter, parameters, surface, previews);
            }
            painter.EndSheet();
        }

        void WriteDocument(ConverterImpl& job, const std::string& localName)
        {
            job.painterParameters.filePath = Utf8ToWide(localName);
            job.painterParameters.sheetCount = static_cast<std::uint32_t>(job.sheets.size());

            const boost::shared_ptr<RasterOutput::Painter> painter = StartPainter(job);
            auto& cip3Painter = static_cast<CIP3Painter&>(*painter); // it was asked for by that name
            const std::vector<Separation> separations = SeparationsToReadAhead(job);
            ReadAhead previews(
                separations.size(), job.threads,
                [&](std::size_t position, const std::atomic<bool>& isEnding)
                { return ReadPreview(separations[position].path, separations[position].view, isEnding); });
            RasterOutput::CIP3SurfaceParameters parameters = job.surfaceTemplate;
            for (SheetRecord& sheet : job.sheets)
            {
                WriteSheet(job, cip3Painter, parameters, sheet, previews);
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
