// The parts that a failure with a text of its own in the user's language is put together from. They know no concrete
// failure and no catalogue of texts: both are template arguments.
#pragma once

#include "rasteroutput/TarnelException.h"

#include <string>
#include <utility>
#include <vector>

namespace Tarnel
{
    /// Mix-in: pairs of strings that travel with every copy of a failure, for a catalogue to fill into its text.
    struct ExceptionParams
    {
        std::vector<std::pair<std::string, std::string>> params;
    };

    /// Policy that makes the text for the user: here the failure's own text, untranslated. May throw std::bad_alloc.
    template <class T>
    struct Localiser
    {
        static std::string Localise(const T& failure) { return failure.what(); }
    };

    /// Failure of class T, whose text for the user policy L makes.
    template <class T, class L>
    class LocalisableException : public Exception
    {
    public:
        std::string LocalisedMessage() const override { return L::Localise(static_cast<const T&>(*this)); }
    };
}
