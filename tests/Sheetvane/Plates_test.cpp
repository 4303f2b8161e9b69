// Views of the files of a job, which a host asks for, inks of files that hold several, and threads that read them: what the
// document says of them, that it is the same by any number of threads, and whose failure is reported.
#include "tests/Sheetvane/Failures.h"
#include "tests/Sheetvane/Values.h"
#include "tests/support/Folder.h"
#include "tests/support/TiffMaker.h"

#include <Sheetvane/SheetvaneConverter.h>

#include <gmock/gmock.h>

#include <functional>
#include <limits>

namespace SheetvaneTest
{
    namespace
    {
        using Sheetvane::SheetvaneConverter;
        using testing::HasSubstr;

        class Plates : public testing::Test
        {
        protected:
            /// A plate of 120 x 60 pixels, which differs from the others, at 600 pixels per inch unless said otherwise.
            std::string Plate(const std::string& name, double pixelsPerInch = 600)
            {
                TestSupport::TiffForm form;
                form.width = 120;
                form.height = 60;
                form.resolution = pixelsPerInch;
                const auto rule = [&](std::uint32_t x, std::uint32_t y)
                { return (x * x + y * static_cast<unsigned char>(name[0])) % 251; };
                return folder.Write(name + ".tif", TestSupport::MakeTiff(form, rule));
            }

            void AddSheet(const std::string& name, const KX_TArray& fronts, const KX_TArray& backs = {})
            {
                const auto namesFor = [](const KX_TArray& files)
                {
                    KX_TArray names;
                    for (std::uint32_t index = 0; index < files.Count(); ++index)
                    {
                        names.Append(Text("Ink"));
                    }
                    return names;
                };
                const unsigned int index = converter.GetNumSheets();
                converter.AddSheet(namesFor(fronts), fronts, namesFor(backs), backs);
                converter.SetRequiredParameters(index, JobAndSheet("J", name.c_str()));
            }

            std::string Convert()
            {
                return FailureOf([&] { converter.CreateCIP3File(Location(folder / "out.ppf")); });
            }
            std::string Written()
            {
                EXPECT_EQ(Convert(), "[nothing]");
                return folder.Read("out.ppf");
            }

            /// What a document has of its first sheet's `side`.
            static std::string Surface(const std::string& document, const std::string& side)
            {
                const std::string begin = "CIP3Begin" + side + '\n';
                const std::size_t at = document.find(begin) + begin.size();
                return document.substr(at, document.find("CIP3End" + side, at) - at);
            }

            TestSupport::Folder folder;
            SheetvaneConverter converter;
        };
    }

    TEST_F(Plates, ReducedAndTurnedOnesAreDescribedAsTheyAreWritten)
    {
        AddSheet("S1", Files({Plate("a")}), Files({Plate("b")}));
        AddSheet("S2", Files({Plate("c", 72)}));
        const std::string asTheyAre = Written();
        EXPECT_THAT(
            asTheyAre, HasSubstr("/CIP3PreviewImageMatrix [120 0 0 -60 0 60] def\n"
                                 "/CIP3PreviewImageResolution [600 600] def\n"));

        converter.SetPreviewResolution(100, 300);
        EXPECT_THAT(
            Written(), HasSubstr("/CIP3PreviewImageMatrix [20 0 0 -10 0 10] def\n"
                                 "/CIP3PreviewImageResolution [100 100] def\n"));
        EXPECT_THAT(Written(), HasSubstr("/CIP3PreviewImageResolution [72 72] def\n"));

        converter.SetOrientation(0, SheetvaneConverter::FrontSide, SheetvaneConverter::Flip90);
        EXPECT_THAT(Written(), HasSubstr("/CIP3PreviewImageMatrix [10 0 0 -20 0 20] def\n"));

        converter.SetInputResolution(1000);
        EXPECT_THAT(Written(), HasSubstr("/CIP3PreviewImageMatrix [6 0 0 -12 0 12] def\n"));
        EXPECT_THAT(Written(), testing::Not(HasSubstr("[72 72]")));

        converter.SetPreviewResolution(0, 0);
        converter.SetInputResolution(0);
        converter.SetOrientation(0, SheetvaneConverter::FrontSide, SheetvaneConverter::Rotate0);
        EXPECT_EQ(Written(), asTheyAre);
    }

