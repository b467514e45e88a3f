#pragma once

#include <boost/json/monotonic_resource.hpp>
#include <boost/json/value.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvalle::base {

using Json = boost::json::value;

/// Memory for one document that is read and dropped: much cheaper than a piece for each of its parts. Must
/// outlive the document and its copies, other than those given a storage of their own.
using JsonArena = boost::json::monotonic_resource;

/// Reads one JSON document of UTF-8 text, strictly: no comments, no trailing commas, nothing after the value,
/// no unpaired surrogates, at most 512 levels deep. Which of several members with the same name counts is not
/// specified. Absent when the text is anything else. A number outside the range of a double does not spoil
/// the document: it is kept as a value that `jsonNumber` refuses; only an exponent beyond 32 bits is refused
/// with the whole. `storage` may be an arena. Never throws.
std::optional<Json> parseJson(std::string_view text, boost::json::storage_ptr storage = {});

/// The document as compact UTF-8 text, independent of the locale. Absent when a text in it is not valid
/// UTF-8.
std::optional<std::string> writeJson(const Json& value);

/// Appends the text as a JSON string, as `writeJson` would write it. False, with nothing appended, when it is
/// not UTF-8. For long lists, which would otherwise be built in memory only to be written.
bool appendJsonText(std::string& json, std::string_view text);

/// The member `key` of an object; null pointer when `value` is no object or has no such member.
const Json* jsonMember(const Json& value, std::string_view key);

/// Strict readers: absent for a null pointer and for any other type. Booleans and numbers never stand in for
/// one another.
std::optional<bool> jsonBoolean(const Json* value);
std::optional<double> jsonNumber(const Json* value);
std::optional<std::string> jsonText(const Json* value);
/// A number without a fraction that a signed 64-bit integer holds; 12.0 counts, 12.5 does not.
std::optional<std::int64_t> jsonInteger(const Json* value);

}  // namespace orvalle::base
