// The separations of a job in the order in which the library reads them, each with its place, so that a check or a
// message can go through them as one list.
#pragma once

#include "job/Job.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Jobs
{
    enum class Surface
    {
        Front,
        Back
    };

    /// "front" or "back".
    const char* WordOf(Surface surface);

    /// Where one separation stands. Valid as long as its job.
    struct SeparationPlace
    {
        std::size_t sheetIndex; ///< from 0
        Surface surface;
        const Separation* separation;
        bool isFirstOfSheet; ///< the one whose size and resolution the library writes for the whole sheet
    };

    /// All separations of `job`, sheet by sheet, front before back.
    std::vector<SeparationPlace> PlacesOf(const Job& job);

    /// `, page 1, channel 5` for a separation that is picked from a file that holds several; else empty.
    std::string ImageForPerson(const Separation& separation);

    /// `sheet 2 "Inside", front, separation "Cyan"`.
    std::string PlaceForPerson(const Job& job, const SeparationPlace& place);
}
