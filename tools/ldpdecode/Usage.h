// The one description of ldpdecode's command line: the --help text and the
// manual page are both made from it, so they cannot say different things.
#pragma once

#include <string>
#include <string_view>

namespace LdpDecode {

struct OptionDoc {
   std::string_view names; // "-i IFACE"
   std::string_view text;  // lines joined by '\n', as --help shows them
};

inline constexpr std::string_view usageSynopses[] = {"[options] FILE|-", "[options] -i IFACE",
                                                     "[options] --hex [FILE|-]"};

inline constexpr std::string_view usageDescription =
    "Decodes the LDP PDUs of a capture as an LDP agent's receive path sees them:\n"
    "every PDU and message with the library's text form, every fault with its\n"
    "status code and what the agent does with it.";

inline constexpr OptionDoc usageOptions[] = {
    {"FILE", "pcap or pcapng capture; '-' reads it from standard input"},
    {"-i IFACE", "capture live on IFACE until interrupted"},
    {"-f FILTER", "BPF filter (live default: \"tcp port 646 or udp port 646\")"},
    {"-c COUNT", "stop after COUNT frames"},
    {"--hex", "the input is hex text of LDP PDUs (FILE, or standard input),\n"
              "e.g. \"0001 001e 0a00 0001 0000 ...\"; blanks and : , - | are ignored"},
    {"--summary", "print totals only: frames, PDUs, messages per type, faults per\n"
                  "status code, LDP identifiers and sessions"},
    {"--json", "JSON Lines: one object per PDU and per note; with --summary one\n"
               "object of totals"},
    {"--check", "exit status 1 when the agent would refuse any PDU or message"},
    {"--threads N", "parse on N worker threads besides the reading thread, which\n"
                    "parses too (default: one per further processor, at most 4; 0\n"
                    "parses on the reading thread alone, as live capture does)"},
    {"--man", "print this text as a manual page (roff)"},
    {"-h, --help", "print this help"},
};

inline constexpr std::string_view usageClosing =
    "Times are UTC. Exit status: 0 decoded; 1 faults found (with --check); 2 usage\n"
    "or input error.";

// The text of --help.
std::string helpText();
// The manual page ldpdecode.1, in roff.
std::string manPage();

} // namespace LdpDecode
