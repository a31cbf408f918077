// The one description of ldpdecode's command line: the --help text, the
// manual page and the option parser are all made from it, so they cannot say
// different things.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace LdpDecode {

// What an option does; the parser of main.cpp switches over it, so an entry
// of the table that the parser does not handle fails to compile.
enum class OptionId : std::uint8_t { input, iface, filter, count, hex, summary, json, jsonText, check, threads, man, help };

struct OptionDoc {
   OptionId id;
   std::string_view names; // "-i IFACE", "-h, --help": each name, and its value's name if it takes one
   std::string_view text;  // lines joined by '\n', as --help shows them
};

inline constexpr std::string_view usageSynopses[] = {"[options] FILE|-", "[options] -i IFACE",
                                                     "[options] --hex [FILE|-]"};

inline constexpr std::string_view usageDescription =
    "Decodes the LDP PDUs of a capture as an LDP agent's receive path sees them:\n"
    "every PDU and message with the library's text form, every fault with its\n"
    "status code and what the agent does with it.";

inline constexpr OptionDoc usageOptions[] = {
    {OptionId::input, "FILE", "pcap or pcapng capture; '-' reads it from standard input"},
    {OptionId::iface, "-i IFACE", "capture live on IFACE until interrupted"},
    {OptionId::filter, "-f FILTER", "BPF filter (live default: \"tcp port 646 or udp port 646\")"},
    {OptionId::count, "-c COUNT", "stop after COUNT frames"},
    {OptionId::hex, "--hex", "the input is hex text of LDP PDUs (FILE, or standard input),\n"
              "e.g. \"0001 001e 0a00 0001 0000 ...\"; blanks and : , - | are ignored"},
    {OptionId::summary, "--summary", "print totals only: frames, PDUs, messages per type, faults per\n"
                  "status code, LDP identifiers and sessions"},
    {OptionId::json, "--json", "JSON Lines: one object per PDU and per note, each message with\n"
               "its fields and TLVs, and its text form when it has a fault;\n"
               "with --summary one object of totals"},
    {OptionId::jsonText, "--json-text", "as --json, and every message carries its text form"},
    {OptionId::check, "--check", "exit status 1 when the agent would refuse any PDU or message"},
    {OptionId::threads, "--threads N", "parse on N worker threads besides the reading thread, which\n"
                    "parses too (default: one per further processor, at most 4; 0\n"
                    "parses on the reading thread alone, as live capture does)"},
    {OptionId::man, "--man", "print this text as a manual page (roff)"},
    {OptionId::help, "-h, --help", "print this help"},
};

inline constexpr std::string_view usageClosing =
    "Times are UTC. Exit status: 0 decoded; 1 faults found (with --check); 2 usage\n"
    "or input error.";

// The entry of the option named arg ("--json", "-i"); null for an argument
// that names none (the FILE entry is named by no argument).
OptionDoc const * findOption(std::string_view arg) noexcept;

// The text of --help.
std::string helpText();
// The manual page ldpdecode.1, in roff.
std::string manPage();

} // namespace LdpDecode
