// The documents that these tests convert: small PDF files that keep the rules of their format, made page by page.
#pragma once

#include <string>
#include <vector>

namespace Pdf2PpfTest
{
    struct PdfPage
    {
        std::string mediaBox = "0 0 144 72"; ///< points; empty: the page has none
        std::string content;                 ///< operators; /S0, /S1 ... are the colour spaces of `spots`
        std::vector<std::string> spots = {}; ///< names of spot colours, any bytes but zero
    };

    /// A PDF of these pages. `trailer` is added to its trailer.
    std::string Pdf(const std::vector<PdfPage>& pages, const std::string& trailer = {});

    /// Operators that fill a rectangle (points) with a process colour, or with the spot colour `index` of the page.
    std::string Fill(const std::string& cmyk, const std::string& rectangle);
    std::string FillSpot(int index, const std::string& tint, const std::string& rectangle);
}
