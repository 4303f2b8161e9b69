// References to runs of bytes. A reference owns nothing; DataRefInstance is the one class of the framework that owns
// the bytes it refers to, for stages that need an output buffer.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>

namespace RasterOutput
{
    /// What a reference refers to: unsigned 8-bit bytes.
    struct DataRefTraits
    {
        using Byte = unsigned char;
    };

    /// Half-open range of bytes that somebody else owns. A copy refers to the same bytes. Constness is that of the
    /// range, not of the bytes: who is given a constant reference may rewrite them. Not to be deleted through a pointer
    /// to this class, as the destructor is not virtual.
    template <class Traits>
    class DataRef_Impl
    {
    public:
        using Byte = typename Traits::Byte;

        /// Refers to [newBegin, newEnd) from now on; the bytes must outlive every use of the reference.
        virtual void SetRange(Byte* newBegin, Byte* newEnd)
        {
            begin = newBegin;
            end = newEnd;
        }

        /// Length in bytes; 0 for an empty reference.
        std::size_t size() const { return static_cast<std::size_t>(end - begin); }

        /// First byte; null in an empty reference.
        Byte* begin = nullptr;
        /// One past the last byte; null in an empty reference.
        Byte* end = nullptr;
    };

    /// Range that owns its bytes. Its range moves through Allocate alone. A copy shares the array.
    class DataRefInstance : public DataRef_Impl<DataRefTraits>
    {
    public:
        /// Does nothing: the range of an owner is its own array.
        void SetRange(Byte* newBegin, Byte* newEnd) override;

        /// Replaces the array by a new one of `size` bytes with undetermined content. References taken before are no
        /// longer valid. Throws std::bad_alloc, and then leaves the instance as it was.
        void Allocate(const std::uint32_t& size);

    private:
        boost::shared_ptr<unsigned char> storage;
    };
}
