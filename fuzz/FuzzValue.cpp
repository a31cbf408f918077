// Fuzz harness of the text parser of values: every literal parser and the
// reader of the generic value text form, on any text. A refusal is a
// ParseException (or the value type's own error); a literal that is accepted
// reads back the same after it is printed again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "vorin/IpAddr.h"
#include "vorin/MplsLabel.h"
#include "zon/Exception.h"
#include "zon/ValueParse.h"

namespace {

template <typename F>
void guarded(F && f) {
   try {
      f();
   } catch (Zon::Exception const &) {
   }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
   std::string_view const text(reinterpret_cast<char const *>(data), size);
   guarded([&] { (void)Zon::boolFromText(text); });
   guarded([&] {
      std::uint64_t const v = Zon::unsignedFromText(text);
      if (Zon::unsignedFromText(std::to_string(v)) != v) {
         std::abort();
      }
   });
   guarded([&] {
      std::int64_t const v = Zon::signedFromText(text);
      if (Zon::signedFromText(std::to_string(v)) != v) {
         std::abort();
      }
   });
   guarded([&] { (void)Zon::doubleFromText(text); });
   guarded([&] { (void)Zon::stringFromText(text); });
   guarded([&] {
      bool outOfRange = false;
      std::uint64_t const v = Zon::unsignedFromTextSaturated(text, 4094, outOfRange);
      if (v > 4094 || (outOfRange && v != 4094)) {
         std::abort();
      }
   });
   guarded([&] { (void)Zon::valueFromText<std::uint8_t>(text); });
   guarded([&] { (void)Zon::valueFromText<std::int16_t>(text); });
   guarded([&] { (void)Zon::valueFromText<Vorin::MplsLabel>(text); });
   guarded([&] { (void)Zon::valueFromText<Vorin::IpGenAddr>(text); });
   guarded([&] { (void)Zon::valueFromText<Vorin::IpGenPrefix>(text); });
   guarded([&] {
      Zon::ValueTextReader r(text, "Ns::T");
      (void)Zon::unsignedFromText(r.field("a"));
      (void)Zon::stringFromText(r.field("b"));
      r.end();
   });
   return 0;
}
