#include "job/StrictJson.h"

#include "host/Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace Jobs
{
    namespace
    {
        using Json = nlohmann::json;

        /// A job nests five deep; a text far beyond that is none, and would only make its places endless.
        constexpr std::size_t MaxDepth = 32;

        /// Builds the document from the parser's events. The last container of `open` receives the next value, under
        /// its `key` if it is an object.
        class Builder : public nlohmann::json_sax<Json>
        {
        public:
            JsonValue Take() { return std::move(root); }

            bool null() override { return Add({nullptr}); }
            bool boolean(bool value) override { return Add({value}); }
            bool number_integer(std::int64_t value) override { return Add({value}); }
            bool number_unsigned(std::uint64_t value) override { return Add({value}); }
            bool string(std::string& value) override { return Add({std::move(value)}); }
            bool binary(Json::binary_t&) override { return false; } // no text has it
            bool start_object(std::size_t) override { return Open({JsonObject()}); }
            bool start_array(std::size_t) override { return Open({JsonArray()}); }
            bool end_object() override { return Close(); }
            bool end_array() override { return Close(); }

            bool number_float(double value, const std::string& literal) override
            {
                // The parser takes an integer that 64 bits cannot hold for a float.
                if (literal.find_first_of(".eE") == std::string::npos)
                {
                    throw JsonRefusal(PlaceOfNext(), "the integer " + Shown(literal) + " is too large");
                }
                return Add({value});
            }

            bool key(std::string& name) override
            {
                Level& level = open.back();
                if (level.Members()->count(name) > 0)
                {
                    throw JsonRefusal(PlaceOfMember(PlaceOf(open.size() - 1), name), "this member is repeated");
                }
                level.key = std::move(name);
                return true;
            }

            bool parse_error(std::size_t, const std::string& token, const Json::exception& error) override
            {
                std::string why = error.what();
                why.erase(0, why.find("] ") + 2); // the parser's own number of the error
                if (why.rfind("number overflow", 0) == 0)
                {
                    throw JsonRefusal(PlaceOfNext(), "the number " + Shown(token) + " is too large");
                }
                constexpr char Introduction[] = "parse error at ";
                if (why.rfind(Introduction, 0) == 0)
                {
                    why.erase(0, sizeof Introduction - 1);
                }
                why = Shown(why); // the parser quotes the whole of what it read last
                if (!Host::IsUtf8(token))
                {
                    why += " (a JSON text is UTF-8; a file whose name is not can only be given on the command line)";
                }
                throw JsonRefusal(why);
            }

        private:
            struct Level
            {
                JsonValue* container;
                std::string key; ///< of the member that is being read

                JsonObject* Members() const { return std::get_if<JsonObject>(&container->is); }
                std::size_t Elements() const { return std::get<JsonArray>(container->is).size(); }
            };

            static std::string Shown(const std::string& text) { return Host::Shortened(text, 300); }

            bool Add(JsonValue value)
            {
                Place(std::move(value));
                return true;
            }

            bool Open(JsonValue container)
            {
                if (open.size() == MaxDepth)
                {
                    throw JsonRefusal(PlaceOfNext(), "this is nested deeper than any job");
                }
                open.push_back({Place(std::move(container)), {}});
                return true;
            }

            bool Close()
            {
                open.pop_back();
                return true;
            }

            /// Puts `value` where the next value belongs. The address is good until the container it is in grows, which
            /// is not before the value is complete.
            JsonValue* Place(JsonValue value)
            {
                if (open.empty())
                {
                    root = std::move(value);
                    return &root;
                }
                Level& level = open.back();
                if (JsonObject* const members = level.Members())
                {
                    return &((*members)[level.key] = std::move(value));
                }
                return &std::get<JsonArray>(level.container->is).emplace_back(std::move(value));
            }

            /// The place of the container at `depth` of open.
            std::string PlaceOf(std::size_t depth) const
            {
                std::string place;
                for (std::size_t i = 0; i < depth; ++i)
                {
                    const Level& level = open[i];
                    place = level.Members() != nullptr ? PlaceOfMember(place, level.key)
                                                       : PlaceOfElement(place, level.Elements() - 1);
                }
                return place;
            }

            std::string PlaceOfNext() const
            {
                if (open.empty())
                {
                    return {};
                }
                const Level& level = open.back();
                const std::string parent = PlaceOf(open.size() - 1);
                return level.Members() != nullptr ? PlaceOfMember(parent, level.key)
                                                  : PlaceOfElement(parent, level.Elements());
            }

            JsonValue root;
            std::vector<Level> open;
        };

        bool IsPlainWord(const std::string& key)
        {
            const auto isPlain = [](char c)
            { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_'; };
            return !key.empty() && std::all_of(key.begin(), key.end(), isPlain);
        }

        /// Values alone are left to the parser's class: without elements it takes no memory to give memory back.
        struct Writer
        {
            template <class Alone>
            std::string operator()(const Alone& value) const
            {
                return Json(value).dump();
            }
            std::string operator()(const JsonArray& elements) const
            {
                std::string text;
                for (const JsonValue& element : elements)
                {
                    text += (text.empty() ? "" : ",") + JsonText(element);
                }
                return '[' + text + ']';
            }
            std::string operator()(const JsonObject& members) const
            {
                std::string text;
                for (const auto& [key, value] : members)
                {
                    text += (text.empty() ? "" : ",") + (*this)(key) + ':' + JsonText(value);
                }
                return '{' + text + '}';
            }
        };
    }

    JsonRefusal::JsonRefusal(const std::string& place, const std::string& why)
        : JsonRefusal(place.empty() ? why : place + ": " + why)
    {
    }

    std::string PlaceOfMember(const std::string& parent, const std::string& key)
    {
        if (!IsPlainWord(key))
        {
            return parent + '[' + Host::Quoted(key) + ']';
        }
        return parent.empty() ? key : parent + '.' + key;
    }

    std::string PlaceOfElement(const std::string& parent, std::size_t index)
    {
        return parent + '[' + std::to_string(index) + ']';
    }

    JsonValue ReadStrictJson(std::string_view text)
    {
        Builder builder;
        Json::sax_parse(text, &builder);
        return builder.Take();
    }

    std::string JsonText(const JsonValue& value)
    {
        return std::visit(Writer(), value.is);
    }
}
