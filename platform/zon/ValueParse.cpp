#include "zon/ValueParse.h"

#include <cmath>

namespace Zon {

ValueTextReader::ValueTextReader(std::string_view text, std::string_view typeName)
    : text_(text), typeName_(typeName) {
   expect("Value('");
   expect(typeName);
   expect("', ** {");
}

void ValueTextReader::fail(std::string_view what) const {
   std::string text = "cannot read ";
   text += typeName_;
   text += " at offset ";
   text += std::to_string(pos_);
   text += ": ";
   text += what;
   throw ParseException(std::move(text));
}

void ValueTextReader::expect(std::string_view s) {
   if (text_.substr(pos_, s.size()) != s) {
      fail("expected \"" + std::string(s) + "\"");
   }
   pos_ += s.size();
}

std::string_view ValueTextReader::field(std::string_view name) {
   if (!first_) {
      expect(", ");
   }
   first_ = false;
   expect("'");
   expect(name);
   expect("': ");
   return literal();
}

// A literal ends at the first ',' or '}' outside quotes and brackets; it may be empty.
std::string_view ValueTextReader::literal() {
   std::size_t const begin = pos_;
   int depth = 0;
   while (pos_ < text_.size()) {
      char const c = text_[pos_];
      if (c == '\'' || c == '"') {
         ++pos_;
         while (pos_ < text_.size() && text_[pos_] != c) {
            pos_ += text_[pos_] == '\\' ? 2 : 1;
         }
         if (pos_ >= text_.size()) {
            fail("unterminated string");
         }
      } else if (c == '(' || c == '[' || c == '{') {
         ++depth;
      } else if (c == ')' || c == ']' || c == '}') {
         if (depth == 0) {
            break;
         }
         --depth;
      } else if (c == ',' && depth == 0) {
         break;
      }
      ++pos_;
   }
   // An empty literal is handed on: a value whose text may be empty (an unset
   // interface id) reads it, every other type's parser refuses it.
   return text_.substr(begin, pos_ - begin);
}

void ValueTextReader::end() {
   expect("})");
   if (pos_ != text_.size()) {
      fail("text after the end");
   }
}

bool boolFromText(std::string_view s) {
   if (s == "True") {
      return true;
   }
   if (s == "False") {
      return false;
   }
   throw ParseException("not a bool: " + std::string(s));
}

std::uint64_t unsignedFromText(std::string_view s) {
   std::uint64_t v = 0;
   auto r = std::from_chars(s.data(), s.data() + s.size(), v);
   if (s.empty() || r.ec != std::errc() || r.ptr != s.data() + s.size()) {
      throw ParseException("not an unsigned number: " + std::string(s));
   }
   return v;
}

std::int64_t signedFromText(std::string_view s) {
   std::int64_t v = 0;
   auto r = std::from_chars(s.data(), s.data() + s.size(), v);
   if (s.empty() || r.ec != std::errc() || r.ptr != s.data() + s.size()) {
      throw ParseException("not a number: " + std::string(s));
   }
   return v;
}

std::uint64_t unsignedFromTextSaturated(std::string_view s, std::uint64_t saturated, bool & outOfRange) {
   std::string_view digits = s.substr(!s.empty() && s.front() == '-' ? 1 : 0);
   bool const negative = digits.size() != s.size();
   bool const allDigits =
       !digits.empty() && digits.find_first_not_of("0123456789") == std::string_view::npos;
   if (!allDigits) {
      throw ParseException("not a number: " + std::string(s));
   }
   std::uint64_t v = 0;
   auto r = std::from_chars(digits.data(), digits.data() + digits.size(), v);
   bool const zero = digits.find_first_not_of('0') == std::string_view::npos;
   if ((negative && !zero) || r.ec == std::errc::result_out_of_range || v > saturated) {
      outOfRange = true;
      return saturated;
   }
   outOfRange = false;
   return v;
}

double doubleFromText(std::string_view s) {
   if (s == "nan") {
      return std::nan("");
   }
   if (s == "inf") {
      return INFINITY;
   }
   if (s == "-inf") {
      return -INFINITY;
   }
   double v = 0;
   auto r = std::from_chars(s.data(), s.data() + s.size(), v);
   if (s.empty() || r.ec != std::errc() || r.ptr != s.data() + s.size()) {
      throw ParseException("not a number: " + std::string(s));
   }
   return v;
}

std::string stringFromText(std::string_view s) {
   if (s.size() < 2 || s.front() != '\'' || s.back() != '\'') {
      throw ParseException("not a quoted string: " + std::string(s));
   }
   std::string out;
   std::string_view body = s.substr(1, s.size() - 2);
   for (std::size_t i = 0; i < body.size(); ++i) {
      char c = body[i];
      if (c != '\\') {
         out += c;
         continue;
      }
      if (++i >= body.size()) {
         throw ParseException("bad escape in: " + std::string(s));
      }
      switch (body[i]) {
       case '\\': out += '\\'; break;
       case '\'': out += '\''; break;
       case 'n': out += '\n'; break;
       case 'r': out += '\r'; break;
       case 't': out += '\t'; break;
       case 'x': {
         unsigned v = 0;
         auto hex = body.substr(i + 1, 2);
         auto r = std::from_chars(hex.data(), hex.data() + hex.size(), v, 16);
         if (hex.size() != 2 || r.ptr != hex.data() + 2) {
            throw ParseException("bad escape in: " + std::string(s));
         }
         out += static_cast<char>(v);
         i += 2;
         break;
       }
       default: throw ParseException("bad escape in: " + std::string(s));
      }
   }
   return out;
}

} // namespace Zon
