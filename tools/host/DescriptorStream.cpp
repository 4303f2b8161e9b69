#include "host/DescriptorStream.h"

#include "host/Descriptor.h"
#include "host/Failure.h"
#include "host/Text.h"

namespace Host
{
    namespace
    {
        constexpr std::size_t BlockBytes = 64U << 10U;
    }

    DescriptorBuffer::DescriptorBuffer(int theFile)
        : file(theFile)
        , block(BlockBytes)
    {
        setp(block.data(), block.data() + block.size());
    }

    DescriptorBuffer::int_type DescriptorBuffer::overflow(int_type c)
    {
        if (sync() != 0)
        {
            return traits_type::eof();
        }
        if (!traits_type::eq_int_type(c, traits_type::eof()))
        {
            *pptr() = traits_type::to_char_type(c);
            pbump(1);
        }
        return traits_type::not_eof(c);
    }

    int DescriptorBuffer::sync()
    {
        if (problem == 0 && !WriteAll(file, pbase(), static_cast<std::size_t>(pptr() - pbase())))
        {
            problem = errno;
        }
        setp(block.data(), block.data() + block.size());
        return problem == 0 ? 0 : -1;
    }

    DescriptorStream::DescriptorStream(int file)
        : std::ostream(nullptr)
        , buffer(file)
    {
        rdbuf(&buffer);
    }

    void DescriptorStream::Finish(const std::string& name)
    {
        flush();
        if (buffer.Problem() != 0)
        {
            throw Failure(name + " cannot be written: " + SystemText(buffer.Problem()));
        }
        if (!*this)
        {
            throw Failure(name + " cannot be written");
        }
    }
}
