// One side of a sheet in the report: its inks over each other, each of which can be switched off, and each on its own.
// Apart from the page around it because everything here is about pictures and zones.
#pragma once

#include "ppf/Document.h"
#include "ppfinfo/Zones.h"

#include <cstddef>
#include <optional>
#include <ostream>
#include <string>

namespace PpfInfo
{
    /// Writes sides one after the other, and numbers their pictures through the page.
    class ReportSides
    {
    public:
        /// All have to outlive this object.
        ReportSides(const Ppf::Document& theDocument, const ZoneChoice& theChoice, std::ostream& theOut)
            : document(theDocument)
            , choice(theChoice)
            , out(theOut)
        {
        }

        void Write(const Ppf::Surface& surface);

        /// The first finding among the previews so far.
        const std::optional<Ppf::Finding>& FirstFinding() const { return firstFinding; }

        /// The rules of style that switch inks of the composite, for a page whose sides have so many inks at most.
        static std::string SwitchRules(std::size_t mostInks);

    private:
        const Ppf::Document& document;
        const ZoneChoice& choice;
        std::ostream& out;
        std::optional<Ppf::Finding> firstFinding;
        std::size_t sides = 0;
        std::size_t pictures = 0;
    };
}
