#include "tests/tools/pdf2ppf/Documents.h"

#include "tests/cip3output/PlainLoops.h"

#include <array>
#include <cstdio>

namespace Pdf2PpfTest
{
    namespace
    {
        std::string PdfName(const std::string& bytes)
        {
            std::string name = "/";
            for (const char c : bytes)
            {
                name += '#' + PlainLoops::ASCIIHex({c});
            }
            return name;
        }

        std::string ColourSpaces(const std::vector<std::string>& spots)
        {
            std::string spaces;
            for (std::size_t i = 0; i < spots.size(); ++i)
            {
                spaces += "/S" + std::to_string(i) + "[/Separation" + PdfName(spots[i]) +
                          "/DeviceCMYK<</FunctionType 2/Domain[0 1]/C0[0 0 0 0]/C1[0 .5 1 0]/N 1>>]";
            }
            return "/ColorSpace<<" + spaces + ">>";
        }
    }

    std::string Pdf(const std::vector<PdfPage>& pages, const std::string& trailer)
    {
        std::vector<std::string> objects(2);
        std::string kids;
        for (const PdfPage& page : pages)
        {
            const std::string number = std::to_string(objects.size() + 1);
            kids += number + " 0 R ";
            objects.push_back(
                "<</Type/Page/Parent 2 0 R" + (page.mediaBox.empty() ? "" : "/MediaBox[" + page.mediaBox + "]") +
                "/Contents " + std::to_string(objects.size() + 2) + " 0 R/Resources<<" + ColourSpaces(page.spots) +
                ">>>>");
            objects.push_back(
                "<</Length " + std::to_string(page.content.size()) + ">>stream\n" + page.content + "\nendstream");
        }
        objects[0] = "<</Type/Catalog/Pages 2 0 R>>";
        objects[1] = "<</Type/Pages/Kids[" + kids + "]/Count " + std::to_string(pages.size()) + ">>";

        std::string file = "%PDF-1.4\n";
        std::string table = "0000000000 65535 f \n";
        for (std::size_t i = 0; i < objects.size(); ++i)
        {
            std::array<char, 32> entry{};
            std::snprintf(entry.data(), entry.size(), "%010zu 00000 n \n", file.size());
            table += entry.data();
            file += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
        }
        const std::string size = std::to_string(objects.size() + 1);
        return file + "xref\n0 " + size + '\n' + table + "trailer<</Size " + size + "/Root 1 0 R" + trailer +
               ">>\nstartxref\n" + std::to_string(file.size()) + "\n%%EOF\n";
    }

    std::string Fill(const std::string& cmyk, const std::string& rectangle)
    {
        return cmyk + " k " + rectangle + " re f\n";
    }

    std::string FillSpot(int index, const std::string& tint, const std::string& rectangle)
    {
        return "/S" + std::to_string(index) + " cs " + tint + " scn " + rectangle + " re f\n";
    }
}
