#include "zyn/filesys/ascheader.h"

#include <gtest/gtest.h>

#include <string>

#include "testing/zyn_testing.h"
#include "zyn/platform/stream.h"
#include "zyn/platform/text.h"
#include "zyn/platform/textfile.h"

namespace Zyn_filesys {
namespace {

using zyn::testing::TempDir;
using zyn::testing::WriteFileBytes;

// What one read gave: "status|text|n1|n2|flags", the flags as 0 and 1.
struct Header {
  int status = 99;
  std::u16string text = u"?";
  int n1 = 77, n2 = 77;
  bool f[4] = {true, true, true, true};
  std::string Show() const {
    std::string s = std::to_string(status) + "|" + zyn::testing::Utf8(text) + "|" +
                    std::to_string(n1) + "|" + std::to_string(n2) + "|";
    for (bool b : f) s += b ? '1' : '0';
    return s;
  }
};

Header FromFile(const TempDir& dir, const std::string& bytes) {
  WriteFileBytes(dir / "h.asc", bytes);
  Header h;
  h.status = ReadHeaderOfASC(zyn::platform::FromUTF8((dir / "h.asc").string()), h.text, h.n1, h.n2,
                             h.f[0], h.f[1], h.f[2], h.f[3]);
  return h;
}

Header FromStream(const std::string& bytes, std::int64_t* position = nullptr) {
  zyn::platform::TMemoryStream m;
  m.WriteBuffer(bytes.data(), static_cast<std::int64_t>(bytes.size()));
  m.SetPosition(0);
  Header h;
  h.status = ReadHeaderOfASC(&m, h.text, h.n1, h.n2, h.f[0], h.f[1], h.f[2], h.f[3]);
  if (position) *position = m.Position();
  return h;
}

TEST(AscHeaderTest, BothFormsByTheirRules) {
  const std::string head = "Title X\r\n 12 rest\r\n-3\r\n";
  struct Case {
    const char* name;
    std::string bytes;
    std::string file, stream;  // stream "": as the file
  };
  const Case cases[] = {
      {"mixed case", head + "true false TRUE false\r\nDATA", "0|Title X|12|-3|1010", ""},
      {"no separators", head + "TRUEFALSETRUEFALSE\r\n", "0|Title X|12|-3|1010", ""},
      {"three keywords", head + "TRUE FALSE TRUE", "0|Title X|12|-3|1010", ""},
      {"two keywords", head + "TRUE FALSE\r\n", "-3|Title X|12|-3|1000", ""},
      {"unknown first keyword", head + "maybe FALSE TRUE FALSE", "-3|Title X|12|-3|0000", ""},
      {"tabs pass in files only", head + "TRUE\tFALSE\tTRUE\tTRUE", "0|Title X|12|-3|1011",
       "-3|Title X|12|-3|1000"},
      {"line 2 no number", "T\r\nabc\r\n5\r\nTRUE TRUE TRUE TRUE\r\n", "-1|T|77|77|1111",
       "0|T|0|5|1111"},
      {"line 3 no number", "T\r\n1\r\nx1\r\nTRUE TRUE TRUE TRUE\r\n", "-2|T|1|77|1111",
       "0|T|1|0|1111"}};
  TempDir dir;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(FromFile(dir, c.bytes).Show(), c.file);
    EXPECT_EQ(FromStream(c.bytes).Show(), c.stream.empty() ? c.file : c.stream);
  }
  // Bare LF line ends: line 1 runs on in the file form.
  EXPECT_EQ(FromFile(dir, "T\n1\n2\nTRUE TRUE TRUE TRUE\n").Show(),
            "-4|T\n1\n2\nTRUE TRUE TRUE TRUE\n|0|77|1111");
  // The stream form stops right behind line 4.
  std::int64_t position = 0;
  FromStream(head + "TRUE TRUE TRUE TRUE\r\nDATA", &position);
  EXPECT_EQ(position, static_cast<std::int64_t>(head.size() + 21));
  std::u16string text;
  int n = 0;
  bool f = false;
  EXPECT_THROW(
      ReadHeaderOfASC(zyn::platform::FromUTF8((dir / "missing").string()), text, n, n, f, f, f, f),
      zyn::platform::EInOutError);
}

}  // namespace
}  // namespace Zyn_filesys
