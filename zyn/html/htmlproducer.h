// zyn/html/htmlproducer.h
//
// THtmlProducer turns a template into HTML: each tag "<#name params>" goes to
// the host's handler, which supplies its replacement; all other text is
// copied through. The producer keeps the template and the last result, and
// gives the result as a string, a stream or a file.

#ifndef ZYN_HTML_HTMLPRODUCER_H_
#define ZYN_HTML_HTMLPRODUCER_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "zyn/platform/object.h"
#include "zyn/platform/stream.h"

namespace Zyn_htmlsupport {

using zyn::platform::TComponent;
using zyn::platform::TObject;
using zyn::platform::TStream;
using zyn::platform::TStringStream;

// Called for each tag: its name folded to lower case (A to Z only), its
// parameter text without blanks at the ends, and `Replacement`, which
// arrives as the whole tag and goes into the output as the handler leaves it.
using TOnHTMLTagEvent =
    std::function<void(TObject* Sender, const std::u16string& TagName, const std::u16string& Params,
                       std::u16string& Replacement)>;

class THtmlProducer : public TComponent {
 public:
  explicit THtmlProducer(TComponent* AOwner = nullptr);
  ~THtmlProducer() override;

  const std::u16string& Template() const { return FTemplate; }
  // Stores the text; the old result stays until the next Convert.
  void SetTemplate(std::u16string_view Value);
  const std::u16string& ConvertedHTML() const { return FConvertedHTML; }
  const TOnHTMLTagEvent& OnHTMLTag() const { return FOnHTMLTag; }
  void SetOnHTMLTag(TOnHTMLTagEvent Value) { FOnHTMLTag = std::move(Value); }

  // Rebuilds the result from the template and gives it. A tag starts at "<#"
  // and ends at the first ">" behind it, or at the template's end; its name
  // runs to the first blank. Replacements are not scanned again. An
  // exception of the handler leaves Convert with the result holding the text
  // up to that tag.
  std::u16string Convert();

  // A fresh TStringStream at position 0 holding a copy of the result in the
  // 8-bit code page (a character it can't hold becomes '?'). The stream stays
  // the producer's, valid until the next call or the producer's end.
  TStream* ConvertedHTMLAsStream();

  // Reads the template from a UTF-8 text file (bytes that aren't UTF-8 come
  // through unchanged, see Textfile), closing every line with CR LF, the last
  // one too. A file that can't be opened raises EInOutError and keeps the old
  // template; a failure while reading leaves the lines read so far.
  void ReadTemplateFromFile(std::u16string_view FName);
  // The whole stream from its start, one character per byte (StreamAsString);
  // line ends stay as they are.
  void ReadTemplateFromStream(TStream& InStream);
  // Writes the result as it stands, in UTF-8 with no line end added, creating
  // or replacing the file; failures raise EInOutError.
  void WriteConvertedHTMLToFile(std::u16string_view FName);

 private:
  std::u16string FTemplate;
  TOnHTMLTagEvent FOnHTMLTag;
  std::int32_t FSPos = 0;
  std::u16string FConvertedHTML;
  std::unique_ptr<TStringStream> FStrStream;
};

}  // namespace Zyn_htmlsupport

#endif  // ZYN_HTML_HTMLPRODUCER_H_
