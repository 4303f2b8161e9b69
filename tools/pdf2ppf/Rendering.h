// The pages of a file as previews on the disk: what Ghostscript is asked for, what it has finished, and which inks there
// are.
#pragma once

#include "job/Job.h"
#include "pdf2ppf/PageList.h"
#include "pdf2ppf/Preview.h"
#include "pdf2ppf/PrivateFolder.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Pdf2Ppf
{
    struct RenderingOrder
    {
        std::string input;         ///< the file's name, as a person gave it
        double resolution = 0;     ///< of the previews, pixels per inch
        int oversampling = 1;      ///< rendered at so many times the resolution, and reduced
        PageList pages;            ///< which are wanted
        bool keepBlank = false;    ///< also inks of a page without any ink on it
        bool showProgress = false; ///< standard error is a terminal: show there which page it is
        Jobs::Orientation oddPages = Jobs::Orientation::Rotate0;
        Jobs::Orientation evenPages = Jobs::Orientation::Rotate0;
    };

    struct Ink
    {
        std::string name; ///< the document's bytes
        std::string file; ///< absolute path of its preview
    };

    struct Page
    {
        std::uint64_t number; ///< in the file, from 1
        std::vector<Ink>
            inks;      ///< Cyan, Magenta, Yellow, Black, and then the spot colours as they were found; never empty
        Size rendered; ///< turned as the preview is
        Size preview;
    };

    /// Throws Host::Failure for an input that there is no use in handing to Ghostscript. Gives whether it is a PDF.
    bool CheckInput(const RenderingOrder& order);

    /// Has Ghostscript render the pages, and writes their previews to files in `folder`; gives those wanted, at least one, in the file's order. Throws
    /// Host::Failure with the file's name and, where Ghostscript gave one, its reason.
    std::vector<Page> Render(const RenderingOrder& order, const PrivateFolder& folder);
}
