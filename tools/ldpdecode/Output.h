// Buffered output: text is gathered in a large block and written with one
// fwrite when the block fills, so that printing millions of lines costs a few
// hundred system calls.
#pragma once

#include <cerrno>
#include <cstdio>
#include <string>
#include <string_view>

namespace LdpDecode {

class Output {
 public:
   static constexpr std::size_t blockBytes = 1u << 20;

   explicit Output(std::FILE * file) : file_(file) { buf_.reserve(blockBytes + 4096); }
   Output(Output const &) = delete;
   Output & operator=(Output const &) = delete;
   ~Output() { flush(); }

   Output & operator<<(std::string_view s) {
      buf_.append(s);
      if (buf_.size() >= blockBytes) {
         flush();
      }
      return *this;
   }
   Output & operator<<(char c) {
      buf_.push_back(c);
      return *this;
   }
   // Writes what is gathered; false when the file refused this or any earlier
   // write, with the error number of the first refusal in error().
   bool flush() {
      if (!file_) {
         return true;
      }
      if (!buf_.empty() && std::fwrite(buf_.data(), 1, buf_.size(), file_) != buf_.size()) {
         failed(errno);
      }
      buf_.clear();
      if (std::fflush(file_) != 0) {
         failed(errno);
      }
      return error_ == 0;
   }
   int error() const noexcept { return error_; }
   // Text gathered but not yet written (for tests that write to no file).
   std::string const & pending() const noexcept { return buf_; }
   std::string take() {
      std::string s = std::move(buf_);
      buf_.clear();
      return s;
   }

 private:
   void failed(int err) noexcept {
      if (error_ == 0) {
         error_ = err ? err : EIO;
      }
   }

   std::FILE * file_;
   std::string buf_;
   int error_ = 0;
};

} // namespace LdpDecode
