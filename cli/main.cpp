// zyn: the library's jobs at a shell prompt. Each subcommand is a thin layer
// over the library's public interface; exit status 0 on success, 1 on a
// failure (one line on standard error), 2 on bad usage.

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>

#include "cli/common.h"
#include "zyn/package.h"
#include "zyn/platform/object.h"

int main(int argc, char** argv) {
  CLI::App app{
      "zyn: checksums, codecs, text, data, colours, marks, files, HTML and the "
      "processor, by the Zyn library's own rules"};
  app.name("zyn");
  app.require_subcommand(1);
  app.set_help_all_flag("--help-all", "Show the help of every subcommand");
  zyn_cli::AddCodecCommands(app);
  zyn_cli::AddTextCommands(app);
  zyn_cli::AddFileCommands(app);
  zyn_cli::AddHtmlCommands(app);
  zyn_cli::AddMarkCommands(app);
  zyn_cli::AddDataCommands(app);
  zyn_cli::AddSystemCommands(app);

  Initialize();
  int status = 0;
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& e) {
    status = app.exit(e);
  } catch (const CLI::ParseError& e) {
    app.exit(e);
    status = 2;
  } catch (const zyn_cli::Failure& e) {
    std::cerr << "zyn: " << e.what() << '\n';
    status = 1;
  } catch (const std::exception& e) {
    std::cerr << "zyn: " << e.what() << '\n';
    status = 1;
  }
  std::cout.flush();
  Finalize();
  return status;
}
