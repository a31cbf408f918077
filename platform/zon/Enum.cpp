#include "zon/Enum.h"

#include <map>
#include <string>

namespace Zon {

EnumEntry const * EnumInfo::byValue(std::int64_t value) const noexcept {
   for (auto const & e : entries_) {
      if (e.value == value) {
         return &e;
      }
   }
   return nullptr;
}

EnumEntry const * EnumInfo::byName(std::string_view name) const noexcept {
   for (auto const & e : entries_) {
      if (e.name == name) {
         return &e;
      }
   }
   return nullptr;
}

String8 EnumInfo::strep(std::int64_t value) const {
   if (auto const * e = byValue(value)) {
      return String8(e->name);
   }
   return String8(std::to_string(value));
}

std::int64_t EnumInfo::strepValue(std::string_view name) const {
   if (auto const * e = byName(name)) {
      return e->value;
   }
   throw ParseException(std::string(typeName_) + ": no enumerator named '" + std::string(name) + "'");
}

std::int64_t EnumInfo::sequenceValue(std::size_t i) const {
   if (i >= entries_.size()) {
      throw RangeException(std::string(typeName_) + ": sequence " + std::to_string(i) + " out of range");
   }
   return entries_[i].value;
}

namespace {
std::map<std::string_view, EnumInfo const *, std::less<>> & registry() {
   static std::map<std::string_view, EnumInfo const *, std::less<>> r;
   return r;
}
} // namespace

void enumInfoRegister(EnumInfo const & info) { registry()[info.typeName()] = &info; }

EnumInfo const * enumInfo(std::string_view typeName) noexcept {
   auto const & r = registry();
   auto it = r.find(typeName);
   return it == r.end() ? nullptr : it->second;
}

} // namespace Zon
