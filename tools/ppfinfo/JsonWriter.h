// JSON written value by value, so that a document of any size takes no memory as JSON. Apart from the JSON library, which
// writes the single values, because that builds a whole tree and needs memory to take it down again.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace PpfInfo
{
    /// Calls for a value: a scalar, or Begin (value* | (Name value)*) End. Lines are indented by two blanks a level.
    class JsonWriter
    {
    public:
        /// The stream has to outlive this object.
        explicit JsonWriter(std::ostream& theOut)
            : out(theOut)
        {
        }

        void BeginObject() { Begin('{'); }
        void EndObject() { End('}'); }
        void BeginArray() { Begin('['); }
        void EndArray() { End(']'); }

        /// The name of the member whose value comes next.
        void Name(std::string_view name);

        /// A text of any bytes: those that are not UTF-8 as ISO 8859-1.
        void Text(std::string_view text);
        /// A whole number, and one that keeps a point or an exponent.
        void Whole(std::uint64_t number);
        void Number(double number);
        void Null();

        /// A member with its value.
        void Text(std::string_view name, std::string_view text);
        void Whole(std::string_view name, std::uint64_t number);

    private:
        void Begin(char bracket);
        void End(char bracket);
        void BeginItem();
        void BreakLine();

        std::ostream& out;
        unsigned depth = 0;
        /// Nothing stands yet in the innermost object or array.
        bool isEmpty = true;
        bool followsName = false;
    };
}
