// The runtime's string types. String holds any bytes, String8 holds UTF-8 text
// (reasons, descriptions), Name names an entity. They are distinct types with the
// interface of std::string, so that an attribute's declared type says what it holds.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <string_view>

namespace Zon {

template <typename Tag>
class BasicString : public std::string {
 public:
   using std::string::string;
   BasicString() = default;
   BasicString(std::string s) : std::string(std::move(s)) {}
   BasicString(std::string_view s) : std::string(s) {}

   std::string const & stdString() const noexcept { return *this; }
   char const * charPtr() const noexcept { return c_str(); }
   std::size_t bytes() const noexcept { return size(); }
   // The text form of a string is the string itself.
   std::string const & stringValue() const noexcept { return *this; }
};

struct StringTag {};
struct String8Tag {};
struct NameTag {};

using String = BasicString<StringTag>;
using String8 = BasicString<String8Tag>;
using Name = BasicString<NameTag>;

// printf-style formatting into a String8; used for reason texts whose formats
// are fixed ("PDU too small, size = %d").
#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
String8 format(char const * fmt, ...);

} // namespace Zon

template <typename Tag>
struct std::hash<Zon::BasicString<Tag>> {
   std::size_t operator()(Zon::BasicString<Tag> const & s) const noexcept {
      return std::hash<std::string_view>()(s);
   }
};
