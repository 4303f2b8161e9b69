// JSON as a configuration wants it: nlohmann's parser with the faults refused that it would let pass in silence, a member
// that is repeated and an integer that is too large for any number that a job can hold, and with a place for each fault.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <iosfwd>
#include <stdexcept>
#include <string>

namespace Tiff2Ppf
{
    /// A fault of a JSON text. The text says where, as "line 3, column 7: ..." or as "sheets[0].front: ...".
    class JsonFault : public std::runtime_error
    {
    public:
        using std::runtime_error::runtime_error;
        JsonFault(const std::string& place, const std::string& why);
    };

    /// `parent.key`, or `parent["key"]` for a key that is no plain word; a document's root has the place "".
    std::string PlaceOfMember(const std::string& parent, const std::string& key);

    /// `parent[index]`.
    std::string PlaceOfElement(const std::string& parent, std::size_t index);

    /// The one JSON value that `in` holds. Members of objects come sorted by key. Throws JsonFault, and what reading
    /// from `in` throws.
    nlohmann::json ReadStrictJson(std::istream& in);
}
