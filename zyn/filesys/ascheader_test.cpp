#include "zyn/filesys/ascheader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "testing/zyn_testing.h"
#include "zyn/platform/stream.h"
#include "zyn/platform/text.h"
#include "zyn/platform/textfile.h"

namespace Zyn_filesys {
namespace {

using zyn::testing::TempDir;
using zyn::testing::WriteFileBytes;

struct Header {
  int status = 99;
  std::u16string text = u"?";
  int n1 = 77, n2 = 77;
  bool f[4] = {true, true, true, true};
  bool operator==(const Header& o) const {
    return status == o.status && text == o.text && n1 == o.n1 && n2 == o.n2 &&
           std::equal(f, f + 4, o.f);
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
    Header file, stream;
  };
  const Case cases[] = {
      {"mixed case",
       head + "true false TRUE false\r\nDATA",
       {0, u"Title X", 12, -3, {true, false, true, false}},
       {0, u"Title X", 12, -3, {true, false, true, false}}},
      {"no separators",
       head + "TRUEFALSETRUEFALSE\r\n",
       {0, u"Title X", 12, -3, {true, false, true, false}},
       {0, u"Title X", 12, -3, {true, false, true, false}}},
      {"three keywords",
       head + "TRUE FALSE TRUE",
       {0, u"Title X", 12, -3, {true, false, true, false}},
       {0, u"Title X", 12, -3, {true, false, true, false}}},
      {"two keywords",
       head + "TRUE FALSE\r\n",
       {-3, u"Title X", 12, -3, {true, false, false, false}},
       {-3, u"Title X", 12, -3, {true, false, false, false}}},
      {"unknown first keyword",
       head + "maybe FALSE TRUE FALSE",
       {-3, u"Title X", 12, -3, {false, false, false, false}},
       {-3, u"Title X", 12, -3, {false, false, false, false}}},
      {"tabs pass in files only",
       head + "TRUE\tFALSE\tTRUE\tTRUE",
       {0, u"Title X", 12, -3, {true, false, true, true}},
       {-3, u"Title X", 12, -3, {true, false, false, false}}},
      {"line 2 no number",
       "T\r\nabc\r\n5\r\nTRUE TRUE TRUE TRUE\r\n",
       {-1, u"T", 77, 77, {true, true, true, true}},
       {0, u"T", 0, 5, {true, true, true, true}}},
      {"line 3 no number",
       "T\r\n1\r\nx1\r\nTRUE TRUE TRUE TRUE\r\n",
       {-2, u"T", 1, 77, {true, true, true, true}},
       {0, u"T", 1, 0, {true, true, true, true}}},
  };
  TempDir dir;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_TRUE(FromFile(dir, c.bytes) == c.file);
    EXPECT_TRUE(FromStream(c.bytes) == c.stream);
  }
  // Bare LF line ends: line 1 runs on in the file form.
  const Header lf = FromFile(dir, "T\n1\n2\nTRUE TRUE TRUE TRUE\n");
  EXPECT_EQ(lf.status, -4);
  EXPECT_EQ(lf.text, u"T\n1\n2\nTRUE TRUE TRUE TRUE\n");
  EXPECT_EQ(lf.n1, 0);
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
