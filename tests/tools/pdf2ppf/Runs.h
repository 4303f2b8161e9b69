// Runs of the built program, and what is in the file that it makes.
#pragma once

#include "tests/support/ShellTest.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Pdf2PpfTest
{
    /// A preview in a file: ink values, 255 full ink.
    struct Preview
    {
        std::uint64_t width;  ///< pixels
        std::uint64_t height; ///< pixels
        double across;        ///< pixels per inch
        double down;          ///< pixels per inch
        std::vector<unsigned char> pixels;
    };

    class RunTest : public TestSupport::ShellTest
    {
    protected:
        RunTest()
            : ShellTest(PDF2PPF_PROGRAM)
        {
        }

        /// `JOB; SHEET front: INK INK; back: INK; SHEET ...` of a file that was made, which has to be well formed.
        std::string Inks(const std::string& name) const;

        /// The preview of an ink: of those with that name in the file, the one at `index`.
        Preview PreviewOf(const std::string& name, const std::string& ink, int index = 0) const;
    };
}
