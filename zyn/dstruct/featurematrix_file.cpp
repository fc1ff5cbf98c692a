// The file form of TFeatureMatrix: a "#featdef" header, six tagged lines per
// feature, a "#featvals" header, one line per non-empty value and "#featend".

#include <algorithm>
#include <array>
#include <string>

#include "zyn/base/scanners.h"
#include "zyn/dstruct/featurematrix.h"
#include "zyn/platform/casefold.h"
#include "zyn/platform/numconv.h"
#include "zyn/stringl/formatting.h"
#include "zyn/stringl/stringl.h"
#include "zyn/stringl/words.h"

namespace Zyn_dstruct {

using zyn::platform::Textfile;

namespace {

const std::array<std::u16string, 3>& Keywords() {
  static const std::array<std::u16string, 3> kWords = {u"featdef", u"featvals", u"featend"};
  return kWords;
}

const std::array<std::u16string, 5>& KindWords() {
  static const std::array<std::u16string, 5> kWords = {u"fkUndefined", u"fkInteger", u"fkDouble",
                                                       u"fkString", u"fkTriState"};
  return kWords;
}

enum Tag { kNoTag, kFeatNum, kFeatName, kFeatKind, kComment, kPresets, kSorted, kGUIElem };

const std::array<std::u16string, 7>& Tags() {
  static const std::array<std::u16string, 7> kTags = {u"fplFeatNum", u"fplFeatName", u"fplFeatKind",
                                                      u"fplComment", u"fplPresets",  u"fplSorted",
                                                      u"fplGUIElem"};
  return kTags;
}

// Ends a load as a failed read: a count the loader won't allocate.
struct FailedRead {};

std::u16string Decimal(std::int64_t v) {
  const std::string s = std::to_string(v);
  return {s.begin(), s.end()};
}

// A count of a header: 0 to `limit`, else the read fails.
int CheckedCount(std::int64_t n, std::int64_t limit) {
  if (n < 0 || n > limit) throw FailedRead{};
  return static_cast<int>(n);
}

}  // namespace

void TFeatureMatrix::SaveToOpenFile(Textfile& f) const {
  f.WriteLn(u"#featdef " + Decimal(FNFeats) + u" 1");
  for (int fix = 1; fix <= FNFeats; ++fix) {
    const TFeatProps& p = FFeatProps[static_cast<std::size_t>(fix - 1)];
    const std::u16string ix = Decimal(fix) + u" ";
    // A kind outside the enumeration has no word; it is saved as undefined.
    const std::u16string_view kind = p.FeatKind < KindWords().size()
                                         ? std::u16string_view(KindWords()[p.FeatKind])
                                         : std::u16string_view(KindWords()[fkUndefined]);
    f.WriteLn(ix + u"fplFeatNum " + Decimal(p.FeatNum));
    f.WriteLn(ix + u"fplFeatName " + p.FeatName.str());
    f.WriteLn(ix + u"fplFeatKind " + std::u16string(kind));
    f.WriteLn(ix + u"fplComment " + p.Comment.str());
    f.WriteLn(ix + u"fplPresets " + p.PresetValues);
    f.WriteLn(ix + u"fplSorted " + Zyn_stringl::BoolToStr(p.Sorted, 0));
  }
  f.WriteLn(u"#featvals " + Decimal(FNFeats) + u" " + Decimal(FNObjs));
  for (int obj = 1; obj <= FNObjs; ++obj) {
    for (int fix = 1; fix <= FNFeats; ++fix) {
      const std::u16string& value = Value(fix, obj);
      if (value.empty()) continue;
      f.WriteLn(Decimal(fix) + u" " + Decimal(obj) + u" " + value);
    }
  }
  f.WriteLn(u"#featend");
}

void TFeatureMatrix::Save(std::u16string_view FName) const {
  Textfile f;
  f.Assign(FName, zyn::platform::kCpWindows1252);
  f.Rewrite();
  SaveToOpenFile(f);
  f.Close();
}

void TFeatureMatrix::ReadDefinitions(Textfile& f, std::u16string_view rest) {
  int pos = 1;
  const int n = CheckedCount(zyn::internal::ScanDecimal(rest, pos), kMaxLoadedFeatures);
  const int version = zyn::internal::ScanDecimal(rest, pos);
  Reshape(n, FNObjs);
  if (version != 1) return;
  // Entries name their feature, so their order doesn't matter, only their
  // number. Entries the file lacks leave their fields in the zero state.
  for (std::int64_t entry = 0; entry < std::int64_t{6} * n && !f.Eof(); ++entry) {
    const int fix = f.ReadInteger();
    const std::u16string line = Zyn_stringl::StripLTBlanks(f.ReadLn());
    const std::size_t blank = line.find(u' ');
    if (blank == std::u16string::npos || !FeatInRange(fix)) continue;
    const std::u16string_view tag = std::u16string_view(line).substr(0, blank);
    const std::u16string_view value = std::u16string_view(line).substr(blank + 1);
    TFeatProps& p = FFeatProps[static_cast<std::size_t>(fix - 1)];
    switch (Zyn_stringl::StringIx(tag, false, Tags(), 6)) {
      case kFeatNum:
        p.FeatNum = zyn::platform::StrToInt(value);
        break;
      case kFeatName:
        p.FeatName = zyn::platform::BasicShortString<20>(value);
        break;
      case kFeatKind: {
        // An unknown word leaves the feature undefined.
        const int ix = Zyn_stringl::StringIx(value, false, KindWords(), 4);
        p.FeatKind = ix == 0 ? fkUndefined : static_cast<TFeatKind>(ix - 1);
        break;
      }
      case kComment:
        p.Comment = zyn::platform::BasicShortString<60>(value);
        break;
      case kPresets:
        p.PresetValues = value;
        break;
      case kSorted:
        p.Sorted = zyn::platform::LowerCase(value) == u"true";
        break;
      default:  // fplGUIElem and unknown tags
        break;
    }
  }
}

void TFeatureMatrix::ReadValues(Textfile& f, std::u16string_view rest) {
  const std::size_t blank = rest.find(u' ');
  const std::u16string_view first = rest.substr(0, blank);
  const std::u16string_view second =
      blank == std::u16string_view::npos ? std::u16string_view() : rest.substr(blank + 1);
  const int nfeats = CheckedCount(zyn::platform::StrToInt(first), kMaxLoadedFeatures);
  const int nobjs = CheckedCount(zyn::platform::StrToInt(second), max_loaded_values_);
  if (std::int64_t{nfeats} * nobjs > max_loaded_values_) throw FailedRead{};
  Reshape(nfeats, nobjs);
  // Lines to the first empty or '#' line; that one ends the block.
  while (!f.Eof()) {
    const std::u16string line = f.ReadLn();
    if (line.empty() || line[0] == u'#') return;
    int pos = 1;
    const int fix = zyn::internal::ScanDecimal(line, pos);
    const int obj = zyn::internal::ScanDecimal(line, pos);
    if (!InRange(fix, obj)) continue;
    Value(fix, obj) = Zyn_stringl::StripLTBlanks(
        std::u16string_view(line).substr(std::min(static_cast<std::size_t>(pos - 1), line.size())));
  }
}

int TFeatureMatrix::ReadBlock(Textfile& f) {
  int result = -1;
  while (!f.Eof()) {
    const std::u16string line = f.ReadLn();
    if (line.empty() || line[0] != u'#') continue;
    const std::size_t blank = line.find(u' ');
    if (blank == std::u16string::npos || blank == 1) continue;
    const std::u16string_view keyword = std::u16string_view(line).substr(1, blank - 1);
    const std::u16string rest =
        Zyn_stringl::StripLTBlanks(std::u16string_view(line).substr(blank + 1));
    switch (Zyn_stringl::StringIx(keyword, false, Keywords(), 2)) {
      case 1:
        result = 0;
        ReadDefinitions(f, rest);
        break;
      case 2:
        ReadValues(f, rest);
        return 0;
      default:  // "featend" and unknown words
        break;
    }
  }
  return result;
}

int TFeatureMatrix::LoadFromOpenFile(Textfile& f) {
  Clear();
  int result;
  try {
    result = ReadBlock(f);
  } catch (...) {
    // A failed read is reported by the result; the status of a failed text
    // file operation is cleared with it.
    zyn::platform::IOResult();
    result = -2;
  }
  Changed();
  return result;
}

int TFeatureMatrix::Load(std::u16string_view FName) {
  Textfile f;
  f.Assign(FName, zyn::platform::kCpWindows1252);
  try {
    f.Reset();
  } catch (const zyn::platform::EInOutError& e) {
    if (e.ErrorCode() != zyn::platform::kIoFileNotFound &&
        e.ErrorCode() != zyn::platform::kIoPathNotFound) {
      throw;
    }
    zyn::platform::IOResult();
    return -1;
  }
  const int result = LoadFromOpenFile(f);
  f.Close();
  return result == 0 ? 0 : result - 1;
}

}  // namespace Zyn_dstruct
