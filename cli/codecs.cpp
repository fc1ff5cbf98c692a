// Checksums and codecs: crc32, crc16, sha1, a85, rle.

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "cli/common.h"
#include "zyn/dstruct/checksums.h"
#include "zyn/dstruct/rlencoder.h"
#include "zyn/platform/stream.h"

namespace zyn_cli {

namespace {

using zyn::platform::TMemoryStream;

std::string Hex(std::uint64_t value, int digits) {
  char text[24];
  std::snprintf(text, sizeof text, "%0*llx", digits, static_cast<unsigned long long>(value));
  return text;
}

std::string LowerHex(std::u16string_view upper) {
  std::string s = Utf8(upper);
  for (char& c : s)
    if (c >= 'A' && c <= 'F') c = static_cast<char>(c + 32);
  return s;
}

void Fill(TMemoryStream& m, const std::vector<std::uint8_t>& bytes) {
  m.WriteBuffer(bytes.data(), static_cast<std::int64_t>(bytes.size()));
  m.SetPosition(0);
}

void WriteStream(TMemoryStream& m) {
  std::vector<std::uint8_t> out(static_cast<std::size_t>(m.Size()));
  m.SetPosition(0);
  m.ReadBuffer(out.data(), static_cast<std::int64_t>(out.size()));
  WriteOut(out);
}

// One line per file, "<digest>  <name>", as sha1sum prints it.
void AddSumCommand(CLI::App& app, const std::string& name, const std::string& what,
                   std::string (*digest)(const std::vector<std::uint8_t>&)) {
  auto files = std::make_shared<std::vector<std::string>>();
  CLI::App* sub = app.add_subcommand(name, what + " of each FILE (\"-\" for standard input)");
  sub->add_option("FILE", *files, "Files to read")->default_val(std::vector<std::string>{"-"});
  sub->callback([files, digest] {
    for (const std::string& f : *files) WriteOut(digest(ReadAll(f)) + "  " + f + "\n");
  });
}

void AddRleCommand(CLI::App& app) {
  CLI::App* rle = app.add_subcommand("rle", "Run-length code standard input to standard output");
  rle->require_subcommand(1);
  rle->add_subcommand("encode", "Code: literal bytes, and 0xA5 count value for runs")->callback([] {
    const std::vector<std::uint8_t> in = ReadAll("-");
    Zyn_dstruct::TRLEncoder coder;
    const auto block = static_cast<std::size_t>(coder.BufLeng());
    std::vector<std::uint8_t> out(block);
    // A third of a block in: even all-0xA5 input completes one block at most.
    const std::size_t step = block / 3;
    for (std::size_t at = 0; at < in.size(); at += step) {
      const std::size_t n = std::min(step, in.size() - at);
      if (coder.Encode(std::span(in).subspan(at, n), static_cast<int>(n))) {
        coder.GetResult(out);
        WriteOut(out);
      }
    }
    int n;
    do {
      n = coder.Finish(out);
      WriteOut(
          std::string_view(reinterpret_cast<const char*>(out.data()), static_cast<std::size_t>(n)));
    } while (n == coder.BufLeng());
  });
  rle->add_subcommand("decode", "Decode what rle encode wrote")->callback([] {
    const std::vector<std::uint8_t> in = ReadAll("-");
    Zyn_dstruct::TRLEncoder coder;
    std::vector<std::uint8_t> out(static_cast<std::size_t>(coder.BufLeng()));
    for (std::uint8_t b : in) {
      if (coder.Decode(b)) {
        coder.GetResult(out);
        WriteOut(out);
      }
    }
    // Finish adds its own closing triple behind the last short block.
    std::string tail;
    int n;
    do {
      n = coder.Finish(out);
      tail.append(reinterpret_cast<const char*>(out.data()), static_cast<std::size_t>(n));
    } while (n == coder.BufLeng());
    tail.resize(tail.size() >= 3 ? tail.size() - 3 : 0);
    WriteOut(tail);
  });
}

}  // namespace

void AddCodecCommands(CLI::App& app) {
  AddSumCommand(app, "crc32", "CRC-32 (as zlib and cksum -a crc32b give it)",
                [](const std::vector<std::uint8_t>& b) {
                  return Hex(Zyn_dstruct::CRC32ofBuffer(b, static_cast<int>(b.size())), 8);
                });
  AddSumCommand(
      app, "crc16", "CRC-16/CCITT-FALSE (poly 0x1021, init 0xFFFF)",
      [](const std::vector<std::uint8_t>& b) {
        return Hex(Zyn_dstruct::CRC16ofBuffer(b, static_cast<int>(b.size()), Zyn_dstruct::crcCCITT),
                   4);
      });
  AddSumCommand(app, "sha1", "SHA-1", [](const std::vector<std::uint8_t>& b) {
    return LowerHex(Zyn_dstruct::SHA1DigestToHex(Zyn_dstruct::SHA1FromBytes(b)));
  });

  CLI::App* a85 = app.add_subcommand("a85", "ASCII85 code standard input to standard output");
  a85->require_subcommand(1);
  a85->add_subcommand("encode", "Encode bytes as ASCII85 text")->callback([] {
    TMemoryStream in, out;
    Fill(in, ReadAll("-"));
    Zyn_dstruct::EncodeASCII85(in, out);
    WriteStream(out);
  });
  a85->add_subcommand("decode", "Decode ASCII85 text back to bytes")->callback([] {
    TMemoryStream in, out;
    Fill(in, ReadAll("-"));
    const int status = Zyn_dstruct::DecodeASCII85(in, out);
    WriteStream(out);
    if (status != 0)
      throw Failure("-", "not valid ASCII85 (status " + std::to_string(status) + ")");
  });
  AddRleCommand(app);
}

}  // namespace zyn_cli
