#include "zyn/filesys/ascheader.h"

#include <algorithm>
#include <stdexcept>

#include "zyn/platform/casefold.h"
#include "zyn/platform/textfile.h"
#include "zyn/streams/numscan.h"
#include "zyn/streams/streamio.h"
#include "zyn/stringl/stringl.h"

namespace Zyn_filesys {

namespace {

using zyn::platform::Textfile;

// The four keywords of line 4. Each is known by its leading letters, so
// separators may be missing; anything behind the fourth is ignored.
int ParseKeywords(std::u16string_view line, bool& F1, bool& F2, bool& F3, bool& F4) {
  std::u16string text = Zyn_stringl::StripLTBlanks(zyn::platform::UpperCase(line));
  for (bool* flag : {&F1, &F2, &F3}) {
    std::size_t taken;
    if (text.starts_with(u"TRUE")) {
      *flag = true;
      taken = 4;
    } else if (text.starts_with(u"FALSE")) {
      *flag = false;
      taken = 5;
    } else {
      return -3;
    }
    text = Zyn_stringl::StripLTBlanks(std::u16string_view(text).substr(taken));
  }
  F4 = text.starts_with(u"TRUE");
  return 0;
}

// Line 1 of the file form ends at CR; the rest of its line end, up to the
// LF, is passed over. Lines that end in a bare LF thus run on into line 1.
std::u16string ReadFirstLine(Textfile& tf) {
  std::u16string line;
  while (!tf.Eof()) {
    const char16_t c = tf.ReadChar();
    if (c == u'\r') {
      while (!tf.Eof() && tf.ReadChar() != u'\n') {
      }
      break;
    }
    line.push_back(c);
  }
  return line;
}

}  // namespace

int ReadHeaderOfASC(std::u16string_view FileName, std::u16string& Text, int& N1, int& N2, bool& F1,
                    bool& F2, bool& F3, bool& F4) {
  int status = 0;
  zyn::platform::IOResult();
  Textfile tf;
  tf.Assign(FileName);
  tf.Reset();
  try {
    Text = ReadFirstLine(tf);
    if (Text.find(u'\n') != std::u16string::npos) status = -4;
    auto read_number = [&](int& n, int failure) {
      try {
        n = tf.ReadInteger();
        tf.ReadLn();
      } catch (...) {
        zyn::platform::IOResult();
        status = failure;
      }
    };
    read_number(N1, -1);
    if (status == 0) read_number(N2, -2);
    if (status == 0) {
      F1 = F2 = F3 = F4 = false;
      std::u16string line = tf.ReadLn();
      std::replace(line.begin(), line.end(), u'\t', u' ');
      status = ParseKeywords(line, F1, F2, F3, F4);
    }
  } catch (...) {
    tf.Close();
    throw;
  }
  tf.Close();
  return status;
}

int ReadHeaderOfASC(zyn::platform::TStream* Stream, std::u16string& Text, int& N1, int& N2,
                    bool& F1, bool& F2, bool& F3, bool& F4) {
  if (Stream == nullptr) throw std::invalid_argument("ReadHeaderOfASC: no stream");
  bool eof = false;
  Text = Zyn_streams::ReadLnStream(*Stream, eof, 0);
  N1 = Zyn_streams::ScanStreamDecimal(*Stream);
  Zyn_streams::ReadLnStream(*Stream, eof, 0);
  N2 = Zyn_streams::ScanStreamDecimal(*Stream);
  Zyn_streams::ReadLnStream(*Stream, eof, 0);
  F1 = F2 = F3 = F4 = false;
  return ParseKeywords(Zyn_streams::ReadLnStream(*Stream, eof, 0), F1, F2, F3, F4);
}

}  // namespace Zyn_filesys
