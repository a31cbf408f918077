// Reading the generic text form of value types back:
//    Value('Ns::TypeName', ** {'field': value, ...})
// A reader walks the fields in their order and hands out each field's literal;
// valueFromText turns a literal into a value of the field's type. Any mismatch
// (another type name, another field name or order, a malformed literal, text
// after the end) is a ParseException; a value that its type refuses raises that
// type's own error.
#pragma once

#include <charconv>
#include <concepts>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>

#include "zon/Enum.h"
#include "zon/Exception.h"
#include "zon/Seconds.h"
#include "zon/String.h"

namespace Zon {

class ValueTextReader {
 public:
   // Reads the head "Value('typeName', ** {".
   ValueTextReader(std::string_view text, std::string_view typeName);

   // Reads "'name': " (after ", " for all but the first field) and returns the
   // field's literal.
   std::string_view field(std::string_view name);
   // Reads the closing "})", which must end the text.
   void end();

 private:
   [[noreturn]] void fail(std::string_view what) const;
   void expect(std::string_view s);
   std::string_view literal();

   std::string_view text_;
   std::string_view typeName_;
   std::size_t pos_ = 0;
   bool first_ = true;
};

// Literal parsers of the basic types.
bool boolFromText(std::string_view s);
std::uint64_t unsignedFromText(std::string_view s); // ParseException also on overflow
std::int64_t signedFromText(std::string_view s);
double doubleFromText(std::string_view s);
std::string stringFromText(std::string_view s); // a quoted, escaped literal

// A decimal that may be out of range: its value, or `saturated` (and `outOfRange`
// set) when it is negative or larger than `saturated`.
std::uint64_t unsignedFromTextSaturated(std::string_view s, std::uint64_t saturated, bool & outOfRange);

template <typename T>
T valueFromText(std::string_view s) {
   if constexpr (std::is_same_v<T, bool>) {
      return boolFromText(s);
   } else if constexpr (std::is_integral_v<T> && std::is_unsigned_v<T>) {
      std::uint64_t v = unsignedFromText(s);
      if (v > std::numeric_limits<T>::max()) {
         throw ParseException("value out of range: " + std::string(s));
      }
      return static_cast<T>(v);
   } else if constexpr (std::is_integral_v<T>) {
      std::int64_t v = signedFromText(s);
      if (v < std::numeric_limits<T>::min() || v > std::numeric_limits<T>::max()) {
         throw ParseException("value out of range: " + std::string(s));
      }
      return static_cast<T>(v);
   } else if constexpr (std::is_floating_point_v<T>) {
      return static_cast<T>(doubleFromText(s));
   } else if constexpr (std::is_same_v<T, Seconds>) {
      return Seconds(doubleFromText(s));
   } else if constexpr (std::is_base_of_v<std::string, T>) {
      return T(stringFromText(s));
   } else if constexpr (RegisteredEnum<T>) {
      if (!s.empty() && (s.front() == '-' || (s.front() >= '0' && s.front() <= '9'))) {
         // A value without enumerator, printed as its number: it must fit the
         // enumeration's own integer type.
         return static_cast<T>(valueFromText<std::underlying_type_t<T>>(s));
      }
      return strepToValue<T>(s);
   } else if constexpr (requires { { T::fromString(s) } -> std::convertible_to<T>; }) {
      return T::fromString(s);
   } else {
      // A number wrapped in a class that checks its range in its constructor
      // (a label, a VLAN id): the constructor reports out-of-range values.
      using U = std::remove_cvref_t<decltype(std::declval<T const &>().value())>;
      static_assert(std::is_integral_v<U> && std::is_unsigned_v<U>, "no text parser for this type");
      // An out-of-range literal is given as the largest value, so that a type with
      // a narrower range refuses it with its own error; a type that takes that
      // value gets a ParseException instead.
      bool outOfRange = false;
      std::uint64_t const v = unsignedFromTextSaturated(s, std::numeric_limits<U>::max(), outOfRange);
      T t(static_cast<U>(v));
      if (outOfRange) {
         throw ParseException("value out of range: " + std::string(s));
      }
      return t;
   }
}

} // namespace Zon
