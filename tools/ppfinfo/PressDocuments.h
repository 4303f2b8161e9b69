// Ink zones as documents that consoles and management systems take: JDF and XJDF.
#pragma once

#include "ppfinfo/InkProfiles.h"

#include <ostream>

namespace PpfInfo
{
    /// A JDF 1.5 node of type ConventionalPrinting whose input is one InkZoneProfile, divided by sheet, side and separation.
    /// Takes profiles whose names are of the form Text.
    void WriteJdf(const InkProfiles& profiles, std::ostream& out);

    /// The same as XJDF 2.1: a ResourceSet with a Part for each. Takes profiles whose names are of the form Token.
    void WriteXjdf(const InkProfiles& profiles, std::ostream& out);
}
