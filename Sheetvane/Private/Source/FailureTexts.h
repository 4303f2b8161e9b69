// The texts of the converter's own failures, each written here and nowhere else.
#pragma once

namespace Sheetvane
{
    namespace FailureText
    {
        // Sheet intake.
        constexpr char InvalidInputData[] = "Could not convert input data";
        constexpr char NoInputFiles[] = "No input files specified";
        constexpr char NamesDoNotMatchFiles[] = "Separation names do not match file paths";

        // Parameter intake.
        constexpr char SheetIndexOutOfBounds[] = "Sheet index out of bounds";
        constexpr char InvalidRequiredParameters[] = "Problems reading required input parameters";
        constexpr char InvalidOptionalParameters[] = "Problems reading optional input parameters";

        // View intake.
        constexpr char InvalidPreviewResolution[] = "Invalid preview resolution";
        constexpr char InvalidInputResolution[] = "Invalid input resolution";
        constexpr char InvalidOrientation[] = "Invalid orientation";
        constexpr char SeparationIndexOutOfBounds[] = "Separation index out of bounds";
        constexpr char InvalidThreads[] = "Invalid number of threads";

        // Conversion.
        constexpr char FolderNotCreated[] = "Error creating folder for CIP3 file";
        constexpr char ConversionFailed[] = "Problem converting TIFF files to CIP3";

        // Inside a conversion: hosts read ConversionFailed in place of these.
        constexpr char RequiredParametersNotSet[] = "Required parameters were not set for sheet";
        constexpr char NoFileHandle[] = "Could not allocate file handle";
        constexpr char FileAccessFailed[] = "Could not read intermediate tiff file";
        constexpr char TiffNotOpened[] = "Problems opening TIFF input file";
        constexpr char TiffHeaderNotRead[] = "Problems reading TIFF input header";
        constexpr char TiffLineNotRead[] = "Problems reading TIFF scanlines";
    }
}
