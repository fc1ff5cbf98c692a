#include "zyn/html/htmlpage.h"

#include <gumbo.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "zyn/html/entities.h"
#include "zyn/platform/text.h"

namespace Zyn_htmlsupport {

namespace {

// Every block the parser takes, so that a tree is released without the
// parser's own recursive walk (a deeply nested page would exhaust the stack)
// and even when a parse is left by an exception. Blocks are chained through
// a header in front of each, so taking and giving back one costs O(1).
class ParserMemory {
 public:
  ParserMemory() = default;
  ParserMemory(const ParserMemory&) = delete;
  ParserMemory& operator=(const ParserMemory&) = delete;
  ~ParserMemory() {
    while (head_.next != &head_) {
      Header* block = head_.next;
      Unlink(block);
      std::free(block);
    }
  }

  static void* Allocate(void* self, std::size_t size) {
    auto& head = static_cast<ParserMemory*>(self)->head_;
    if (size > SIZE_MAX - sizeof(Header)) throw std::bad_alloc();
    auto* block = static_cast<Header*>(std::malloc(sizeof(Header) + size));
    if (block == nullptr) throw std::bad_alloc();
    block->prev = &head;
    block->next = head.next;
    head.next->prev = block;
    head.next = block;
    return block + 1;
  }
  static void Release(void*, void* p) {
    if (p == nullptr) return;
    Header* block = static_cast<Header*>(p) - 1;
    Unlink(block);
    std::free(block);
  }

 private:
  // Keeps the parser's blocks as aligned as malloc's own.
  struct alignas(std::max_align_t) Header {
    Header* prev;
    Header* next;
  };
  static void Unlink(Header* block) {
    block->prev->next = block->next;
    block->next->prev = block->prev;
  }

  Header head_{&head_, &head_};
};

// UTF-8 for the parser. A lone surrogate, which UTF-8 can't carry, becomes
// U+FFFD; the source positions are mapped back to the text by Unit().
class ParsedDocument {
 public:
  explicit ParsedDocument(std::u16string_view html) : text_(html) {
    utf8_.reserve(html.size() + html.size() / 2);
    for (std::size_t i = 0; i < html.size(); ++i) {
      char32_t cp = html[i];
      if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < html.size() && html[i + 1] >= 0xDC00 &&
          html[i + 1] <= 0xDFFF) {
        cp = 0x10000 + ((cp - 0xD800) << 10) + (html[i + 1] - 0xDC00);
        ++i;
      } else if (cp >= 0xD800 && cp <= 0xDFFF) {
        cp = 0xFFFD;
      }
      AppendUtf8(cp);
    }
    GumboOptions options = kGumboDefaultOptions;
    options.allocator = &ParserMemory::Allocate;
    options.deallocator = &ParserMemory::Release;
    options.userdata = &memory_;
    options.max_errors = 0;
    output_ = gumbo_parse_with_options(&options, utf8_.data(), utf8_.size());
  }

  // The <body> element, or null (a frameset document has none).
  const GumboNode* Body() const {
    const GumboNode* root = output_->root;
    if (root == nullptr || root->type != GUMBO_NODE_ELEMENT) return nullptr;
    const GumboVector& children = root->v.element.children;
    for (unsigned i = 0; i < children.length; ++i) {
      const auto* child = static_cast<const GumboNode*>(children.data[i]);
      if (child->type == GUMBO_NODE_ELEMENT && child->v.element.tag == GUMBO_TAG_BODY) return child;
    }
    return nullptr;
  }

  // The index of the UTF-16 unit that holds the byte at `offset` of the
  // parser's input; the text's length for the end.
  std::size_t Unit(std::size_t offset) const {
    std::size_t bytes = 0;
    std::size_t i = 0;
    while (i < text_.size() && bytes < offset) {
      const char16_t c = text_[i];
      const bool pair = c >= 0xD800 && c <= 0xDBFF && i + 1 < text_.size() &&
                        text_[i + 1] >= 0xDC00 && text_[i + 1] <= 0xDFFF;
      bytes += pair ? 4 : c < 0x80 ? 1 : c < 0x800 ? 2 : 3;
      i += pair ? 2 : 1;
    }
    return i;
  }

  std::u16string_view Text() const { return text_; }