    TEST_F(Plates, SidesAreTurnedEachByItself)
    {
        AddSheet("S1", Files({Plate("a")}), Files({Plate("a")}));
        const std::string plain = Written();
        converter.SetOrientation(0, SheetvaneConverter::BackSide, SheetvaneConverter::Rotate180);
        const std::string turned = Written();
        EXPECT_EQ(Surface(turned, "Front"), Surface(plain, "Front"));
        EXPECT_NE(Surface(turned, "Back"), Surface(plain, "Back"));
    }

    TEST_F(Plates, InksOfOneFileAreThoseOfAFileForEach)
    {
        // Five inks that are stored together, and four in planes of their own on a second page, in an order of the host's.
        TestSupport::TiffForm together;
        together.samples = 5;
        together.photometric = PHOTOMETRIC_SEPARATED;
        together.compression = COMPRESSION_LZW;
        together.resolution = 600;
        TestSupport::TiffForm planes = together;
        planes.samples = 4;
        planes.planar = PLANARCONFIG_SEPARATE;
        const TestSupport::InkRule rule = TestSupport::MixedInks(8);
        const std::string both = folder.Write("inks.tif", TestSupport::MakePages({together, planes}, rule));
        struct Image
        {
            unsigned int page, channel;
        };
        const std::vector<Image> fronts = {{1, 4}, {1, 1}, {1, 5}, {1, 1}, {2, 1}, {2, 4}, {1, 2}};
        TestSupport::TiffForm single = together;
        single.samples = 1;
        KX_TArray composite;
        KX_TArray singles;
        for (const Image& image : fronts)
        {
            composite.Append(Location(both));
            singles.Append(Location(folder.Write(
                "single" + std::to_string(image.channel) + ".tif",
                TestSupport::MakeTiff(
                    single, [&](std::uint32_t x, std::uint32_t y) { return rule(image.channel - 1, x, y); }))));
        }
        AddSheet("S1", composite, singles);
        for (unsigned int index = 0; index < fronts.size(); ++index)
        {
            converter.SetSeparationImage(
                0, SheetvaneConverter::FrontSide, index, fronts[index].page, fronts[index].channel);
        }
        for (const auto& [resolution, orientation] :
             {std::pair{0.0, SheetvaneConverter::Rotate0}, std::pair{0.0, SheetvaneConverter::Flip90},
              std::pair{90.0, SheetvaneConverter::Rotate0}, std::pair{90.0, SheetvaneConverter::Flip90}})
        {
            converter.SetPreviewResolution(resolution, 0);
            converter.SetOrientation(0, SheetvaneConverter::FrontSide, orientation);
            converter.SetOrientation(0, SheetvaneConverter::BackSide, orientation);
            std::string byOne;
            for (const unsigned int threads : {1u, 2u, 8u})
            {
                converter.SetThreads(threads);
                const std::string document = Written();
                EXPECT_EQ(Surface(document, "Front"), Surface(document, "Back")) << threads;
                byOne = byOne.empty() ? document : byOne;
                EXPECT_EQ(document, byOne) << threads;
            }
        }

        // Taken back, the file is several inks again; and a channel that it has not fails.
        converter.SetSeparationImage(0, SheetvaneConverter::FrontSide, 6, 0, 0);
        EXPECT_EQ(Convert(), "Problem converting TIFF files to CIP3");
        converter.SetSeparationImage(0, SheetvaneConverter::FrontSide, 6, 0, 5);
        EXPECT_EQ(Convert(), "[nothing]");
        converter.SetSeparationImage(0, SheetvaneConverter::FrontSide, 6, 2, 5);
        EXPECT_EQ(Convert(), "Problem converting TIFF files to CIP3");
    }

