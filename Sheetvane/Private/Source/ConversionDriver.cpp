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
            const std::vector<SeparationImage>& images;
            RasterFeedSelection view; ///< of each of its files, but for the image

            /// What is read for separation `index`.
            TiffView At(std::size_t index) const
            {
                TiffView tiff = {paths[index], view, {}};
                if (index < images.size() && images[index].channel != 0)
                {
                    tiff.view.page = images[index].page;
                    tiff.view.channel = images[index].channel;
                    tiff.channels = {images[index].channel};
                }
                return tiff;
            }
        };

        std::array<Surface, 2> SurfacesOf(const ConverterImpl& job, const SheetRecord& sheet)
        {
            std::array<Surface, 2> surfaces{
                {{0, sheet.frontSeparationNames, sheet.frontFilePaths, sheet.frontImages, job.view},
                 {1, sheet.backSeparationNames, sheet.backFilePaths, sheet.backImages, job.view}}};
            surfaces[0].view.orientation = sheet.frontOrientation;
            surfaces[1].view.orientation = sheet.backOrientation;
            return surfaces;
        }

        /// All that is read for a job, in the order in which it is written.
        class Input
        {
        public:
            explicit Input(const ConverterImpl& job)
                : isReadAhead(job.view.resolution != 0 && job.threads > 1)
                , tiffs(TiffsOf(job))
                , previews(
                      isReadAhead ? tiffs.size() : 0, job.threads,
                      [this](std::size_t position, const std::atomic<bool>& isEnding)
                      { return ReadPreview(tiffs[position], isEnding); })
            {
            }

            /// Writes the next separations of a surface, those that are read together, and gives how many.
            std::size_t WriteNext(CIP3Painter& painter)
            {
                const TiffView& tiff = tiffs.at(next++);
                if (const std::unique_ptr<Preview> preview = previews.Take())
                {
                    ConvertPreview(painter, *preview);
                }
                else
                {
                    ConvertSeparations(painter, tiff);
                }
                return tiff.Separations();
            }

        private:
            std::vector<TiffView> TiffsOf(const ConverterImpl& job) const
            {
                std::vector<TiffView> all;
                for (const SheetRecord& sheet : job.sheets)
                {
                    for (const Surface& surface : SurfacesOf(job, sheet))
                    {
                        AppendTiffs(all, surface);
                    }
                }
                return all;
            }

            void AppendTiffs(std::vector<TiffView>& all, const Surface& surface) const
            {
                const std::size_t first = all.size();
                for (std::size_t index = 0; !surface.names.empty() && index < surface.paths.size(); ++index)
                {
                    const TiffView tiff = surface.At(index);
                    if (all.size() == first || !IsReadWith(all.back(), tiff))
                    {
                        all.push_back(tiff);
                    }
                    else
                    {
                        all.back().channels.push_back(tiff.view.channel);
                    }
                }
            }

            /// Whether `other` is another channel of the page that `tiff` reads. Threads read side by side what would not be
            /// decoded at once anyway.
            bool IsReadWith(const TiffView& tiff, const TiffView& other) const
            {
                constexpr std::size_t MostChannels = 32; // that the reader takes at once
                const bool isOfPage = other.view.channel != 0 && tiff.path == other.path &&
                                      tiff.view.page == other.view.page && tiff.channels.size() < MostChannels;
                return isOfPage && (!isReadAhead ||
                                    RasterFeedProbe(other.path, RasterFeedDepth::Header, other.view).sharesDecoding);
            }

            bool isReadAhead;
            std::vector<TiffView> tiffs;
            std::size_t next = 0;
            ReadAhead previews; ///< last, to end before what its threads read
        };

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
        TiffView FirstFileOf(const ConverterImpl& job, const SheetRecord& sheet)
        {
            for (const Surface& surface : SurfacesOf(job, sheet))
            {
                if (!surface.paths.empty())
                {
                    return surface.At(0);
                }
            }
            ThrowFailure(FailureText::TiffNotOpened, __LINE__);
        }

        void ApplySheetGeometry(ConverterImpl& job, CIP3Painter& painter, SheetRecord& sheet)
        {
            std::uint32_t width = 0;
            std::uint32_t height = 0;
            double resolution = 0.0;
            const TiffView first = FirstFileOf(job, sheet);
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
            CIP3Painter& painter, RasterOutput::CIP3SurfaceParameters& parameters, const Surface& surface, Input& input)
        {
            if (surface.names.empty())
            {
                return;
            }
            parameters.side = surface.side;
            parameters.separationNames = surface.names;
            painter.BeginSurface(parameters);
            for (std::size_t written = 0; written < surface.paths.size();)
            {
                written += input.WriteNext(painter);
            }
            painter.EndSurface();
        }

        void WriteSheet(
            ConverterImpl& job, CIP3Painter& painter, RasterOutput::CIP3SurfaceParameters& parameters,
            SheetRecord& sheet, Input& input)
        {
            ApplySheetGeometry(job, painter, sheet);
            if (sheet.parameters.jobName.empty())
            {
                ThrowFailure(FailureText::RequiredParametersNotSet, __LINE__);
            }
            painter.BeginSheet(sheet.parameters);
            for (const Surface& surface : SurfacesOf(job, sheet))
            {
                WriteSurface(painter, parameters, surface, input);
            }
            painter.EndSheet();
        }

        void WriteDocument(ConverterImpl& job, const std::string& localName)
        {
            job.painterParameters.filePath = Utf8ToWide(localName);
            job.painterParameters.sheetCount = static_cast<std::uint32_t>(job.sheets.size());

            const boost::shared_ptr<RasterOutput::Painter> painter = StartPainter(job);
            auto& cip3Painter = static_cast<CIP3Painter&>(*painter); // it was asked for by that name
            Input input(job);
            RasterOutput::CIP3SurfaceParameters parameters = job.surfaceTemplate;
            for (SheetRecord& sheet : job.sheets)
            {
                WriteSheet(job, cip3Painter, parameters, sheet, input);
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
