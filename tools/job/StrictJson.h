// JSON as a configuration wants it: nlohmann's parser with everything refused that it would let pass in silence, a member
// that is repeated and an integer that is too large for any number that a job can hold, and with a place for each refusal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Jobs
{
    struct JsonValue;
    using JsonArray = std::vector<JsonValue>;
    using JsonObject = std::map<std::string, JsonValue>;

    /// A value of the text. Integers are unsigned unless they have a sign. (The parser's own class takes memory to give
    /// memory back, and ends the process where there is none.)
    struct JsonValue
    {
        std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, std::string, JsonArray, JsonObject> is;

        /// The value as one of these, or null if it is something else.
        template <class Type>
        const Type* As() const
        {
            return std::get_if<Type>(&is);
        }
        bool IsNumber() const { return As<std::int64_t>() || As<std::uint64_t>() || As<double>(); }
    };

    /// Why a JSON text is not accepted. It says where, as "line 3, column 7: ..." or as "sheets[0].front: ...".
    class JsonRefusal : public std::runtime_error
    {
    public:
        using std::runtime_error::runtime_error;
        JsonRefusal(const std::string& place, const std::string& why);
    };

    /// `parent.key`, or `parent["key"]` for a key that is not a plain word; a document's root has the place "".
    std::string PlaceOfMember(const std::string& parent, const std::string& key);

    /// `parent[index]`.
    std::string PlaceOfElement(const std::string& parent, std::size_t index);

    /// The one JSON value that `text` holds. Throws JsonRefusal.
    JsonValue ReadStrictJson(std::string_view text);

    /// The value, whose strings are UTF-8, as JSON text in one line.
    std::string JsonText(const JsonValue& value);
}
