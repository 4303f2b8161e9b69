// The ink zones of a whole file as presses take them: a profile for each separation, with names that a document of any
// kind can hold. Apart from the forms of documents, which only lay it out.
#pragma once

#include "ppf/Document.h"
#include "ppfinfo/XmlNames.h"
#include "ppfinfo/Zones.h"

#include <string>
#include <vector>

namespace PpfInfo
{
    /// A name of the file, and the one that stands for it in a document.
    struct DocumentName
    {
        std::string trueName;
        std::string name;

        /// The true name for a person, or nothing where the document's says it.
        std::string Description() const;
    };

    /// One separation.
    struct InkProfile
    {
        std::size_t sheet;
        Ppf::Side side;
        std::size_t separation; ///< in InkProfiles::separations
        double zoneWidth;       ///< in points
        /// From 0 to 1, with six digits, separated by blanks.
        std::string settings;
        std::size_t zoneCount;
    };

    struct InkProfiles
    {
        DocumentName job;
        std::vector<DocumentName> sheets;
        std::vector<DocumentName> separations;
        /// By sheet, front before back, in the order of the file. Not empty.
        std::vector<InkProfile> profiles;
    };

    /// Measures a file. A press must get all of its ink or none: throws Ppf::FormatError about the first thing that keeps
    /// the file from being read in full.
    InkProfiles ReadInkProfiles(const Ppf::Document& document, const ZoneChoice& choice, NameForm form);
}
