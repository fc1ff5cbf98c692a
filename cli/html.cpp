// HTML: render a template with values for its tags.

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "cli/common.h"
#include "zyn/html/htmlproducer.h"
#include "zyn/platform/casefold.h"

namespace zyn_cli {

namespace {

struct RenderOptions {
  std::string template_file;
  std::vector<std::string> sets;
  bool strict = false;
};

void Render(const RenderOptions& o) {
  // Tag names arrive folded to lower case, so the names given are folded too.
  std::map<std::u16string, std::u16string> values;
  for (const std::string& set : o.sets) {
    const std::size_t equals = set.find('=');
    if (equals == std::string::npos || equals == 0)
      throw CLI::ValidationError("--set", "expects NAME=VALUE, got \"" + set + "\"");
    values[zyn::platform::LowerCase(Path16(set.substr(0, equals)))] =
        Path16(set.substr(equals + 1));
  }
  Zyn_htmlsupport::THtmlProducer producer;
  producer.ReadTemplateFromFile(Path16(o.template_file));
  std::u16string unknown;
  producer.SetOnHTMLTag([&](zyn::platform::TObject*, const std::u16string& tag,
                            const std::u16string&, std::u16string& replacement) {
    if (const auto it = values.find(tag); it != values.end()) {
      replacement = it->second;
    } else if (unknown.empty()) {
      unknown = tag;
    }
  });
  const std::u16string html = producer.Convert();
  if (o.strict && !unknown.empty())
    throw Failure(o.template_file, "no value for the tag <#" + Utf8(unknown) + ">");
  WriteOut(Utf8(html));
}

}  // namespace

void AddHtmlCommands(CLI::App& app) {
  CLI::App* html = app.add_subcommand("html", "HTML templates");
  html->require_subcommand(1);
  auto o = std::make_shared<RenderOptions>();
  CLI::App* render = html->add_subcommand(
      "render",
      "Replace the <#name> tags of TEMPLATE (UTF-8) and print the page; tags without "
      "a value stay as they are");
  render->add_option("TEMPLATE", o->template_file, "The template file")->required();
  render->add_option("--set", o->sets, "A tag's value, NAME=VALUE (repeatable)");
  render->add_flag("--strict", o->strict, "Fail if a tag has no value");
  render->callback([o] { Render(*o); });
}

}  // namespace zyn_cli
