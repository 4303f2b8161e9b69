#include "ppfinfo/JsonWriter.h"

#include "ppfinfo/Text.h"

#include <nlohmann/json.hpp>

namespace PpfInfo
{
    void JsonWriter::Name(std::string_view name)
    {
        Text(name);
        out << ": ";
        followsName = true;
    }

    void JsonWriter::Text(std::string_view text)
    {
        BeginItem();
        out << nlohmann::json(ToUtf8(text)).dump();
    }

    void JsonWriter::Whole(std::uint64_t number)
    {
        BeginItem();
        out << number;
    }

    void JsonWriter::Number(double number)
    {
        BeginItem();
        out << nlohmann::json(number).dump();
    }

    void JsonWriter::Null()
    {
        BeginItem();
        out << "null";
    }

    void JsonWriter::Text(std::string_view name, std::string_view text)
    {
        Name(name);
        Text(text);
    }

    void JsonWriter::Whole(std::string_view name, std::uint64_t number)
    {
        Name(name);
        Whole(number);
    }

    void JsonWriter::Begin(char bracket)
    {
        BeginItem();
        out << bracket;
        ++depth;
        isEmpty = true;
    }

    void JsonWriter::End(char bracket)
    {
        --depth;
        if (!isEmpty)
        {
            BreakLine();
        }
        out << bracket;
        isEmpty = false;
        if (depth == 0)
        {
            out << '\n';
        }
    }

    /// What stands before a name or a value.
    void JsonWriter::BeginItem()
    {
        if (depth > 0 && !followsName)
        {
            out << (isEmpty ? "" : ",");
            BreakLine();
        }
        isEmpty = false;
        followsName = false;
    }

    void JsonWriter::BreakLine()
    {
        out << '\n' << std::string(2 * std::size_t{depth}, ' ');
    }
}