 private:
  void AppendUtf8(char32_t cp) {
    if (cp < 0x80) {
      utf8_.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
      utf8_.push_back(static_cast<char>(0xC0 | (cp >> 6)));
      utf8_.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
      utf8_.push_back(static_cast<char>(0xE0 | (cp >> 12)));
      utf8_.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
      utf8_.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
      utf8_.push_back(static_cast<char>(0xF0 | (cp >> 18)));
      utf8_.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
      utf8_.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
      utf8_.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
  }

  std::u16string_view text_;
  std::string utf8_;
  ParserMemory memory_;  // holds every block of output_'s tree
  GumboOutput* output_ = nullptr;
};

std::size_t StartOf(const GumboNode* node) {
  if (node->type == GUMBO_NODE_ELEMENT || node->type == GUMBO_NODE_TEMPLATE)
    return node->v.element.start_pos.offset;
  return node->v.text.start_pos.offset;
}

// The byte behind the source of `node`, its last descendants included.
std::size_t EndOf(const GumboNode* node) {
  while (node->type == GUMBO_NODE_ELEMENT || node->type == GUMBO_NODE_TEMPLATE) {
    const GumboElement& e = node->v.element;
    if (e.original_end_tag.length > 0) return e.end_pos.offset + e.original_end_tag.length;
    if (e.children.length == 0) return e.start_pos.offset + e.original_tag.length;
    node = static_cast<const GumboNode*>(e.children.data[e.children.length - 1]);
  }
  return node->v.text.start_pos.offset + node->v.text.original_text.length;
}

// --- The text of a body --------------------------------------------------

bool IsHtml(const GumboElement& e, GumboTag tag) {
  return e.tag == tag && e.tag_namespace == GUMBO_NAMESPACE_HTML;
}

bool HasAttribute(const GumboElement& e, const char* name) {
  return gumbo_get_attribute(&e.attributes, name) != nullptr;
}

// Whether an element the parser has no tag number for is named `name`
// (lower case): newer elements such as <dialog> and <search>.
bool IsUnknownNamed(const GumboElement& e, std::string_view name) {
  if (e.tag != GUMBO_TAG_UNKNOWN || e.tag_namespace != GUMBO_NAMESPACE_HTML) return false;
  GumboStringPiece piece = e.original_tag;
  if (piece.length == 0) return false;
  gumbo_tag_from_original_text(&piece);
  if (piece.length != name.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    char c = piece.data[i];
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    if (c != name[i]) return false;
  }
  return true;
}

// Elements a browser doesn't render, with all they hold.
bool IsHidden(const GumboElement& e) {
  switch (e.tag) {
    case GUMBO_TAG_SCRIPT:
    case GUMBO_TAG_STYLE:
    case GUMBO_TAG_TITLE:
      return true;  // in every namespace: SVG has them too
    default:
      break;
  }
  if (e.tag_namespace != GUMBO_NAMESPACE_HTML) return false;
  if (HasAttribute(e, "hidden")) return true;
  switch (e.tag) {
    case GUMBO_TAG_HEAD:
    case GUMBO_TAG_META:
    case GUMBO_TAG_LINK:
    case GUMBO_TAG_BASE:
    case GUMBO_TAG_BASEFONT:
    case GUMBO_TAG_BGSOUND:
    case GUMBO_TAG_TEMPLATE:
    case GUMBO_TAG_NOSCRIPT:
    case GUMBO_TAG_NOEMBED:
    case GUMBO_TAG_NOFRAMES:
    case GUMBO_TAG_PARAM:
    case GUMBO_TAG_RP:
    case GUMBO_TAG_AREA:
    case GUMBO_TAG_DATALIST:
    case GUMBO_TAG_IFRAME:
    case GUMBO_TAG_TEXTAREA:
    case GUMBO_TAG_INPUT:
    case GUMBO_TAG_CANVAS:
    case GUMBO_TAG_VIDEO:
    case GUMBO_TAG_AUDIO:
      return true;
    default:
      return IsUnknownNamed(e, "dialog") && !HasAttribute(e, "open");
  }
}

// Line breaks a block element asks for before and after it: 2 for <p>, 1
// for the others the default style sheet shows as blocks, 0 for inline ones.
int RequiredBreaks(const GumboElement& e) {
  if (e.tag_namespace != GUMBO_NAMESPACE_HTML) return 0;
  switch (e.tag) {
    case GUMBO_TAG_P:
      return 2;
    case GUMBO_TAG_ADDRESS:
    case GUMBO_TAG_ARTICLE:
    case GUMBO_TAG_ASIDE:
    case GUMBO_TAG_BLOCKQUOTE:
    case GUMBO_TAG_BODY:
    case GUMBO_TAG_CAPTION:
    case GUMBO_TAG_CENTER:
    case GUMBO_TAG_DD:
    case GUMBO_TAG_DETAILS:
    case GUMBO_TAG_DIR:
    case GUMBO_TAG_DIV:
    case GUMBO_TAG_DL:
    case GUMBO_TAG_DT:
    case GUMBO_TAG_FIELDSET:
    case GUMBO_TAG_FIGCAPTION:
    case GUMBO_TAG_FIGURE:
    case GUMBO_TAG_FOOTER:
    case GUMBO_TAG_FORM:
    case GUMBO_TAG_FRAMESET:
    case GUMBO_TAG_H1:
    case GUMBO_TAG_H2:
    case GUMBO_TAG_H3:
    case GUMBO_TAG_H4:
    case GUMBO_TAG_H5:
    case GUMBO_TAG_H6:
    case GUMBO_TAG_HEADER:
    case GUMBO_TAG_HGROUP:
    case GUMBO_TAG_HR:
    case GUMBO_TAG_HTML:
    case GUMBO_TAG_LEGEND:
    case GUMBO_TAG_LI:
    case GUMBO_TAG_LISTING:
    case GUMBO_TAG_MAIN:
    case GUMBO_TAG_MENU:
    case GUMBO_TAG_NAV:
    case GUMBO_TAG_OL:
    case GUMBO_TAG_OPTGROUP:
    case GUMBO_TAG_OPTION:
    case GUMBO_TAG_PLAINTEXT:
    case GUMBO_TAG_PRE:
    case GUMBO_TAG_SECTION:
    case GUMBO_TAG_SUMMARY:
    case GUMBO_TAG_TABLE:
    case GUMBO_TAG_UL:
    case GUMBO_TAG_XMP:
      return 1;
    default:
      return IsUnknownNamed(e, "dialog") || IsUnknownNamed(e, "search") ? 1 : 0;
  }
}

bool KeepsWhiteSpace(const GumboElement& e) {
  return IsHtml(e, GUMBO_TAG_PRE) || IsHtml(e, GUMBO_TAG_LISTING) || IsHtml(e, GUMBO_TAG_XMP) ||
         IsHtml(e, GUMBO_TAG_PLAINTEXT);
}

// Builds the text as innerText does: content, and between contents the
// largest number of line breaks asked for, none at the ends.
class TextBuilder {
 public:
  explicit TextBuilder(char16_t line_break) : line_break_(line_break) {}

