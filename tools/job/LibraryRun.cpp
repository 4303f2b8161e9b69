#include "job/LibraryRun.h"

#include "job/EscapedName.h"

#include <Sheetvane/KX_ECIP3Exception.h>
#include <Sheetvane/SheetvaneConverter.h>
#include <kxtypes.h>

#include <exception>
#include <new>

#include <rasteroutput/TarnelException.h>

namespace Jobs
{
    namespace
    {
        using Converter = Sheetvane::SheetvaneConverter;

        KX_TString ValueOf(const std::string& bytes)
        {
            return KX_TString(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
        }

        /// A parameter's value as the class of host values that it goes to the library as.
        struct ToHostValue
        {
            KX_TAny operator()(const std::string& text) const { return ValueOf(text); }
            KX_TAny operator()(std::int32_t number) const { return KX_TInt32(number); }
            KX_TAny operator()(std::uint32_t number) const { return KX_TUInt32(number); }
            KX_TAny operator()(double number) const { return KX_TDouble(number); }
            KX_TAny operator()(const Number& number) const { return std::visit(*this, number); }
            KX_TAny operator()(const Measure& measure) const
            {
                KX_TDict dict;
                dict.Set("value", (*this)(measure.value));
                dict.Set("units", ValueOf(measure.units));
                return dict;
            }
        };

        KX_TArray NamesOf(const std::vector<Separation>& separations)
        {
            KX_TArray names;
            for (const Separation& separation : separations)
            {
                names.Append(ValueOf(EscapedName(separation.name)));
            }
            return names;
        }

        KX_TArray FilesOf(const std::vector<Separation>& separations)
        {
            KX_TArray files;
            for (const Separation& separation : separations)
            {
                files.Append(KX_TURL(ValueOf(separation.file)));
            }
            return files;
        }

        void PickImages(
            Converter& converter, unsigned int sheet, Converter::Side side, const std::vector<Separation>& separations)
        {
            for (std::size_t i = 0; i < separations.size(); ++i)
            {
                converter.SetSeparationImage(
                    sheet, side, static_cast<unsigned int>(i), separations[i].page, separations[i].channel);
            }
        }

        void AddSheet(Converter& converter, const Sheet& sheet)
        {
            const unsigned int index = converter.GetNumSheets();
            converter.AddSheet(NamesOf(sheet.front), FilesOf(sheet.front), NamesOf(sheet.back), FilesOf(sheet.back));

            KX_TDict required;
            required.Set("CIP3AdmJobName", ValueOf(EscapedName(sheet.jobName)));
            required.Set("CIP3AdmSheetName", ValueOf(EscapedName(sheet.sheetName)));
            converter.SetRequiredParameters(index, required);

            KX_TDict optional;
            for (const auto& [key, value] : sheet.parameters)
            {
                optional.Set(ValueOf(key), std::visit(ToHostValue{}, value));
            }
            converter.SetOptionalParameters(index, optional);
            converter.SetOrientation(index, Converter::FrontSide, sheet.frontOrientation);
            converter.SetOrientation(index, Converter::BackSide, sheet.backOrientation);
            PickImages(converter, index, Converter::FrontSide, sheet.front);
            PickImages(converter, index, Converter::BackSide, sheet.back);
        }
    }

    void RunLibrary(const Job& job, const std::string& path, unsigned int threads)
    {
        try
        {
            Converter converter;
            for (const Sheet& sheet : job.sheets)
            {
                AddSheet(converter, sheet);
            }
            if (job.compression)
            {
                converter.SetCompression(*job.compression);
            }
            if (job.encoding)
            {
                converter.SetEncoding(*job.encoding);
            }
            converter.SetPreviewResolution(job.reduction.resolution, job.reduction.onlyAbove);
            converter.SetInputResolution(job.inputResolution);
            converter.SetThreads(threads);
            converter.CreateCIP3File(KX_TURL(ValueOf(path)));
        }
        catch (const KX_EException& failure)
        {
            throw LibraryFailure(failure.KX_Message().c_str());
        }
        catch (const Tarnel::Exception& failure)
        {
            throw LibraryFailure(failure.what());
        }
        catch (const std::bad_alloc&)
        {
            throw;
        }
        catch (const std::exception& failure)
        {
            throw LibraryFailure(failure.what());
        }
    }
}
