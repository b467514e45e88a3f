#include "base/json.h"

#include <boost/json/basic_parser_impl.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value_stack.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

#include "base/decimal.h"
#include "base/text.h"

namespace orvalle::base {
namespace {

namespace json = boost::json;

constexpr std::size_t kMaximumDepth = 512;

/// Characters that have an escape of one letter, and the letters.
constexpr char kSimpleEscapes[] = {'"', '\\', '\b', '\f', '\n', '\r', '\t'};
constexpr char kSimpleEscapeLetters[] = {'"', '\\', 'b', 'f', 'n', 'r', 't'};

/// Builds values from the parser's events. It exists for the numbers: the library's own builder rounds some
/// of them and cannot tell an underflow from a zero, and so every number is read again from its text.
class Builder {
 public:
  static constexpr std::size_t max_object_size = json::object::max_size();
  static constexpr std::size_t max_array_size = json::array::max_size();
  static constexpr std::size_t max_key_size = json::string::max_size();
  static constexpr std::size_t max_string_size = json::string::max_size();
  using Error = json::error_code;

  explicit Builder(json::storage_ptr storage) : storage_(std::move(storage)) {}
  Builder(const Builder&) = delete;
  Builder& operator=(const Builder&) = delete;

  bool on_document_begin(Error&) {
    stack_.reset(storage_);
    return true;
  }
  bool on_document_end(Error&) { return true; }
  bool on_object_begin(Error&) { return true; }
  bool on_object_end(std::size_t count, Error&) {
    stack_.push_object(count);
    return true;
  }
  bool on_array_begin(Error&) { return true; }
  bool on_array_end(std::size_t count, Error&) {
    stack_.push_array(count);
    return true;
  }
  bool on_key_part(json::string_view text, std::size_t, Error&) {
    stack_.push_chars(text);
    return true;
  }
  bool on_key(json::string_view text, std::size_t, Error&) {
    stack_.push_key(text);
    return true;
  }
  bool on_string_part(json::string_view text, std::size_t, Error&) {
    stack_.push_chars(text);
    return true;
  }
  bool on_string(json::string_view text, std::size_t, Error&) {
    stack_.push_string(text);
    return true;
  }
  bool on_number_part(json::string_view text, Error&) {
    number_ += std::string_view(text.data(), text.size());
    return true;
  }
  bool on_int64(std::int64_t value, json::string_view, Error&) {
    number_.clear();
    stack_.push_int64(value);
    return true;
  }
  bool on_uint64(std::uint64_t value, json::string_view, Error&) {
    number_.clear();
    stack_.push_uint64(value);
    return true;
  }
  bool on_double(double, json::string_view text, Error&) {
    number_ += std::string_view(text.data(), text.size());
    stack_.push_double(decimalNumber(number_).value_or(std::numeric_limits<double>::quiet_NaN()));
    number_.clear();
    return true;
  }
  bool on_bool(bool value, Error&) {
    stack_.push_bool(value);
    return true;
  }
  bool on_null(Error&) {
    stack_.push_null();
    return true;
  }
  bool on_comment_part(json::string_view, Error&) { return true; }
  bool on_comment(json::string_view, Error&) { return true; }

  json::value release() { return stack_.release(); }

 private:
  json::storage_ptr storage_;
  /// Where what is not complete yet waits, as long as it fits.
  std::array<unsigned char, 16 * 1024> waiting_;
  json::value_stack stack_{{}, waiting_.data(), waiting_.size()};
  std::string number_;
};

bool isWritable(const Json& value) {
  switch (value.kind()) {
    case json::kind::string:
      return isValidUtf8({value.get_string().data(), value.get_string().size()});
    case json::kind::array:
      for (const auto& element : value.get_array()) {
        if (!isWritable(element)) return false;
      }
      return true;
    case json::kind::object:
      for (const auto& member : value.get_object()) {
        if (!isValidUtf8({member.key().data(), member.key().size()}) || !isWritable(member.value()))
          return false;
      }
      return true;
    case json::kind::double_:
      return std::isfinite(value.get_double());
    case json::kind::null:
    case json::kind::bool_:
    case json::kind::int64:
    case json::kind::uint64:
      return true;
  }
  return false;
}

}  // namespace

std::optional<Json> parseJson(std::string_view text, json::storage_ptr storage) {
  json::parse_options options;
  options.max_depth = kMaximumDepth;
  json::basic_parser<Builder> parser(options, std::move(storage));
  json::error_code error;
  const auto consumed = parser.write_some(false, text.data(), text.size(), error);
  if (error || consumed != text.size() || !parser.done()) return {};
  return parser.handler().release();
}

std::optional<std::string> writeJson(const Json& value) {
  if (!isWritable(value)) return {};
  return json::serialize(value);
}

bool appendJsonText(std::string& json, std::string_view text) {
  if (!isValidUtf8(text)) return false;
  json += '"';
  for (;;) {
    const auto special = std::find_if(text.begin(), text.end(), [](char character) {
      return static_cast<unsigned char>(character) < 0x20 || character == '"' || character == '\\';
    });
    json.append(text.begin(), special);
    if (special == text.end()) break;
    const auto* simple = std::find(std::begin(kSimpleEscapes), std::end(kSimpleEscapes), *special);
    json += '\\';
    if (simple != std::end(kSimpleEscapes)) {
      json += kSimpleEscapeLetters[simple - std::begin(kSimpleEscapes)];
    } else {
      constexpr char kDigits[] = "0123456789abcdef";
      const auto code = static_cast<unsigned char>(*special);
      json += "u00";
      json += kDigits[code >> 4];
      json += kDigits[code & 0xF];
    }
    text.remove_prefix(static_cast<std::size_t>(special - text.begin()) + 1);
  }
  json += '"';
  return true;
}

const Json* jsonMember(const Json& value, std::string_view key) {
  const auto* object = value.if_object();
  return object ? object->if_contains({key.data(), key.size()}) : nullptr;
}

std::optional<bool> jsonBoolean(const Json* value) {
  if (!value || !value->is_bool()) return {};
  return value->get_bool();
}

std::optional<double> jsonNumber(const Json* value) {
  if (!value) return {};
  if (const auto* whole = value->if_int64()) return static_cast<double>(*whole);
  if (const auto* whole = value->if_uint64()) return static_cast<double>(*whole);
  const auto* number = value->if_double();
  if (!number || !std::isfinite(*number)) return {};
  return *number;
}

std::optional<std::string> jsonText(const Json* value) {
  if (!value || !value->is_string()) return {};
  const auto& text = value->get_string();
  return std::string(text.data(), text.size());
}

std::optional<std::int64_t> jsonInteger(const Json* value) {
  if (!value) return {};
  if (const auto* whole = value->if_int64()) return *whole;
  const auto number = value->is_double() ? jsonNumber(value) : std::nullopt;
  // 2^63 itself is a double, but no longer a signed 64-bit integer.
  if (!number || std::trunc(*number) != *number || *number < -0x1p63 || *number >= 0x1p63) return {};
  return static_cast<std::int64_t>(*number);
}

}  // namespace orvalle::base
