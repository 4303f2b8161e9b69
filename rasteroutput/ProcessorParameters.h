// What a stage is told about the raster that it will receive.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace RasterOutput
{
    /// Data that a client sends along with a raster description. The framework copies it and looks at none of it.
    struct AuxiliaryRecord
    {
        std::uint32_t word = 0;
        std::string name;
        std::wstring wideName;
        std::uint8_t firstFlag = 0;
        std::uint8_t secondFlag = 0;
        std::array<unsigned char, 32> data{};
    };

    /// Description of a raster. All zero and empty until somebody fills it in.
    struct ProcessorParameters
    {
        /// Pixels per row of the raster.
        std::int32_t width = 0;
        /// Rows of the raster.
        std::int32_t height = 0;
        /// Pixels per unit of length across a row.
        double xResolution = 0.0;
        /// Rows per unit of length.
        double yResolution = 0.0;
        /// Bit depth of the raster. What a stage receives says its own depth, and that one counts.
        std::uint32_t bitsPerComponent = 0;
        /// 1 for planar data.
        std::uint32_t planar = 0;
        /// Travels with the record; the framework does not read it.
        std::uint32_t spareWord = 0;
        /// Travel with the record; the framework does not read them.
        std::vector<AuxiliaryRecord> auxiliaryRecords;
    };
}
