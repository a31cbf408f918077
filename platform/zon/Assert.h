// Assertions of the runtime: a broken invariant or precondition prints the
// failed condition's text and ends the process.
#pragma once

namespace Zon {

// Prints `text` (the condition as written) to standard error and aborts.
[[noreturn]] void assertionFailed(char const * text, char const * file, int line) noexcept;

} // namespace Zon

// ZON_ASSERT(cond): the printed text is the condition exactly as written.
#define ZON_ASSERT(cond)                                                                \
   do {                                                                                 \
      if (!(cond)) [[unlikely]] {                                                       \
         ::Zon::assertionFailed(#cond, __FILE__, __LINE__);                             \
      }                                                                                 \
   } while (0)

// ZON_ASSERT_TEXT(cond, text): prints `text` instead of the condition, for
// conditions whose printed form differs from the C++ spelling (for example a
// qualified enumerator).
#define ZON_ASSERT_TEXT(cond, text)                                                     \
   do {                                                                                 \
      if (!(cond)) [[unlikely]] {                                                       \
         ::Zon::assertionFailed(text, __FILE__, __LINE__);                              \
      }                                                                                 \
   } while (0)
