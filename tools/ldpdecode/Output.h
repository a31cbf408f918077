// Buffered output: text is gathered in a large block and written with one
// fwrite when the block fills, so that printing millions of lines costs a few
// hundred system calls.
#pragma once

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

namespace LdpDecode {

class Output {
 public:
   static constexpr std::size_t blockBytes = 1u << 20;

   explicit Output(std::FILE * file) : file_(file) {}
   Output(Output const &) = delete;
   Output & operator=(Output const &) = delete;
   ~Output() { flush(); }

   Output & operator<<(std::string_view s) {
      std::memcpy(room(s.size()), s.data(), s.size());
      used_ += s.size();
      if (used_ >= blockBytes) {
         flush();
      }
      return *this;
   }
   Output & operator<<(char c) {
      *room(1) = c;
      ++used_;
      return *this;
   }
   // A large text: written straight to the file after what is gathered,
   // without a copy into the buffer.
   void writeThrough(std::string_view s) {
      if (!file_ || s.size() < blockBytes / 4) {
         *this << s;
         return;
      }
      flush();
      if (!s.empty() && std::fwrite(s.data(), 1, s.size(), file_) != s.size()) {
         failed(errno);
      }
   }
   // Room for n more bytes behind the gathered text, for a writer that fills
   // it in place and then says with commit() where its bytes end. Gathered
   // text may be written out first; the room is valid until the next call.
   char * room(std::size_t n) {
      if (buf_.size() - used_ < n) [[unlikely]] {
         grow(n);
      }
      return buf_.data() + used_;
   }
   void commit(char const * end) noexcept { used_ = static_cast<std::size_t>(end - buf_.data()); }

   // Writes what is gathered; false when the file refused this or any earlier
   // write, with the error number of the first refusal in error().
   bool flush() {
      if (!file_) {
         return true;
      }
      if (used_ && std::fwrite(buf_.data(), 1, used_, file_) != used_) {
         failed(errno);
      }
      used_ = 0;
      if (std::fflush(file_) != 0) {
         failed(errno);
      }
      return error_ == 0;
   }
   int error() const noexcept { return error_; }
   // Text gathered but not yet written (for tests that write to no file).
   std::string_view pending() const noexcept { return {buf_.data(), used_}; }
   // The gathered text, handed over with the buffer that holds it; `next`
   // (a buffer handed over before, given back) holds the text that follows,
   // so that a writer that takes text often does not grow a new buffer each
   // time.
   std::string take(std::string next = {}) {
      buf_.resize(used_);
      std::string s = std::move(buf_);
      buf_ = std::move(next);
      buf_.resize(buf_.capacity());
      used_ = 0;
      return s;
   }

 private:
   // Writes out the gathered text when a block is full, else makes the buffer
   // larger, so that n more bytes fit.
   [[gnu::noinline]] void grow(std::size_t n) {
      if (used_ >= blockBytes) {
         flush();
      }
      if (buf_.size() - used_ < n) {
         buf_.resize(std::max({buf_.size() * 2, used_ + n, std::size_t(64) << 10}));
      }
   }
   void failed(int err) noexcept {
      if (error_ == 0) {
         error_ = err ? err : EIO;
      }
   }

   std::FILE * file_;
   std::string buf_;     // used as raw storage: its first used_ bytes are the text
   std::size_t used_ = 0;
   int error_ = 0;
};

} // namespace LdpDecode
