#include "zyn/html/htmlproducer.h"

#include "zyn/platform/casefold.h"
#include "zyn/platform/textfile.h"
#include "zyn/streams/streamio.h"
#include "zyn/stringl/stringl.h"

namespace Zyn_htmlsupport {

THtmlProducer::THtmlProducer(TComponent* AOwner) : TComponent(AOwner) {}

THtmlProducer::~THtmlProducer() = default;

void THtmlProducer::SetTemplate(std::u16string_view Value) { FTemplate = Value; }

std::u16string THtmlProducer::Convert() {
  FSPos = 0;
  FConvertedHTML.clear();
  const std::u16string_view text = FTemplate;
  const std::size_t n = text.size();
  // Replacements are usually about as long as their tags.
  FConvertedHTML.reserve(n);
  // 0-based from here on: `pos` is the next character to look at, so FSPos
  // (1-based, the last character taken) is `pos` whenever it is read.
  std::size_t pos = 0;
  while (pos < n) {
    // Plain text up to the next "<#" goes over in one piece.
    std::size_t i = pos;
    while (true) {
      i = text.find(u'<', i);
      if (i == std::u16string_view::npos || (i + 1 < n && text[i + 1] == u'#')) break;
      ++i;
    }
    if (i == std::u16string_view::npos) {
      FConvertedHTML.append(text.substr(pos));
      break;
    }
    FConvertedHTML.append(text.substr(pos, i - pos));
    FSPos = static_cast<std::int32_t>(i + 1);

    // An unclosed tag runs to the end, its last character in the place of ">".
    std::size_t j = text.find(u'>', i);
    if (j == std::u16string_view::npos) j = n - 1;
    std::size_t k = text.substr(0, j).find(u' ', i);
    if (k == std::u16string_view::npos) k = j;
    std::u16string replacement(text.substr(i, j - i + 1));
    if (FOnHTMLTag) {
      const std::u16string name =
          k > i + 2 ? zyn::platform::LowerCase(text.substr(i + 2, k - i - 2)) : std::u16string();
      const std::u16string params =
          k < j ? Zyn_stringl::StripLTBlanks(text.substr(k + 1, j - k - 1)) : std::u16string();
      FOnHTMLTag(this, name, params, replacement);
    }
    FConvertedHTML += replacement;
    pos = j + 1;
    FSPos = static_cast<std::int32_t>(pos);
  }
  FSPos = static_cast<std::int32_t>(n);
  return FConvertedHTML;
}

TStream* THtmlProducer::ConvertedHTMLAsStream() {
  FStrStream.reset();
  FStrStream = std::make_unique<TStringStream>(FConvertedHTML);
  FStrStream->SetPosition(0);
  return FStrStream.get();
}

void THtmlProducer::ReadTemplateFromFile(std::u16string_view FName) {
  zyn::platform::Textfile file;
  file.Assign(FName);
  file.Reset();
  FTemplate.clear();
  while (!file.Eof()) {
    FTemplate += file.ReadLn();
    FTemplate += u"\r\n";
  }
  file.Close();
}

void THtmlProducer::ReadTemplateFromStream(TStream& InStream) {
  InStream.SetPosition(0);
  FTemplate = Zyn_streams::StreamAsString(InStream);
}

void THtmlProducer::WriteConvertedHTMLToFile(std::u16string_view FName) {
  zyn::platform::Textfile file;
  file.Assign(FName);
  file.Rewrite();
  file.WriteString(FConvertedHTML);
  file.Close();
}

}  // namespace Zyn_htmlsupport
