// The separations that the filters and the painter are measured on: one of each kind, at plate size.
#pragma once

#include "bench/pages/Pages.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Plates
{
    constexpr std::size_t Width = 4000;
    constexpr std::size_t Height = 6000;
    constexpr Pages::Kind Kinds[] = {Pages::Kind::Flat, Pages::Kind::Photo, Pages::Kind::Noise};

    /// The separation of a kind, made on the first call.
    inline const std::vector<std::uint8_t>& Of(Pages::Kind kind)
    {
        static const std::vector<std::uint8_t> plates[] = {
            Pages::Make(Kinds[0], Width, Height), Pages::Make(Kinds[1], Width, Height),
            Pages::Make(Kinds[2], Width, Height)};
        return plates[static_cast<std::size_t>(kind)];
    }
}
