// A standard stream that writes to a descriptor and keeps the reason of its failure, which the standard library's own
// streams lose.
#pragma once

#include <cstddef>
#include <ostream>
#include <streambuf>
#include <vector>

namespace Host
{
    /// The stream's buffer. Bytes are handed on in blocks; after a failure no more are.
    class DescriptorBuffer : public std::streambuf
    {
    public:
        /// `theFile` stays the caller's and has to be open as long as this writes.
        explicit DescriptorBuffer(int theFile);

        /// The errno value of the write that failed; 0 if none did.
        int Problem() const { return problem; }

    protected:
        int_type overflow(int_type c) override;
        int sync() override;

    private:
        int file;
        int problem = 0;
        std::vector<char> block;
    };

    /// Flush it before its end: what is still in its buffer then is lost.
    class DescriptorStream : public std::ostream
    {
    public:
        /// `file` stays the caller's.
        explicit DescriptorStream(int file);

        /// Writes what is in the buffer. Throws Failure, `name` with the reason, if that or an earlier write failed.
        void Finish(const std::string& name);

    private:
        DescriptorBuffer buffer;
    };
}
