// Scoped owner of a file descriptor.
#pragma once

#include <unistd.h>

namespace Tiff2Ppf
{
    class Descriptor
    {
    public:
        /// Takes over `number`; a negative one is none.
        explicit Descriptor(int theNumber)
            : number(theNumber)
        {
        }
        ~Descriptor()
        {
            if (IsOpen())
            {
                close(number);
            }
        }
        Descriptor(const Descriptor&) = delete;
        Descriptor& operator=(const Descriptor&) = delete;

        bool IsOpen() const { return number >= 0; }
        int Number() const { return number; }

    private:
        int number;
    };
}
