// A streaming JSON writer: appends one value after the other to a string, with
// the commas and the escaping that JSON needs, and nothing else. No tree is
// built, so a line costs what its bytes cost. Keys are written as given (they
// are the program's own names and need no escaping); string values may hold
// any byte: control characters are escaped and invalid UTF-8 is replaced by
// U+FFFD, never refused.
#pragma once

#include <charconv>
#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>

namespace LdpDecode {

// Appends s to out as a JSON string, quotes included.
void appendJsonString(std::string & out, std::string_view s);

class JsonWriter {
 public:
   explicit JsonWriter(std::string & out) noexcept : out_(out) {}

   JsonWriter & beginObject() { return open('{'); }
   JsonWriter & endObject() { return close('}'); }
   JsonWriter & beginArray() { return open('['); }
   JsonWriter & endArray() { return close(']'); }

   // The key of the next value of the current object.
   JsonWriter & key(std::string_view k) {
      separate();
      out_ += '"';
      out_ += k;
      out_ += "\":";
      afterKey_ = true;
      return *this;
   }

   JsonWriter & value(std::string_view s) {
      separate();
      appendJsonString(out_, s);
      return *this;
   }
   JsonWriter & value(char const * s) { return value(std::string_view(s)); }
   JsonWriter & value(bool b) {
      separate();
      out_ += b ? "true" : "false";
      return *this;
   }
   template <std::integral T>
      requires(!std::same_as<T, bool>)
   JsonWriter & value(T n) {
      separate();
      char buf[24];
      auto const end = std::to_chars(buf, buf + sizeof buf, n).ptr;
      out_.append(buf, end);
      return *this;
   }
   JsonWriter & null() {
      separate();
      out_ += "null";
      return *this;
   }

   template <typename T>
   JsonWriter & field(std::string_view k, T const & v) {
      key(k);
      return value(v);
   }
   JsonWriter & object(std::string_view k) { return key(k).beginObject(); }
   JsonWriter & array(std::string_view k) { return key(k).beginArray(); }

   // Nesting depth: 0 once every object and array is closed.
   unsigned depth() const noexcept { return depth_; }

 private:
   static constexpr unsigned maxDepth = 63;

   // A comma before every member or element but the first.
   void separate() {
      if (afterKey_) {
         afterKey_ = false;
         return;
      }
      std::uint64_t const bit = std::uint64_t(1) << depth_;
      if (depth_ && !(empty_ & bit)) {
         out_ += ',';
      }
      empty_ &= ~bit;
   }
   JsonWriter & open(char c) {
      separate();
      out_ += c;
      if (depth_ < maxDepth) {
         ++depth_;
      }
      empty_ |= std::uint64_t(1) << depth_;
      return *this;
   }
   JsonWriter & close(char c) {
      out_ += c;
      if (depth_) {
         --depth_;
      }
      return *this;
   }

   std::string & out_;
   std::uint64_t empty_ = 0;  // bit d: nothing written yet at depth d
   unsigned depth_ = 0;
   bool afterKey_ = false;
};

} // namespace LdpDecode
