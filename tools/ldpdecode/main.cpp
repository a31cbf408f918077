// ldpdecode: decodes the LDP traffic of a capture as the agent's receive path
// sees it. The work is done by ldpdecode_core; this file reads the options and
// the input.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <thread>

#include "Decoder.h"
#include "HexInput.h"
#include "Output.h"
#include "ParallelReporter.h"
#include "PcapInput.h"
#include "Reporter.h"
#include "Usage.h"

using namespace LdpDecode;

namespace {

constexpr int exitOk = 0;
constexpr int exitFaults = 1;
constexpr int exitUsage = 2;

struct Options {
   std::string input;         // file, "-", or empty
   std::string iface;
   std::optional<std::string> filter;
   std::uint64_t count = 0;   // 0: no limit
   int threads = -1;          // -1: chosen by the machine
   bool hex = false;
   bool summary = false;
   bool json = false;
   bool jsonTexts = false;
   bool check = false;
   bool help = false;
   bool man = false;
};

struct UsageError {
   std::string what;
};

Options parseOptions(int argc, char ** argv) {
   Options o;
   bool inputSeen = false;
   auto value = [&](int & i, std::string const & opt) -> std::string {
      if (i + 1 >= argc) {
         throw UsageError{"option " + opt + " needs a value"};
      }
      return argv[++i];
   };
   for (int i = 1; i < argc; ++i) {
      std::string const a = argv[i];
      OptionDoc const * opt = findOption(a);
      if (!opt && a.size() > 1 && a[0] == '-') {
         throw UsageError{"unknown option " + a};
      }
      OptionId const id = opt ? opt->id : OptionId::input;
      switch (id) {
       case OptionId::man:
         o.man = true;
         o.help = true;
         break;
       case OptionId::help:
         o.help = true;
         break;
       case OptionId::hex:
         o.hex = true;
         break;
       case OptionId::summary:
         o.summary = true;
         break;
       case OptionId::json:
         o.json = true;
         break;
       case OptionId::jsonText:
         o.json = true;
         o.jsonTexts = true;
         break;
       case OptionId::check:
         o.check = true;
         break;
       case OptionId::iface:
         o.iface = value(i, a);
         break;
       case OptionId::filter:
         o.filter = value(i, a);
         break;
       case OptionId::threads: {
         std::string const v = value(i, a);
         char * end = nullptr;
         unsigned long const n = std::strtoul(v.c_str(), &end, 10);
         if (v.empty() || *end || n > 64) {
            throw UsageError{"--threads needs a number from 0 to 64, not \"" + v + "\""};
         }
         o.threads = static_cast<int>(n);
         break;
       }
       case OptionId::count: {
         std::string const v = value(i, a);
         char * end = nullptr;
         unsigned long long const n = std::strtoull(v.c_str(), &end, 10);
         if (v.empty() || *end || n == 0) {
            throw UsageError{"-c needs a positive number of frames, not \"" + v + "\""};
         }
         o.count = n;
         break;
       }
       case OptionId::input:
         if (inputSeen) {
            throw UsageError{"more than one input: \"" + o.input + "\" and \"" + a + "\""};
         }
         o.input = a;
         inputSeen = true;
         break;
      }
   }
   if (o.help) {
      return o;
   }
   if (!o.iface.empty() && (inputSeen || o.hex)) {
      throw UsageError{"-i reads a live capture: give no FILE and no --hex with it"};
   }
   if (o.hex && (o.filter || o.count)) {
      throw UsageError{"-f and -c apply to captures, not to --hex input"};
   }
   if (o.hex && !inputSeen) {
      o.input = "-";
   }
   if (o.iface.empty() && o.input.empty()) {
      throw UsageError{"no input: give a capture FILE ('-' for standard input), -i IFACE, or --hex"};
   }
   return o;
}

PcapInput * liveInput = nullptr;

extern "C" void onSignal(int) {
   if (liveInput) {
      liveInput->breakLoop();
   }
}

std::string readAll(std::string const & path) {
   if (path == "-") {
      std::ostringstream s;
      s << std::cin.rdbuf();
      return s.str();
   }
   std::error_code ec;
   if (std::filesystem::is_directory(path, ec)) {
      throw InputError(path + ": is a directory, not a file of hex text");
   }
   std::ifstream f(path, std::ios::binary);
   if (!f) {
      throw InputError(path + ": cannot open: " + std::strerror(errno));
   }
   std::string text{std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>()};
   if (f.bad()) {
      throw InputError(path + ": cannot read: " + std::strerror(errno));
   }
   return text;
}

OutputMode modeOf(Options const & o) {
   if (o.summary) {
      return o.json ? OutputMode::jsonSummary : OutputMode::summary;
   }
   if (!o.json) {
      return OutputMode::text;
   }
   return o.jsonTexts ? OutputMode::jsonTexts : OutputMode::json;
}

} // namespace