  void Text(std::u16string_view s, bool keep_white_space) {
    for (char16_t c : s) {
      if (keep_white_space) {
        Put(c == u'\n' ? line_break_ : c);
      } else if (c == u' ' || c == u'\t' || c == u'\n' || c == u'\r') {
        pending_blank_ = !line_start_;
      } else {
        if (pending_blank_) Put(u' ');
        Put(c);
      }
    }
  }
  // <br>, and the tab and line break between table cells and rows.
  void Hard(char16_t c) {
    Put(c);
    NewLine();
  }
  void Breaks(int n) {
    if (n == 0) return;
    if (n > breaks_) breaks_ = n;
    NewLine();
  }
  // A table cell is a line of its own for white space.
  void NewLine() {
    line_start_ = true;
    pending_blank_ = false;
  }
  char16_t LineBreak() const { return line_break_; }
  std::u16string Result() { return std::move(out_); }

 private:
  void Put(char16_t c) {
    if (!out_.empty()) out_.append(static_cast<std::size_t>(breaks_), line_break_);
    breaks_ = 0;
    pending_blank_ = false;
    line_start_ = false;
    out_.push_back(c);
  }

  char16_t line_break_;
  std::u16string out_;
  int breaks_ = 0;
  bool line_start_ = true;
  bool pending_blank_ = false;
};

// The tables and rows open around the walk: whether a row or cell has ended
// in them, so the next one starts with its separator.
struct TableState {
  std::vector<bool> row_ended;   // per open <table>
  std::vector<bool> cell_ended;  // per open <tr>
};

void Enter(const GumboElement& e, TextBuilder& out, TableState& tables, int& keep_white_space) {
  out.Breaks(RequiredBreaks(e));
  if (KeepsWhiteSpace(e)) ++keep_white_space;
  if (e.tag_namespace != GUMBO_NAMESPACE_HTML) return;
  switch (e.tag) {
    case GUMBO_TAG_BR:
      out.Hard(out.LineBreak());
      break;
    case GUMBO_TAG_TABLE:
      tables.row_ended.push_back(false);
      break;
    case GUMBO_TAG_TR:
      if (!tables.row_ended.empty() && tables.row_ended.back()) {
        out.Hard(out.LineBreak());
        tables.row_ended.back() = false;
      }
      tables.cell_ended.push_back(false);
      out.NewLine();
      break;
    case GUMBO_TAG_TD:
    case GUMBO_TAG_TH:
      if (!tables.cell_ended.empty() && tables.cell_ended.back()) {
        out.Hard(u'\t');
        tables.cell_ended.back() = false;
      }
      out.NewLine();
      break;
    default:
      break;
  }
}

void Leave(const GumboElement& e, TextBuilder& out, TableState& tables, int& keep_white_space) {
  if (KeepsWhiteSpace(e)) --keep_white_space;
  if (e.tag_namespace == GUMBO_NAMESPACE_HTML) {
    switch (e.tag) {
      case GUMBO_TAG_TABLE:
        if (!tables.row_ended.empty()) tables.row_ended.pop_back();
        break;
      case GUMBO_TAG_TR:
        if (!tables.cell_ended.empty()) tables.cell_ended.pop_back();
        if (!tables.row_ended.empty()) tables.row_ended.back() = true;
        break;
      case GUMBO_TAG_TD:
      case GUMBO_TAG_TH:
        if (!tables.cell_ended.empty()) tables.cell_ended.back() = true;
        out.NewLine();
        break;
      default:
        break;
    }
  }
  out.Breaks(RequiredBreaks(e));
}

}  // namespace

std::u16string DefaultHTMLHead(std::u16string_view Title, std::u16string_view StyleSheet,
                               std::u16string_view Description, std::u16string_view Language,
                               bool OpenBody) {
  std::u16string head = u"<!DOCTYPE html>\r\n<html";
  if (!Language.empty()) head += u" lang=\"" + MakeStringHTMLCompatible(Language) + u"\"";
  head +=
      u">\r\n<head>\r\n<meta charset=\"utf-8\">\r\n"
      u"<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\r\n";
  if (!Description.empty())
    head += u"<meta name=\"description\" content=\"" + MakeStringHTMLCompatible(Description) +
            u"\">\r\n";
  head +=
      u"<title>" + MakeStringHTMLCompatible(Title.empty() ? u"Untitled" : Title) + u"</title>\r\n";
  if (!StyleSheet.empty())
    head += u"<link rel=\"stylesheet\" href=\"" + MakeStringHTMLCompatible(StyleSheet) + u"\">\r\n";
  head += u"</head>\r\n";
  if (OpenBody) head += u"<body>\r\n";
  return head;
}

std::u16string DefaultHTMLFoot(bool CloseBody) {
  return CloseBody ? u"</body>\r\n</html>\r\n" : u"</html>\r\n";
}

std::u16string ExtractHTMLBody(std::u16string_view HTML) {
  const ParsedDocument doc(HTML);
  const GumboNode* body = doc.Body();
  if (body == nullptr) return {};
  const GumboElement& e = body->v.element;
  const auto* first =
      e.children.length > 0 ? static_cast<const GumboNode*>(e.children.data[0]) : nullptr;
  const auto* last = e.children.length > 0
                         ? static_cast<const GumboNode*>(e.children.data[e.children.length - 1])
                         : nullptr;
  std::size_t begin;
  if (e.original_tag.length > 0) {
    begin = e.start_pos.offset + e.original_tag.length;
  } else if (first != nullptr) {
    begin = StartOf(first);
  } else {
    return {};
  }
  std::size_t end;
  if (e.original_end_tag.length > 0 && e.end_pos.offset >= begin) {
    end = e.end_pos.offset;
  } else if (last != nullptr) {
    end = EndOf(last);
  } else {
    end = begin;
  }
  const std::size_t from = doc.Unit(begin);
  const std::size_t to = doc.Unit(end);
  if (to <= from) return {};
  return std::u16string(doc.Text().substr(from, to - from));
}

std::u16string ConvertHTMLBodyToText(std::u16string_view HTML, char16_t LineBreak) {
  const ParsedDocument doc(HTML);
  const GumboNode* body = doc.Body();
  if (body == nullptr) return {};

  TextBuilder out(LineBreak);
  TableState tables;
  int keep_white_space = 0;
  // Depth-first without recursion: pages can nest deeper than the stack.
  struct Frame {
    const GumboNode* node;
    unsigned next_child;
  };
  std::vector<Frame> stack{{body, 0}};
  while (!stack.empty()) {
    Frame& top = stack.back();
    const GumboElement& parent = top.node->v.element;
    if (top.next_child == parent.children.length) {
      if (top.node != body) Leave(parent, out, tables, keep_white_space);
      stack.pop_back();
      continue;
    }
    const auto* child = static_cast<const GumboNode*>(parent.children.data[top.next_child++]);
    switch (child->type) {
      case GUMBO_NODE_TEXT:
      case GUMBO_NODE_WHITESPACE:
      case GUMBO_NODE_CDATA:
        out.Text(zyn::platform::FromUTF8(child->v.text.text), keep_white_space > 0);
        break;
      case GUMBO_NODE_ELEMENT:
      case GUMBO_NODE_TEMPLATE:
        if (!IsHidden(child->v.element)) {
          Enter(child->v.element, out, tables, keep_white_space);
          stack.push_back({child, 0});
        }
        break;
      default:  // comments
        break;
    }
  }
  return out.Result();
}

}  // namespace Zyn_htmlsupport
