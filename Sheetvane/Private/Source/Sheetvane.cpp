// The library's face: the public class, which only forwards, and the initialisation function.
#include "frontend/ConversionDriver.h"
#include "frontend/ConverterImpl.h"
#include "frontend/ParameterIntake.h"
#include "frontend/SheetIntake.h"
#include "frontend/ViewIntake.h"

#include <Sheetvane/SheetvaneConverter.h>

namespace Sheetvane
{
    namespace
    {
        bool initialised = false;
    }
}

// A failed initialisation is tried again on the next call.
bool __KX_INITIALIZATION_FUNCTION_Sheetvane__()
{
    if (!Sheetvane::initialised)
    {
        Sheetvane::initialised = __KX_INITIALIZATION_FUNCTION_kxtypes__();
    }
    return Sheetvane::initialised;
}

namespace Sheetvane
{
    SheetvaneConverter::SheetvaneConverter()
    {
        __KX_INITIALIZATION_FUNCTION_Sheetvane__();
        impl = std::make_unique<ConverterImpl>();
    }

    SheetvaneConverter::~SheetvaneConverter() = default;

    void SheetvaneConverter::AddSheet(
        const KX_TArray& frontSeparationNames, const KX_TArray& frontFiles, const KX_TArray& backSeparationNames,
        const KX_TArray& backFiles)
    {
        Sheetvane::AddSheet(impl->sheets, frontSeparationNames, frontFiles, backSeparationNames, backFiles);
    }

    void SheetvaneConverter::SetRequiredParameters(unsigned int sheetIndex, const KX_TDict& parameters)
    {
        Sheetvane::SetRequiredParameters(impl->sheets, sheetIndex, parameters);
    }

    void SheetvaneConverter::SetOptionalParameters(unsigned int sheetIndex, const KX_TDict& parameters)
    {
        Sheetvane::SetOptionalParameters(impl->sheets, sheetIndex, parameters);
    }

    unsigned int SheetvaneConverter::GetNumSheets() const
    {
        return static_cast<unsigned int>(impl->sheets.size());
    }

    void SheetvaneConverter::SetCompression(CIP3Compression compression)
    {
        impl->painterParameters.compression =
            compression == CIP3CompressionNone ? CIP3CompressionNone : CIP3CompressionRunLength;
    }

    void SheetvaneConverter::SetEncoding(CIP3Encoding encoding)
    {
        const bool isOther = encoding != CIP3EncodingBinary && encoding != CIP3EncodingASCIIHex;
        impl->painterParameters.encoding = isOther ? CIP3EncodingASCII85 : encoding;
    }

    void SheetvaneConverter::SetPreviewResolution(double pixelsPerInch, double onlyAbove)
    {
        Sheetvane::SetPreviewResolution(*impl, pixelsPerInch, onlyAbove);
    }

    void SheetvaneConverter::SetInputResolution(double pixelsPerInch)
    {
        Sheetvane::SetInputResolution(*impl, pixelsPerInch);
    }

    void SheetvaneConverter::SetOrientation(unsigned int sheetIndex, Side side, Orientation orientation)
    {
        Sheetvane::SetOrientation(*impl, sheetIndex, side, orientation);
    }

    void SheetvaneConverter::SetSeparationImage(
        unsigned int sheetIndex, Side side, unsigned int separationIndex, unsigned int page, unsigned int channel)
    {
        Sheetvane::SetSeparationImage(*impl, sheetIndex, side, separationIndex, {page, channel});
    }

    void SheetvaneConverter::SetThreads(unsigned int count)
    {
        Sheetvane::SetThreads(*impl, count);
    }

    void SheetvaneConverter::CreateCIP3File(const KX_TURL& location)
    {
        Sheetvane::CreateCIP3File(*impl, location);
    }
}
