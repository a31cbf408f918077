// The generic text form of value types:
//    Value('Ns::TypeName', ** {'field': value, ...})
// Booleans print as True/False, integers in decimal (bytes too), floating point
// in its shortest round-trip form with a decimal point, strings quoted and escaped,
// enumerations by name, and any other value by its own stringValue().
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "zon/Enum.h"
#include "zon/String.h"

namespace Zon {

void appendValueText(std::string & out, bool v);
void appendValueText(std::string & out, std::uint64_t v);
void appendValueText(std::string & out, std::int64_t v);
void appendValueText(std::string & out, double v);
void appendValueText(std::string & out, std::string_view v); // quoted

template <typename T>
   requires(std::is_integral_v<T> && !std::is_same_v<T, bool>)
void appendValueText(std::string & out, T v) {
   if constexpr (std::is_signed_v<T>) {
      appendValueText(out, static_cast<std::int64_t>(v));
   } else {
      appendValueText(out, static_cast<std::uint64_t>(v));
   }
}

template <RegisteredEnum E>
void appendValueText(std::string & out, E v) {
   out += valueToStrep(v);
}

template <typename Tag>
void appendValueText(std::string & out, BasicString<Tag> const & v) {
   appendValueText(out, std::string_view(v));
}

template <typename T>
   requires requires(T const & t) { t.stringValue(); } &&
            (!std::is_base_of_v<std::string, T>)
void appendValueText(std::string & out, T const & v) {
   out += v.stringValue();
}

// Builds one text form: ValueText("Ldp::X").field("a", 1).field("b", true).str()
class ValueText {
 public:
   explicit ValueText(std::string_view typeName) {
      out_.reserve(64);
      out_ += "Value('";
      out_ += typeName;
      out_ += "', ** {";
   }

   template <typename T>
   ValueText & field(std::string_view name, T const & v) {
      if (!first_) {
         out_ += ", ";
      }
      first_ = false;
      out_ += '\'';
      out_ += name;
      out_ += "': ";
      appendValueText(out_, v);
      return *this;
   }

   String8 str() const { return String8(out_ + "})"); }

 private:
   std::string out_;
   bool first_ = true;
};

} // namespace Zon
