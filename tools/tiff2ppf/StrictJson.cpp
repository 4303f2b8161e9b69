#include "tiff2ppf/StrictJson.h"

#include "tiff2ppf/Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <istream>
#include <utility>
#include <vector>

namespace Tiff2Ppf
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
            Json Take() { return std::move(root); }

            bool null() override { return Add(nullptr); }
            bool boolean(bool value) override { return Add(value); }
            bool number_integer(std::int64_t value) override { return Add(value); }
            bool number_unsigned(std::uint64_t value) override { return Add(value); }
            bool string(std::string& value) override { return Add(std::move(value)); }
            bool binary(Json::binary_t& value) override { return Add(std::move(value)); }
            bool start_object(std::size_t) override { return Open(Json::object()); }
            bool start_array(std::size_t) override { return Open(Json::array()); }
            bool end_object() override { return Close(); }
            bool end_array() override { return Close(); }

            bool number_float(double value, const std::string& literal) override
            {
                // The parser takes an integer that 64 bits cannot hold for a float.
                if (literal.find_first_of(".eE") == std::string::npos)
                {
                    throw JsonFault(PlaceOfNext(), "the integer " + literal + " is too large");
                }
                return Add(value);
            }

            bool key(std::string& name) override
            {
                Level& level = open.back();
                if (level.container->contains(name))
                {
                    throw JsonFault(PlaceOfMember(PlaceOf(open.size() - 1), name), "this member is repeated");
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
                    throw JsonFault(PlaceOfNext(), "the number " + token + " is too large");
                }
                constexpr char Introduction[] = "parse error at ";
                if (why.rfind(Introduction, 0) == 0)
                {
                    why.erase(0, sizeof Introduction - 1);
                }
                why.resize(std::min<std::size_t>(why.size(), MaxMessageBytes));
                if (!IsUtf8(token))
                {
                    why += " (a JSON text is UTF-8; a file whose name is not can only be given on the command line)";
                }
                throw JsonFault(why);
            }

        private:
            /// The parser quotes the whole of what it read last.
            static constexpr std::size_t MaxMessageBytes = 300;

            struct Level
            {
                Json* container;
                std::string key; ///< of the member that is being read
            };

            template <class Value>
            bool Add(Value&& value)
            {
                Place(Json(std::forward<Value>(value)));
                return true;
            }

            bool Open(Json container)
            {
                if (open.size() == MaxDepth)
                {
                    throw JsonFault(PlaceOfNext(), "this is nested deeper than any job");
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
            Json* Place(Json value)
            {
                if (open.empty())
                {
                    root = std::move(value);
                    return &root;
                }
                Level& level = open.back();
                if (level.container->is_object())
                {
                    return &((*level.container)[level.key] = std::move(value));
                }
                level.container->push_back(std::move(value));
                return &level.container->back();
            }

            /// The place of the container at `depth` of open.
            std::string PlaceOf(std::size_t depth) const
            {
                std::string place;
                for (std::size_t i = 0; i < depth; ++i)
                {
                    const Level& level = open[i];
                    place = level.container->is_object() ? PlaceOfMember(place, level.key)
                                                         : PlaceOfElement(place, level.container->size() - 1);
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
                return level.container->is_object() ? PlaceOfMember(parent, level.key)
                                                    : PlaceOfElement(parent, level.container->size());
            }

            Json root;
            std::vector<Level> open;
        };

        bool IsPlainWord(const std::string& key)
        {
            const auto isPlain = [](char c)
            { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_'; };
            return !key.empty() && std::all_of(key.begin(), key.end(), isPlain);
        }
    }

    JsonFault::JsonFault(const std::string& place, const std::string& why)
        : JsonFault(place.empty() ? why : place + ": " + why)
    {
    }

    std::string PlaceOfMember(const std::string& parent, const std::string& key)
    {
        if (!IsPlainWord(key))
        {
            return parent + '[' + Quoted(key) + ']';
        }
        return parent.empty() ? key : parent + '.' + key;
    }

    std::string PlaceOfElement(const std::string& parent, std::size_t index)
    {
        return parent + '[' + std::to_string(index) + ']';
    }

    Json ReadStrictJson(std::istream& in)
    {
        Builder builder;
        Json::sax_parse(in, &builder);
        return builder.Take();
    }
}
