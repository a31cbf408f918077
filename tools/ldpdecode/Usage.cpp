#include "Usage.h"

namespace LdpDecode {

namespace {

constexpr std::size_t optionColumn = 14; // where --help starts an option's text

// Each line of a '\n'-joined text, with f(line, first).
template <typename F>
void eachLine(std::string_view text, F && f) {
   bool first = true;
   for (;;) {
      std::size_t const end = text.find('\n');
      f(text.substr(0, end), first);
      first = false;
      if (end == std::string_view::npos) {
         return;
      }
      text.remove_prefix(end + 1);
   }
}

// roff: a leading '.' or '\'' would start a request, and '\' and '-' need escapes.
std::string roff(std::string_view text) {
   std::string out;
   for (char c : text) {
      if (c == '\\') {
         out += "\\e";
      } else if (c == '-') {
         out += "\\-";
      } else {
         out += c;
      }
   }
   if (!out.empty() && (out[0] == '.' || out[0] == '\'')) {
      out.insert(0, "\\&");
   }
   return out;
}

// A '\n'-joined text as one paragraph of the page.
std::string paragraph(std::string_view text) {
   std::string out;
   eachLine(text, [&](std::string_view line, bool first) {
      out += first ? "" : " ";
      out += line;
   });
   return roff(out);
}

} // namespace

std::string helpText() {
   std::string out;
   bool first = true;
   for (std::string_view s : usageSynopses) {
      out += first ? "usage: ldpdecode " : "       ldpdecode ";
      out += s;
      out += '\n';
      first = false;
   }
   out += usageDescription;
   out += "\n\n";
   for (OptionDoc const & o : usageOptions) {
      eachLine(o.text, [&](std::string_view line, bool firstLine) {
         std::string lead = firstLine ? "  " + std::string(o.names) : "";
         lead.resize(optionColumn, ' ');
         out += lead + std::string(line) + '\n';
      });
   }
   out += '\n';
   out += usageClosing;
   out += '\n';
   return out;
}

std::string manPage() {
   std::string out = ".TH LDPDECODE 1 \"\" \"libLdp\" \"User Commands\"\n"
                     ".SH NAME\nldpdecode \\- decode the LDP traffic of a capture as an LDP agent sees it\n"
                     ".SH SYNOPSIS\n";
   for (std::string_view s : usageSynopses) {
      out += ".B ldpdecode\n" + roff(s) + "\n.br\n";
   }
   out += ".SH DESCRIPTION\n" + paragraph(usageDescription) + "\n.SH OPTIONS\n";
   for (OptionDoc const & o : usageOptions) {
      out += ".TP\n.B " + roff(o.names) + "\n" + paragraph(o.text) + "\n";
   }
   out += ".SH EXIT STATUS\n" + paragraph(usageClosing) + "\n";
   out += ".SH SEE ALSO\n.BR tcpdump (1),\n.BR pcap-filter (7)\n";
   return out;
}

OptionDoc const * findOption(std::string_view arg) noexcept {
   if (arg.size() < 2 || arg[0] != '-') {
      return nullptr;
   }
   for (OptionDoc const & o : usageOptions) {
      // "-h, --help": names separated by ", "; "-c COUNT": the name, then its value.
      std::string_view names = o.names;
      while (!names.empty()) {
         std::size_t const comma = names.find(", ");
         std::string_view one = names.substr(0, comma);
         one = one.substr(0, one.find(' '));
         if (one == arg) {
            return &o;
         }
         names = comma == std::string_view::npos ? std::string_view() : names.substr(comma + 2);
      }
   }
   return nullptr;
}

} // namespace LdpDecode
