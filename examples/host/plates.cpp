// A host application that hands over what a RIP leaves behind: plates, of which the library makes previews.
//     plates OUT.ppf CYAN.tif MAGENTA.tif YELLOW.tif BLACK.tif

#include <Sheetvane/SheetvaneConverter.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <thread>

namespace
{
    KX_TString Text(const std::string& bytes)
    {
        return KX_TString(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    }

    KX_TURL Location(const std::filesystem::path& path)
    {
        return KX_TURL(Text(std::filesystem::absolute(path).string()));
    }

    void Convert(const std::filesystem::path& output, char** plates)
    {
        Sheetvane::SheetvaneConverter converter;
        KX_TArray names, files;
        for (const char* const name : {"Cyan", "Magenta", "Yellow", "Black"})
        {
            names.Append(Text(name));
            files.Append(Location(*plates++));
        }
        converter.AddSheet(names, files, {}, {});
        KX_TDict required;
        required.Set("CIP3AdmJobName", Text("Poster"));
        required.Set("CIP3AdmSheetName", Text("Sheet 1"));
        converter.SetRequiredParameters(0, required);

        // [plates]
        // Two pixels to the millimetre; what has no more than 300 pixels per inch is a preview already.
        converter.SetPreviewResolution(50.8, 300);

        // These plates are wrong-reading: mirror them left to right.
        using Sheetvane::SheetvaneConverter;
        converter.SetOrientation(0, SheetvaneConverter::FrontSide, SheetvaneConverter::Flip180);

        // As many plates at once as the machine has cores; of itself the library starts no thread.
        converter.SetThreads(std::clamp(std::thread::hardware_concurrency(), 1u, 256u));
        // [/plates]

        converter.CreateCIP3File(Location(output));
    }
}

int main(int argc, char** argv)
{
    if (argc != 6)
    {
        std::cerr << "usage: plates OUT.ppf CYAN.tif MAGENTA.tif YELLOW.tif BLACK.tif\n";
        return 2;
    }
    try
    {
        Convert(argv[1], argv + 2);
    }
    catch (const KX_EException& failure)
    {
        std::cerr << failure.ClassName() << ": " << failure.KX_Message().c_str() << '\n';
        return 1;
    }
    catch (const std::exception& failure)
    {
        std::cerr << failure.what() << '\n';
        return 1;
    }
    return 0;
}
