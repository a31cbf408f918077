// Leveled trace by source name. Each source has a level (0: off); a record of level
// L is written when L is at most the source's level. Levels are set at run time,
// by levelIs() or from the environment variable ZON_TRACE
// ("LdpHdr=9,LdpGenMsgParser=5", or "*=6" for every source). A disabled record
// costs one load and one compare: the text is not built.
#pragma once

#include <functional>
#include <sstream>
#include <string>
#include <string_view>

namespace Trace {

class Source {
 public:
   // Sources live for the whole process; get them with source().
   Source(Source const &) = delete;
   Source & operator=(Source const &) = delete;

   std::string const & name() const noexcept { return name_; }
   int level() const noexcept { return level_; }
   void levelIs(int level) noexcept { level_ = level; }
   bool enabled(int level) const noexcept { return level <= level_; }

   void write(int level, std::string_view text) const;

 private:
   friend Source & source(std::string_view name);
   explicit Source(std::string name, int level) : name_(std::move(name)), level_(level) {}
   std::string name_;
   int level_;
};

// The source of that name, created (at the level ZON_TRACE gives it) on first use.
Source & source(std::string_view name);

// Applies a level setting such as "LdpHdr=9,*=5" to every source, present and future.
void configure(std::string_view setting);

// Where records go: standard error unless a sink is set (tests capture records
// this way). An empty function restores standard error.
using Sink = std::function<void(Source const & source, int level, std::string_view text)>;
void sinkIs(Sink sink);

} // namespace Trace

// TRACE(source, level, a << b << c): builds and writes the record only when enabled.
#define TRACE(src, lvl, expr)                                                           \
   do {                                                                                 \
      ::Trace::Source const & trace_src_ = (src);                                       \
      if (trace_src_.enabled(lvl)) [[unlikely]] {                                       \
         std::ostringstream trace_os_;                                                  \
         trace_os_ << expr;                                                             \
         trace_src_.write(lvl, trace_os_.str());                                        \
      }                                                                                 \
   } while (0)
