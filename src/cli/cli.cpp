#include "cli/cli.h"

#include <cstdio>
#include <iostream>

#include "cli/commands.h"
#include "core/headless_host.h"
#include "core/numbers.h"

namespace zv::cli {

namespace {

struct CommandEntry {
  const char* name;
  int (*run)(Context&, const std::vector<std::string>&);
};

constexpr CommandEntry kCommands[] = {
    {"identify", runIdentify}, {"convert", runConvert}, {"dump", runDump},
    {"eval", runEval},         {"expand", runExpand},   {"load-data", runLoadData},
    {"recalc", runRecalc},     {"roll", runRoll},       {"add", runAdd},
    {"delete", runDelete},     {"offer", runOffer},     {"requirements", runRequirements},
    {"script", runScript},
    {"filter", runFilter},
};

/// Takes the global options from the front of `args`; false on a bad option.
bool parseGlobalOptions(std::vector<std::string>& args, GlobalOptions& options,
                        std::string& error) {
  size_t i = 0;
  auto value = [&](const char* name) -> const std::string* {
    if (i + 1 >= args.size()) {
      error = std::string(name) + " needs a value";
      return nullptr;
    }
    return &args[++i];
  };
  for (; i < args.size(); ++i) {
    const std::string& arg = args[i];
    if (arg == "--data-dir") {
      auto v = value("--data-dir");
      if (!v) return false;
      options.dataDir = *v;
    } else if (arg == "--settings") {
      auto v = value("--settings");
      if (!v) return false;
      options.settingsFile = *v;
    } else if (arg == "--answers") {
      auto v = value("--answers");
      if (!v) return false;
      options.answersFile = *v;
    } else if (arg == "--seed") {
      auto v = value("--seed");
      if (!v) return false;
      options.seed = std::stoul(*v);
    } else if (arg == "--help" || arg == "-h") {
      options.help = true;
    } else if (arg.size() > 2 && arg.compare(0, 2, "--") == 0) {
      error = "unknown option '" + arg + "'";
      return false;
    } else {
      break;
    }
  }
  args.erase(args.begin(), args.begin() + static_cast<long>(i));
  return true;
}

}  // namespace

std::string helpText() {
  return "Usage: zarvelin-cli [--data-dir DIR] [--settings FILE] [--answers FILE] [--seed N] "
         "COMMAND ARGS\n"
         "\n"
         "Commands:\n"
         "  identify FILE...   the kind of each file, one line each:\n"
         "                     CODE<TAB>GAMESYSTEM<TAB>FILE (1 sheet, 2 template, 3 print\n"
         "                     template, 4 macro data sheet, 5 text, 6 data sheet, 7 filter,\n"
         "                     8 conversion script, 9 group, 10 data sheet list, -1 unknown,\n"
         "                     -2 can't be opened, -3 not recognizable)\n"
         "  convert IN OUT [--text|--binary]\n"
         "                     read a sheet, template or data sheet and write it in the\n"
         "                     form asked (default: the form it was read in; templates\n"
         "                     always text; a macro data sheet compiles to a data sheet)\n"
         "  dump FILE          a sheet or template (its data sheets loaded) as the engine\n"
         "                     computed it, or a data sheet with all its items, as JSON\n"
         "  eval [--sheet FILE [--item LIST:NAME]] EXPR\n"
         "                     the value of an expression as the program shows it; an\n"
         "                     expression error goes to stderr with exit status 1; with\n"
         "                     --item, as a formula of that item of the sheet\n"
         "  expand FILE        the macro processor's output for a text data sheet\n"
         "  filter SHEET FILTER [-o OUT] [--date YYYY-MM-DD] [--short-date PATTERN]\n"
         "         [--clipboard FORMAT]\n"
         "                     run a filter (a path, or a name in the data directory) over\n"
         "                     a sheet; its output, byte for byte, to stdout or OUT; its\n"
         "                     questions (@gettext) answered from --answers; --date and\n"
         "                     --short-date fix today's date and the short date pattern;\n"
         "                     --clipboard gives what Copy Through Filter puts on the\n"
         "                     clipboard as FORMAT (Text, \"Rich Text Format\", \"HTML\n"
         "                     Format\" or the filter's own)\n"
         "  load-data NAME...  load data sheets (a path, or a short name in the data\n"
         "                     directory) into their game systems and print them as JSON:\n"
         "                     categories with item counts, options, strings, definitions\n"
         "  offer SHEET LIST [--category CAT] [--rules SET]\n"
         "                     the items Select Item offers the sheet's list, one a line,\n"
         "                     members of groups indented; the sheet's rule sets apply\n"
         "                     when the preference ApplyRules is on, --rules SET applies\n"
         "                     those sets (\"set\" or \"file:set\", joined by ';') instead\n"
         "  recalc FILE [-o OUT]\n"
         "                     open a sheet or template, recalculate every item and list\n"
         "                     total, and save it in place (the old file becomes its .bak)\n"
         "                     or to OUT, in the form it was read in\n"
         "  add SHEET LIST ITEM [--category CAT] [--level L] [-o OUT]\n"
         "                     take ITEM from the loaded data sheets (the list's category,\n"
         "                     or CAT), add a copy to the end of LIST as the program does,\n"
         "                     with the items it brings automatically (questions answered\n"
         "                     from --answers), and save in place or to OUT; a template\n"
         "                     saved to a .chr becomes a new character sheet\n"
         "  delete SHEET LIST ITEM [-o OUT]\n"
         "                     delete the first element named ITEM from LIST with the items\n"
         "                     it added automatically, and save in place or to OUT\n"
         "  requirements SHEET each item with requirements: whether they hold, and each\n"
         "                     requirement's line marked [x] (holds) or [ ] (doesn't)\n"
         "  script SCRIPT [SHEET...]\n"
         "                     run the script SCRIPT (a .scp, .cnv or .script file named\n"
         "                     by its bare name in the data directory) on each sheet in\n"
         "                     turn, questions answered from --answers; a sheet the run\n"
         "                     changed is saved in place (the old file becomes its .bak)\n"
         "                     only when the run reached the end of the script; with no\n"
         "                     sheet it runs on an empty sheet of its game system; exit\n"
         "                     status 0 only when every run reached the end\n"
         "  roll DICE          the die roller's result for a dice text such as 3d6+2,\n"
         "                     3:4d6, 5c100, 5p52 or 6*3d6 (blanks are ignored)\n"
         "\n"
         "Options:\n"
         "  --data-dir DIR     where game system data are found (default: the setting\n"
         "                     \"Source Directory\")\n"
         "  --settings FILE    read settings from this INI file\n"
         "  --answers FILE     answers to the questions the program asks, one per line\n"
         "                     (a button name such as Yes or Cancel, or a value)\n"
         "  --seed N           seed of the random generator\n"
         "  --help             this text\n"
         "\n"
         "Messages appear on stderr as one line each: [Title] text.\n"
         "Exit status: 0 done, 1 the operation failed, 2 bad usage.\n";
}

int run(const std::vector<std::string>& arguments) {
  std::vector<std::string> args = arguments;
  GlobalOptions options;
  std::string error;
  if (!parseGlobalOptions(args, options, error)) {
    std::cerr << "zarvelin-cli: " << error << "\n\n" << helpText();
    return 2;
  }
  if (options.help) {
    std::cout << helpText();
    return 0;
  }
  if (args.empty()) {
    std::cerr << helpText();
    return 2;
  }
  const std::string command = args.front();
  args.erase(args.begin());
  for (const CommandEntry& entry : kCommands) {
    if (command == entry.name) {
      Context context(options);
      if (!context.ready()) return 1;
      return entry.run(context, args);
    }
  }
  std::cerr << "zarvelin-cli: unknown command '" << command << "'\n\n" << helpText();
  return 2;
}

}  // namespace zv::cli