    TEST_F(Plates, FailureIsThatOfTheFirstSeparationByAnyNumberOfThreads)
    {
        const std::string good = Plate("a");
        const std::string damaged = folder.Write("damaged.tif", "no TIFF");
        const std::string alsoDamaged = folder.Write("also-damaged.tif", "no TIFF");
        AddSheet("S1", Files({good, good, damaged, good}));
        AddSheet(std::string(300, 'n'), Files({good}));
        AddSheet("S3", Files({alsoDamaged, good}));
        converter.SetPreviewResolution(50.8, 300);
        // The first failure is taken away, and the second shows, whatever is read ahead meanwhile.
        const std::string goodBytes = TestSupport::Folder::BytesOf(good);
        const std::pair<const char*, std::function<void()>> failures[] = {
            {"Problem converting TIFF files to CIP3", [&] { folder.Write("damaged.tif", goodBytes); }},
            {"Invalid sheet parameters", [&] { converter.SetRequiredParameters(1, JobAndSheet("J", "S2")); }},
            {"Problem converting TIFF files to CIP3", [&] { folder.Write("also-damaged.tif", goodBytes); }}};
        for (const auto& [failure, remedy] : failures)
        {
            for (const unsigned int threads : {1u, 2u, 4u, 9u})
            {
                converter.SetThreads(threads);
                EXPECT_EQ(Convert(), failure) << threads;
                EXPECT_EQ(folder.Read("out.ppf"), "") << threads;
            }
            remedy();
        }
        EXPECT_EQ(Convert(), "[nothing]");
    }

    TEST_F(Plates, ValuesOutOfRangeAreRefusedAndChangeNothing)
    {
        AddSheet("S1", Files({Plate("a")}));
        converter.SetPreviewResolution(100, 0);
        converter.SetThreads(2);
        const std::string before = Written();
        const double infinity = std::numeric_limits<double>::infinity();
        for (const double wrong : {-1.0, infinity, std::numeric_limits<double>::quiet_NaN()})
        {
            EXPECT_EQ(FailureOf([&] { converter.SetPreviewResolution(wrong, 0); }), "Invalid preview resolution")
                << wrong;
            EXPECT_EQ(FailureOf([&] { converter.SetPreviewResolution(50, wrong); }), "Invalid preview resolution")
                << wrong;
            EXPECT_EQ(FailureOf([&] { converter.SetInputResolution(wrong); }), "Invalid input resolution") << wrong;
        }
        using Side = SheetvaneConverter::Side;
        using Orientation = SheetvaneConverter::Orientation;
        const auto turn = [&](unsigned int sheet, int side, int orientation)
        {
            return FailureOf(
                [&]
                { converter.SetOrientation(sheet, static_cast<Side>(side), static_cast<Orientation>(orientation)); });
        };
        EXPECT_EQ(turn(1, 0, 1), "Sheet index out of bounds");
        EXPECT_EQ(turn(0, 2, 1), "Invalid orientation");
        EXPECT_EQ(turn(0, 0, 8), "Invalid orientation");
        EXPECT_EQ(turn(0, 1, -1), "Invalid orientation");
        const auto choose = [&](unsigned int sheet, int side, unsigned int index)
        { return FailureOf([&] { converter.SetSeparationImage(sheet, static_cast<Side>(side), index, 1, 1); }); };
        EXPECT_EQ(choose(1, 0, 0), "Sheet index out of bounds");
        EXPECT_EQ(choose(0, 2, 0), "Separation index out of bounds");
        EXPECT_EQ(choose(0, 0, 1), "Separation index out of bounds");
        EXPECT_EQ(choose(0, 1, 0), "Separation index out of bounds");
        EXPECT_EQ(FailureOf([&] { converter.SetThreads(0); }), "Invalid number of threads");
        EXPECT_EQ(FailureOf([&] { converter.SetThreads(257); }), "Invalid number of threads");
        EXPECT_EQ(Written(), before);
    }
}