int main(int argc, char ** argv) {
   Options opt;
   try {
      opt = parseOptions(argc, argv);
   } catch (UsageError const & e) {
      std::fprintf(stderr, "ldpdecode: %s\nTry 'ldpdecode --help'.\n", e.what.c_str());
      return exitUsage;
   }
   if (opt.help) {
      std::fputs((opt.man ? manPage() : helpText()).c_str(), stdout);
      return std::fflush(stdout) == 0 && !std::ferror(stdout) ? exitOk : exitUsage;
   }

   Output out(stdout);
   // Worker threads pay off on files; a live capture and hex input are printed
   // as they come.
   unsigned threads = 0;
   if (opt.iface.empty() && !opt.hex) {
      unsigned const cpus = std::thread::hardware_concurrency();
      threads = opt.threads >= 0 ? static_cast<unsigned>(opt.threads) : (cpus > 1 ? std::min(cpus - 1, 4u) : 0);
   }
   std::unique_ptr<ReportSink> sink;
   if (threads) {
      sink = std::make_unique<ParallelReporter>(modeOf(opt), out, threads);
   } else {
      sink = std::make_unique<Reporter>(modeOf(opt), out);
   }
   ReportSink & reporter = *sink;
   Decoder decoder(reporter);
   std::string inputName;
   bool started = false;
   try {
      if (opt.hex) {
         inputName = opt.input == "-" ? "standard input" : opt.input;
         std::vector<std::uint8_t> const bytes = parseHexText(readAll(opt.input));
         if (bytes.empty()) {
            throw InputError(inputName + ": no hex bytes in the input");
         }
         started = true;
         decoder.rawStream(bytes);
      } else {
         PcapInput input = opt.iface.empty() ? PcapInput::openFile(opt.input) : PcapInput::openLive(opt.iface);
         inputName = input.name();
         if (opt.filter) {
            input.filterIs(*opt.filter);
         } else if (input.live()) {
            input.filterIs(PcapInput::defaultLiveFilter);
         }
         auto const link = linkTypeOfDlt(input.linkType());
         if (!link) {
            throw InputError(input.name() + ": unsupported link type " + std::to_string(input.linkType()) + " (" +
                             input.linkTypeName() + "); supported: " + supportedLinkTypesText());
         }
         decoder.linkTypeIs(*link);
         if (input.live()) {
            liveInput = &input;
            std::signal(SIGINT, onSignal);
            std::signal(SIGTERM, onSignal);
         }
         started = true;
         FrameMeta meta;
         std::span<std::uint8_t const> bytes;
         std::uint64_t frames = 0;
         while (input.next(meta, bytes)) {
            decoder.frame(meta, bytes);
            if (input.live() && !out.flush()) {
               break;  // reported below, like any other refused write
            }
            if (opt.count && ++frames == opt.count) {
               break;
            }
         }
         liveInput = nullptr;
      }
   } catch (InputError const & e) {
      liveInput = nullptr;
      if (started) {
         decoder.finish();
      }
      out.flush();
      std::fprintf(stderr, "ldpdecode: %s\n", e.what());
      return exitUsage;
   } catch (std::exception const & e) {
      // Anything else the input or the system refused (memory, a stream error):
      // one line and the input-error status, never an abort.
      liveInput = nullptr;
      if (started) {
         try {
            decoder.finish();
         } catch (std::exception const &) {
         }
      }
      out.flush();
      std::fprintf(stderr, "ldpdecode: %s: %s\n", inputName.empty() ? opt.input.c_str() : inputName.c_str(),
                   e.what());
      return exitUsage;
   }
   decoder.finish();
   if (!out.flush()) {
      std::fprintf(stderr, "ldpdecode: cannot write the output: %s\n", std::strerror(out.error()));
      return exitUsage;
   }
   Totals const & t = reporter.totals();
   if (t.pdus == 0 && !opt.hex) {
      std::fprintf(stderr, "ldpdecode: %s: no LDP PDUs in %llu frames (UDP or TCP port 646)\n", inputName.c_str(),
                   static_cast<unsigned long long>(t.frames));
   }
   return opt.check && reporter.faultFound() ? exitFaults : exitOk;
}
