// An image that is held whole and delivered in an order that its source does not have: turned by a quarter, from its bottom,
// or one channel after the other.
#pragma once

#include "rasterfeed/LineSource.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace RasterFeed
{
    /// The most that is held: bytes.
    constexpr std::uint64_t LargestHeldImage = 256ull * 1024 * 1024;

    class HeldImage : public LineSource
    {
    public:
        /// `source` has `height` lines of `width` pixels of each of `channels` channels, which are delivered one after the other;
        /// together they are not larger than LargestHeldImage. `isTransposed`: its lines are delivered as columns, from left to right.
        /// `fromBottom`: its last line comes first.
        HeldImage(
            std::unique_ptr<LineSource> source, std::uint32_t width, std::uint32_t height, std::size_t channels,
            bool isTransposed, bool fromBottom);

        void Next(unsigned char* line, std::size_t pitch) override;

    private:
        void ReadAll();
        void ReadTransposed();

        std::unique_ptr<LineSource> source; ///< null once it is read
        std::size_t sourceWidth;            ///< pixels
        std::size_t sourceHeight;           ///< pixels
        std::size_t channels;
        bool isTransposed;
        bool fromBottom;
        std::unique_ptr<unsigned char[]> pixels; ///< as they are delivered
        std::size_t delivered = 0;               ///< pixels
    };
}
