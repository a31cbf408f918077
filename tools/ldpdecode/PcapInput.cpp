#include "PcapInput.h"

#include <pcap/pcap.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>

namespace LdpDecode {

namespace {

std::string inputName(std::string const & path) {
   return path == "-" ? std::string("standard input") : path;
}

bool startsWith(char const * s, char const * prefix) {
   return std::strncmp(s, prefix, std::strlen(prefix)) == 0;
}

constexpr std::size_t fileBufferBytes = std::size_t(256) << 10;

} // namespace

PcapInput PcapInput::openFile(std::string const & path) {
   std::string const name = inputName(path);
   std::FILE * f = path == "-" ? stdin : std::fopen(path.c_str(), "rb");
   if (!f) {
      throw InputError(name + ": cannot open: " + std::strerror(errno));
   }
   struct stat st {};
   if (::fstat(fileno(f), &st) == 0) {
      if (S_ISDIR(st.st_mode)) {
         std::fclose(f);
         throw InputError(name + ": is a directory, not a capture file");
      }
      if (S_ISREG(st.st_mode) && st.st_size == 0) {
         if (f != stdin) {
            std::fclose(f);
         }
         throw InputError(name + ": empty file, not a capture");
      }
   }
   // libpcap reads a file record by record through stdio: a large buffer turns
   // thousands of small reads into a few big ones (a larger buffer costs more
   // in page faults than it saves in reads). Standard input keeps its
   // own, since it outlives the capture.
   std::unique_ptr<char[]> buffer;
   if (f != stdin) {
      buffer.reset(new char[fileBufferBytes]);  // not zeroed: stdio fills it
      std::setvbuf(f, buffer.get(), _IOFBF, fileBufferBytes);
   }
   char err[PCAP_ERRBUF_SIZE] = "";
   pcap_t * p = pcap_fopen_offline_with_tstamp_precision(f, PCAP_TSTAMP_PRECISION_MICRO, err);
   if (!p) {
      if (f != stdin) {
         std::fclose(f);
      }
      if (startsWith(err, "unknown file format")) {
         throw InputError(name + ": not a pcap or pcapng capture (" + err + ")");
      }
      if (std::strstr(err, "truncated") || std::strstr(err, "only got 0")) {
         throw InputError(name + ": not a complete capture file (" + err + ")");
      }
      throw InputError(name + ": cannot read capture: " + err);
   }
   PcapInput in(p, name, false);
   in.buffer_ = std::move(buffer);
   return in;
}

PcapInput PcapInput::openLive(std::string const & iface) {
   char err[PCAP_ERRBUF_SIZE] = "";
   pcap_t * p = pcap_create(iface.c_str(), err);
   if (!p) {
      throw InputError("interface " + iface + ": " + err);
   }
   pcap_set_snaplen(p, 262144);
   pcap_set_promisc(p, 1);
   pcap_set_immediate_mode(p, 1);
   pcap_set_timeout(p, 100);
   int const rc = pcap_activate(p);
   if (rc < 0) {
      std::string const why = rc == PCAP_ERROR ? std::string(pcap_geterr(p)) : std::string(pcap_statustostr(rc));
      std::string detail = pcap_geterr(p);
      pcap_close(p);
      throw InputError("interface " + iface + ": cannot capture: " + (why.empty() ? detail : why));
   }
   return PcapInput(p, "interface " + iface, true);
}

PcapInput::PcapInput(PcapInput && o) noexcept
    : buffer_(std::move(o.buffer_)), p_(std::exchange(o.p_, nullptr)), name_(std::move(o.name_)), live_(o.live_), frames_(o.frames_),
      fileFilter_(std::move(o.fileFilter_)) {}

PcapInput::~PcapInput() {
   if (p_) {
      pcap_close(p_);
   }
}

void PcapInput::filterIs(std::string const & expression) {
   auto prog = std::make_unique<bpf_program>();
   if (pcap_compile(p_, prog.get(), expression.c_str(), 1, PCAP_NETMASK_UNKNOWN) != 0) {
      throw InputError("filter \"" + expression + "\": " + pcap_geterr(p_));
   }
   decltype(fileFilter_) compiled(prog.release(), freeFilter);
   if (!live_) {
      fileFilter_ = std::move(compiled);
      return;
   }
   if (pcap_setfilter(p_, compiled.get()) != 0) {
      throw InputError("filter \"" + expression + "\": " + pcap_geterr(p_));
   }
}

void PcapInput::freeFilter(bpf_program * prog) noexcept {
   pcap_freecode(prog);
   delete prog;
}

int PcapInput::linkType() const noexcept {
   return pcap_datalink(p_);
}

std::string PcapInput::linkTypeName() const {
   char const * n = pcap_datalink_val_to_name(linkType());
   return n ? n : "unknown";
}

bool PcapInput::next(FrameMeta & meta, std::span<std::uint8_t const> & bytes) {
   while (true) {
      pcap_pkthdr * hdr = nullptr;
      u_char const * data = nullptr;
      int const rc = pcap_next_ex(p_, &hdr, &data);
      if (rc == 1) {
         ++frames_;
         if (fileFilter_ && pcap_offline_filter(fileFilter_.get(), hdr, data) == 0) {
            continue;
         }
         meta.number = frames_;
         meta.seconds = hdr->ts.tv_sec;
         meta.micros = static_cast<std::uint32_t>(hdr->ts.tv_usec);
         bytes = std::span<std::uint8_t const>(data, hdr->caplen);
         return true;
      }
      if (rc == 0) { // a live capture's read timeout
         continue;
      }
      if (rc == PCAP_ERROR_BREAK) {
         return false;
      }
      std::string const why = pcap_geterr(p_);
      if (std::strstr(why.c_str(), "truncated")) {
         throw InputError(name_ + ": the capture is cut short after frame " + std::to_string(frames_) + " (" +
                          why + ")");
      }
      throw InputError(name_ + ": read error after frame " + std::to_string(frames_) + ": " + why);
   }
}

void PcapInput::breakLoop() noexcept {
   pcap_breakloop(p_);
}

} // namespace LdpDecode
