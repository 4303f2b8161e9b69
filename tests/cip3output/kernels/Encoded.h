// Runs a kernel on buffers that end where its bytes do.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

namespace CIP3OutputTest
{
    /// Memory of exactly `size` bytes at `misalignment` bytes after a boundary, the end of which the sanitizer watches.
    class TightBuffer
    {
    public:
        TightBuffer(std::size_t size, std::size_t misalignment)
            : bytes(misalignment + size)
            , offset(misalignment)
        {
        }
        TightBuffer(const std::string& content, std::size_t misalignment)
            : TightBuffer(content.size(), misalignment)
        {
            std::copy(content.begin(), content.end(), begin());
        }

        unsigned char* begin() { return bytes.data() + offset; }

    private:
        std::vector<unsigned char> bytes;
        std::size_t offset;
    };

    /// What `encode(input, count, output)` writes for a line that ends with its buffer, into exactly `space` bytes.
    template <class Encode>
    std::string
    Encoded(Encode encode, const std::string& line, std::size_t count, std::size_t space, std::size_t misalignment)
    {
        TightBuffer input(line, misalignment);
        // Bytes that the kernel may not touch, and that no sanitizer guards: it writes some of its vectors masked.
        constexpr unsigned char Untouched = 0xA5;
        constexpr std::size_t Guard = 128;
        TightBuffer output(space + Guard, misalignment * 7 % 64);
        std::memset(output.begin() + space, Untouched, Guard);
        const unsigned char* const end = encode(input.begin(), count, output.begin());
        for (std::size_t i = 0; i < Guard; ++i)
        {
            EXPECT_EQ(output.begin()[space + i], Untouched) << "byte " << i << " after the space";
        }
        TightBuffer exact(space, misalignment * 7 % 64);
        encode(input.begin(), count, exact.begin());
        return std::string(output.begin(), output.begin() + (end - output.begin()));
    }
}
