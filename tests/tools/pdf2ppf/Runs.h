// Runs of the built program as a shell sees them: exit status, what it says where, what it leaves behind, and what is in the
// file that it makes.
#pragma once

#include "tests/support/Folder.h"

#include <gtest/gtest.h>

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

    class RunTest : public ::testing::Test
    {
    protected:
        /// Runs `commands` in a shell, in a folder of its own where pdf2ppf is the program; gives the exit status. Whatever
        /// it is, nothing may be left in TMPDIR.
        int Run(const std::string& commands);

        std::string Out() const { return said.Read("out"); }
        std::string Error() const { return said.Read("error"); }

        /// `JOB; SHEET front: INK INK; back: INK; SHEET ...` of a file that was made, which has to be well formed.
        std::string Inks(const std::string& name) const;

        /// The preview of an ink: of those with that name in the file, the one at `index`.
        Preview PreviewOf(const std::string& name, const std::string& ink, int index = 0) const;

        /// Puts a program of this shell text in place of Ghostscript for what runs from now on.
        void StandIn(const std::string& script);

        TestSupport::Folder folder; ///< the current one
        TestSupport::Folder temporary;
        TestSupport::Folder said;
        TestSupport::Folder programs; ///< first on the PATH
    };
}
