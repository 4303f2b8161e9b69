// A host application at its smallest: one sheet, printed in one ink, from a TIFF separation to a PPF file.
//     host SEPARATION.tif OUT.ppf

#include <Sheetvane/SheetvaneConverter.h>

#include <filesystem>
#include <iostream>

#include <rasteroutput/Exception.h>

namespace
{
    // [values]
    KX_TString Text(const std::string& bytes)
    {
        return KX_TString(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    }

    // A location is an absolute path: the library knows no current folder of its own.
    KX_TURL Location(const std::filesystem::path& path)
    {
        return KX_TURL(Text(std::filesystem::absolute(path).string()));
    }
    // [/values]

    void Convert(const std::filesystem::path& separation, const std::filesystem::path& output)
    {
        // [job]
        Sheetvane::SheetvaneConverter converter;

        KX_TArray names, files;
        names.Append(Text("Black"));
        files.Append(Location(separation));
        const KX_TArray noBack;
        converter.AddSheet(names, files, noBack, noBack);

        KX_TDict required;
        required.Set("CIP3AdmJobName", Text("Business card"));
        required.Set("CIP3AdmSheetName", Text("Sheet 1"));
        converter.SetRequiredParameters(0, required);

        KX_TDict optional;
        optional.Set("CIP3AdmMake", Text("(Press 4)")); // PostScript text: a string has its parentheses
        optional.Set("CIP3AdmPlateCount", KX_TInt32(1));
        converter.SetOptionalParameters(0, optional);

        converter.CreateCIP3File(Location(output));
        // [/job]
    }
}

int main(int argc, char** argv)
{
    if (argc != 3)
    {
        std::cerr << "usage: host SEPARATION.tif OUT.ppf\n";
        return 2;
    }
    // [failures]
    try
    {
        Convert(argv[1], argv[2]);
    }
    catch (const KX_EException& failure) // a KX_ECIP3Exception from the converter, or one from kxtypes
    {
        std::cerr << failure.ClassName() << ": " << failure.KX_Message().c_str() << '\n';
        return 1;
    }
    catch (const RasterOutput::Exception& failure) // a second converter beside the first
    {
        std::cerr << failure.what() << '\n';
        return 1;
    }
    catch (const std::exception& failure) // a path that cannot be looked up, exhausted memory
    {
        std::cerr << failure.what() << '\n';
        return 1;
    }
    // [/failures]
    std::cout << argv[2] << " is written\n";
    return 0;
}
