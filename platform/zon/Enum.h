// The enumeration registry. An enumeration is declared once as an X-macro list of
// (name, value) pairs; the registry then supplies its text form (the enumerator's
// name), construction from a number or a name, stream output, and the mapping
// between declaration order and value. Every registered enumeration can also be
// looked up by its qualified type name ("Ldp::LdpMsgType").
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <span>
#include <string_view>
#include <type_traits>

#include "zon/Exception.h"
#include "zon/String.h"

namespace Zon {

struct EnumEntry {
   std::int64_t value;
   std::string_view name;
};

class EnumInfo {
 public:
   constexpr EnumInfo(std::string_view typeName, std::span<EnumEntry const> entries) noexcept
       : typeName_(typeName), entries_(entries) {}

   std::string_view typeName() const noexcept { return typeName_; }
   std::span<EnumEntry const> entries() const noexcept { return entries_; }
   std::size_t size() const noexcept { return entries_.size(); }

   // The entry of a value or a name; null when there is none.
   EnumEntry const * byValue(std::int64_t value) const noexcept;
   EnumEntry const * byName(std::string_view name) const noexcept;

   // Text of a value: its enumerator name, or the number in decimal for a value
   // that has no enumerator (a received byte can hold anything).
   String8 strep(std::int64_t value) const;
   // Value of an enumerator name; ParseException when there is none.
   std::int64_t strepValue(std::string_view name) const;
   // Value of the i-th enumerator in declaration order; RangeException past the end.
   std::int64_t sequenceValue(std::size_t i) const;

 private:
   std::string_view typeName_;
   std::span<EnumEntry const> entries_;
};

// The registry of enumerations by qualified type name.
void enumInfoRegister(EnumInfo const & info);
EnumInfo const * enumInfo(std::string_view typeName) noexcept;

struct EnumRegistration {
   explicit EnumRegistration(EnumInfo const & info) { enumInfoRegister(info); }
};

// Specialised for every registered enumeration (ZON_ENUM_TRAITS).
template <typename E>
struct EnumTraits;

template <typename E>
concept RegisteredEnum = std::is_enum_v<E> && requires { EnumTraits<E>::info(); };

template <RegisteredEnum E>
String8 valueToStrep(E v) {
   return EnumTraits<E>::info().strep(static_cast<std::int64_t>(v));
}

template <RegisteredEnum E>
E strepToValue(std::string_view name) {
   return static_cast<E>(EnumTraits<E>::info().strepValue(name));
}

template <RegisteredEnum E>
E sequenceToValue(std::size_t i) {
   return static_cast<E>(EnumTraits<E>::info().sequenceValue(i));
}

} // namespace Zon

// One enumerator of an X-macro list, as enumerator and as registry entry.
#define ZON_ENUMERATOR(name, value) name = value,
#define ZON_ENUM_ENTRY(name, value) ::Zon::EnumEntry{static_cast<std::int64_t>(value), #name},

// Declares, inside the enumeration's namespace, its text form, stream output and
// the two constructions E##Instance(number) and E##Instance(name).
#define ZON_ENUM_DECLARE(E)                                                             \
   ::Zon::String8 stringValue(E v);                                                     \
   std::ostream & operator<<(std::ostream & os, E v);                                   \
   constexpr E E##Instance(std::underlying_type_t<E> v) noexcept { return static_cast<E>(v); } \
   E E##Instance(std::string_view name)

// Specialises the registry traits; at global scope after the namespace is closed.
#define ZON_ENUM_TRAITS(QE)                                                             \
   template <>                                                                          \
   struct Zon::EnumTraits<QE> {                                                         \
      static ::Zon::EnumInfo const & info() noexcept;                                   \
   }

// Defines what ZON_ENUM_DECLARE and ZON_ENUM_TRAITS declared, from the X-macro
// list LIST; at global scope in one source file.
#define ZON_ENUM_DEFINE(NS, E, LIST)                                                    \
   namespace {                                                                          \
   constexpr ::Zon::EnumEntry NS##_##E##_entries[] = {LIST(ZON_ENUM_ENTRY)};            \
   constexpr ::Zon::EnumInfo NS##_##E##_info(#NS "::" #E, NS##_##E##_entries);          \
   ::Zon::EnumRegistration const NS##_##E##_registration(NS##_##E##_info);              \
   }                                                                                    \
   ::Zon::EnumInfo const & Zon::EnumTraits<NS::E>::info() noexcept { return NS##_##E##_info; } \
   ::Zon::String8 NS::stringValue(E v) { return ::Zon::valueToStrep(v); }               \
   std::ostream & NS::operator<<(std::ostream & os, E v) { return os << ::Zon::valueToStrep(v); } \
   NS::E NS::E##Instance(std::string_view name) { return ::Zon::strepToValue<E>(name); }

// An enumeration declared inside a class C (C::E): ZON_ENUM_DECLARE_NESTED at
// namespace scope after the class declares its text form and stream output;
// ZON_ENUM_TRAITS(NS::C::E) as for the others; ZON_ENUM_DEFINE_NESTED at global
// scope in one source file defines them and registers "NS::C::E".
#define ZON_ENUM_DECLARE_NESTED(C, E)                                                   \
   ::Zon::String8 stringValue(C::E v);                                                  \
   std::ostream & operator<<(std::ostream & os, C::E v)

#define ZON_ENUM_DEFINE_NESTED(NS, C, E, LIST)                                          \
   namespace {                                                                          \
   constexpr ::Zon::EnumEntry NS##_##C##_##E##_entries[] = {LIST(ZON_ENUM_ENTRY)};      \
   constexpr ::Zon::EnumInfo NS##_##C##_##E##_info(#NS "::" #C "::" #E,                 \
                                                   NS##_##C##_##E##_entries);           \
   ::Zon::EnumRegistration const NS##_##C##_##E##_registration(NS##_##C##_##E##_info);  \
   }                                                                                    \
   ::Zon::EnumInfo const & Zon::EnumTraits<NS::C::E>::info() noexcept {                 \
      return NS##_##C##_##E##_info;                                                     \
   }                                                                                    \
   ::Zon::String8 NS::stringValue(C::E v) { return ::Zon::valueToStrep(v); }            \
   std::ostream & NS::operator<<(std::ostream & os, C::E v) { return os << ::Zon::valueToStrep(v); }
