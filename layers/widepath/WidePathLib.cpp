// Decodes as UTF-8 where it can, and gives every other byte a unit of its own among the low surrogates, which no
// well-formed UTF-8 decodes to.
#include <WidePathLib.h>

#include <boost/locale/utf.hpp>

#include <iterator>
#include <stdexcept>

namespace WidePath
{
    namespace
    {
        using Utf8 = boost::locale::utf::utf_traits<char>;

        static_assert(sizeof(wchar_t) == 4, "a wide unit holds any code point");

        /// Unit of a byte b that is not part of well-formed UTF-8: EscapeBase + b. Such a byte is above 0x7F.
        constexpr wchar_t EscapeBase = 0xDC00;
        constexpr wchar_t FirstEscape = EscapeBase + 0x80;
        constexpr wchar_t LastEscape = EscapeBase + 0xFF;
    }
}

std::wstring Utf8ToWide(const std::string& path)
{
    std::wstring wide;
    wide.reserve(path.size());
    for (auto position = path.begin(); position != path.end();)
    {
        auto next = position;
        const boost::locale::utf::code_point decoded = WidePath::Utf8::decode(next, path.end());
        if (decoded != boost::locale::utf::illegal && decoded != boost::locale::utf::incomplete)
        {
            wide += static_cast<wchar_t>(decoded);
            position = next;
        }
        else
        {
            wide += static_cast<wchar_t>(WidePath::EscapeBase + static_cast<unsigned char>(*position++));
        }
    }
    return wide;
}

std::string WideToUtf8(const std::wstring& path)
{
    std::string bytes;
    bytes.reserve(path.size());
    for (const wchar_t unit : path)
    {
        if (unit >= WidePath::FirstEscape && unit <= WidePath::LastEscape)
        {
            bytes += static_cast<char>(unit - WidePath::EscapeBase);
        }
        else if (boost::locale::utf::is_valid_codepoint(static_cast<boost::locale::utf::code_point>(unit)))
        {
            WidePath::Utf8::encode(static_cast<boost::locale::utf::code_point>(unit), std::back_inserter(bytes));
        }
        else
        {
            throw std::range_error("A wide path holds a unit that stands for no character and no byte");
        }
    }
    return bytes;
}
