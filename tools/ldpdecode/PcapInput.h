// Captures read through libpcap: pcap and pcapng files, standard input, or a
// live interface. Every failure becomes an InputError with a one-line message
// that names the input.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>

#include "CaptureTypes.h"

struct pcap;
struct bpf_program;

namespace LdpDecode {

class InputError : public std::runtime_error {
 public:
   using std::runtime_error::runtime_error;
};

class PcapInput {
 public:
   // The filter of a live capture unless another is given.
   static constexpr char const * defaultLiveFilter = "tcp port 646 or udp port 646";

   // A capture file; "-" reads one from standard input.
   static PcapInput openFile(std::string const & path);
   // A live capture (needs the privilege to capture on the interface).
   static PcapInput openLive(std::string const & iface);

   PcapInput(PcapInput && o) noexcept;
   PcapInput & operator=(PcapInput &&) = delete;
   ~PcapInput();

   // Applies a BPF filter expression. A live capture filters in the kernel; a
   // file is filtered record by record here, so that frame numbers stay those
   // of the file.
   void filterIs(std::string const & expression);
   // The link-layer header type (DLT value) and its name.
   int linkType() const noexcept;
   std::string linkTypeName() const;
   bool live() const noexcept { return live_; }
   std::string const & name() const noexcept { return name_; }

   // The next frame: false at the end of the input. The bytes stay valid until
   // the next call. A read error (a truncated file) throws InputError.
   bool next(FrameMeta & meta, std::span<std::uint8_t const> & bytes);
   // Ends next() from a signal handler.
   void breakLoop() noexcept;

 private:
   PcapInput(pcap * p, std::string name, bool live) : p_(p), name_(std::move(name)), live_(live) {}

   // The stdio buffer of a capture file; released after the file is closed.
   std::unique_ptr<char[]> buffer_;
   pcap * p_;
   std::string name_;
   bool live_;
   std::uint64_t frames_ = 0;
   // A capture file's filter, when one is given.
   std::unique_ptr<bpf_program, void (*)(bpf_program *)> fileFilter_{nullptr, freeFilter};

   static void freeFilter(bpf_program * prog) noexcept;
};

} // namespace LdpDecode
