// Errors that the runtime raises when a caller asks for something it must refuse.
// `what()` is exactly the text the exception was raised with, nothing added: the
// text users see.
#pragma once

#include <exception>
#include <string>

namespace Zon {

class Exception : public std::exception {
 public:
   explicit Exception(std::string text) : text_(std::move(text)) {}
   char const * what() const noexcept override { return text_.c_str(); }

 private:
   std::string text_;
};

// A value outside the range its type allows ("VrfName::bytes > 100 not allowed",
// "null ValidPtr", ...).
class RangeException : public Exception {
 public:
   using Exception::Exception;
};

// An entity re-created under an existing name with different constructor parameters.
class NameInUseException : public Exception {
 public:
   using Exception::Exception;
};

// A text form that does not parse back into its value.
class ParseException : public Exception {
 public:
   using Exception::Exception;
};

} // namespace Zon
