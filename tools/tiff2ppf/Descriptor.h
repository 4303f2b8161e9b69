// Scoped owner of a file descriptor.
#pragma once

#include <unistd.h>

namespace Tiff2Ppf
{
    class Descriptor
    {
    public:
        /// Takes over `number`; a negative one is none.
        explicit Descriptor(int number)
            : m_number(number)
        {
        }
        ~Descriptor()
        {
            if (IsOpen())
                close(m_number);
        }
        Descriptor(const Descriptor&) = delete;
        Descriptor& operator=(const Descriptor&) = delete;

        bool IsOpen() const { return m_number >= 0; }
        int Number() const { return m_number; }

    private:
        int m_number;
    };
}
