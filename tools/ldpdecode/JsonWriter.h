// A streaming JSON writer: appends one value after the other to the output, with
// the commas and the escaping that JSON needs, and nothing else. No tree is
// built, so a line costs what its bytes cost. Keys are written as given (they
// are the program's own names and need no escaping); string values may hold
// any byte: control characters are escaped and invalid UTF-8 is replaced by
// U+FFFD, never refused.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstring>
#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>

#include "Output.h"

namespace LdpDecode {

// Appends s to out as a JSON string, quotes included.
void appendJsonString(std::string & out, std::string_view s);
// Writes s as a JSON string at p, which has room for jsonStringRoom(s.size())
// bytes; returns the end of what it wrote.
char * writeJsonString(char * p, std::string_view s) noexcept;
constexpr std::size_t jsonStringRoom(std::size_t n) noexcept { return 6 * n + 2; }

// Writes in place into an Output's buffer.
class JsonWriter {
 public:
   explicit JsonWriter(Output & out) noexcept : out_(out) {}
   JsonWriter(JsonWriter const &) = delete;
   JsonWriter & operator=(JsonWriter const &) = delete;

   JsonWriter & beginObject() { return open('{'); }
   JsonWriter & endObject() { return close('}'); }
   JsonWriter & beginArray() { return open('['); }
   JsonWriter & endArray() { return close(']'); }

   // The key of the next value of the current object.
   // A literal key: its length is known here, so the copy is a few moves.
   template <std::size_t N>
   JsonWriter & key(char const (&k)[N]) {
      char * p = separate(room(N + 3));
      *p++ = '"';
      std::memcpy(p, k, N - 1);
      p += N - 1;
      *p++ = '"';
      *p++ = ':';
      afterKey_ = true;
      return done(p);
   }
   JsonWriter & key(std::string_view k) {
      char * p = separate(room(k.size() + 4));
      *p++ = '"';
      p = copy(p, k);
      *p++ = '"';
      *p++ = ':';
      afterKey_ = true;
      return done(p);
   }

   JsonWriter & value(std::string_view s) {
      char * p = room(jsonStringRoom(s.size()) + 1);
      return done(writeJsonString(separate(p), s));
   }
   JsonWriter & value(char const * s) { return value(std::string_view(s)); }
   // A string that needs no escaping: a name of the library's or the
   // program's, an address, a time.
   JsonWriter & plainValue(std::string_view s) {
      char * p = room(s.size() + 3);
      p = separate(p);
      *p++ = '"';
      p = copy(p, s);
      *p++ = '"';
      return done(p);
   }
   // A string that needs no escaping, of at most maxBytes bytes, written in
   // place by fill(p), which returns the end of what it wrote.
   template <typename Fill>
   JsonWriter & plainValueWith(std::size_t maxBytes, Fill && fill) {
      char * p = separate(room(maxBytes + 3));
      *p++ = '"';
      p = fill(p);
      *p++ = '"';
      return done(p);
   }
   JsonWriter & value(bool b) { return literal(b ? std::string_view("true") : std::string_view("false")); }
   template <std::integral T>
      requires(!std::same_as<T, bool>)
   JsonWriter & value(T n) {
      char * p = separate(room(24));
      return done(std::to_chars(p, p + 23, n).ptr);
   }
   JsonWriter & null() { return literal("null"); }

   template <std::size_t N, typename T>
   JsonWriter & field(char const (&k)[N], T const & v) {
      key(k);
      return value(v);
   }
   template <typename T>
   JsonWriter & field(std::string_view k, T const & v) {
      key(k);
      return value(v);
   }
   template <std::size_t N>
   JsonWriter & plainField(char const (&k)[N], std::string_view v) {
      key(k);
      return plainValue(v);
   }
   template <std::size_t N>
   JsonWriter & object(char const (&k)[N]) {
      return key(k).beginObject();
   }
   template <std::size_t N>
   JsonWriter & array(char const (&k)[N]) {
      return key(k).beginArray();
   }

   // Nesting depth: 0 once every object and array is closed.
   unsigned depth() const noexcept { return depth_; }

 private:
   static constexpr unsigned maxDepth = 63;

   // Room for n more bytes and a separator; where they go.
   char * room(std::size_t n) { return out_.room(n + 1); }
   JsonWriter & done(char * end) noexcept {
      out_.commit(end);
      return *this;
   }
   static char * copy(char * p, std::string_view s) noexcept {
      std::memcpy(p, s.data(), s.size());
      return p + s.size();
   }
   // A comma before every member or element but the first.
   char * separate(char * p) noexcept {
      if (afterKey_) {
         afterKey_ = false;
         return p;
      }
      std::uint64_t const bit = std::uint64_t(1) << depth_;
      if (depth_ && !(empty_ & bit)) {
         *p++ = ',';
      }
      empty_ &= ~bit;
      return p;
   }
   JsonWriter & literal(std::string_view s) { return done(copy(separate(room(s.size() + 1)), s)); }
   JsonWriter & open(char c) {
      char * p = separate(room(2));
      *p++ = c;
      if (depth_ < maxDepth) {
         ++depth_;
      }
      empty_ |= std::uint64_t(1) << depth_;
      return done(p);
   }
   JsonWriter & close(char c) {
      char * p = room(1);
      *p++ = c;
      if (depth_) {
         --depth_;
      }
      return done(p);
   }

   Output & out_;
   std::uint64_t empty_ = 0;          // bit d: nothing written yet at depth d
   unsigned depth_ = 0;
   bool afterKey_ = false;
};

} // namespace LdpDecode
