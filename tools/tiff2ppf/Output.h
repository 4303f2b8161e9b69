// Where the file goes. Whatever the output is, the library writes a hidden work file, and only a finished and checked one
// is published: a regular file appears whole or not at all, and a device or pipe gets the bytes of a whole file.
#pragma once

#include "tiff2ppf/WorkFile.h"

#include <memory>
#include <string>

namespace Tiff2Ppf
{
    /// What the library says of an output that it cannot open; the same here, where this program finds out first.
    constexpr char CouldNotOpen[] = "Could not open CIP3 file";

    class Output
    {
    public:
        virtual ~Output() = default;
        Output(const Output&) = delete;
        Output& operator=(const Output&) = delete;

        /// The file to write first. It is gone with this object unless it was published.
        const WorkFile& Work() const { return work; }

        /// The output for a person.
        const std::string& Name() const { return name; }

        /// Puts the work file's content in its place. Throws ConversionError; a regular file is then as it was.
        virtual void Publish() = 0;

        /// Why the work file cannot be written, as "No space left on device"; empty if it can. Tries it: makes the
        /// folder and lengthens the work file.
        std::string ObstacleToWriting() const;

    protected:
        Output(const std::string& theName, const std::string& workFolder);

        /// Throws ConversionError: `what`, the output's name, and what errno says.
        [[noreturn]] void Fail(const std::string& what) const;

        WorkFile work;

    private:
        std::string name;
    };

    /// The output called `name`: an absolute path, or "-" for standard output. Links are followed, so that they stay and
    /// the file behind them is written. A pipe is opened here, which waits for its reader. Throws ConversionError if it
    /// can be seen at once that nothing can be written there; a folder that is missing is no failure.
    std::unique_ptr<Output> OpenOutput(const std::string& name);
}
