// Subroutines of a filter run: @sub ... @endsub defines one where it is passed, @call name(args)
// or @name(args) runs its body with the arguments in a table of their own.

#include "core/strfmt.h"
#include "expr/expr_error.h"
#include "filter/file/format_commands.h"
#include "filter/run/filter_runner.h"
#include "script/reader/script_reader.h"

namespace zv {

namespace {

/// The words of the body commands; none may name a subroutine.
bool isCommandWord(std::string_view word) {
  static constexpr std::string_view kWords[] = {
      "array",    "assign",    "call",       "dest",    "else",        "elseif",
      "end",      "endfor",    "endforeach", "endif",   "endoptions",  "endsub",
      "endwhile", "exit",      "fail",       "footer",  "for",         "foreach",
      "gettext",  "header",    "if",         "message", "options",     "output",
      "sub",      "translate", "var",        "while",   "writepicture"};
  for (std::string_view w : kWords) {
    if (equalsIgnoringCase(w, word)) return true;
  }
  return findFormatCommand(word) != kFormatNone;
}

std::string_view trimmedView(std::string_view text) {
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == ' ' ||
                           text.back() == '\t')) {
    text.remove_suffix(1);
  }
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
    text.remove_prefix(1);
  return text;
}

}  // namespace

FilterRunner::Outcome FilterRunner::defineSubroutine(std::string_view text) {
  text = trimmedView(text);
  const std::size_t open = text.find('(');
  const std::string name(trimmedView(text.substr(0, open)));
  if (name.empty()) {
    fail("Empty subroutine name found.");
    return Outcome::Failed;
  }
  if (isCommandWord(name)) {
    fail(strprintf("The name %s cannot be used for a subroutine.", name));
    return Outcome::Failed;
  }
  if (subroutines_.count(name) != 0) {
    fail(strprintf("Filter Subroutine %s is already defined.", name));
    return Outcome::Failed;
  }
  Subroutine sub;
  sub.name = name;
  if (open != std::string_view::npos) {
    const std::size_t close = text.find(')', open);
    if (close == std::string_view::npos) {
      fail(strprintf("Missing ')' in @sub definition for %s", name));
      return Outcome::Failed;
    }
    const std::string_view list = trimmedView(text.substr(open + 1, close - open - 1));
    if (!list.empty()) {
      for (const std::string& piece : split(list, ',')) {
        std::string parameter = trim(piece);
        if (parameter.empty()) {
          fail(strprintf("Empty argument names not allowed in @sub definition: %s", name));
          return Outcome::Failed;
        }
        for (const std::string& other : sub.parameters) {
          if (equalsIgnoringCase(other, parameter)) {
            fail(strprintf("Duplicate argument name %s on subroutine %s", parameter, name));
            return Outcome::Failed;
          }
        }
        sub.parameters.push_back(std::move(parameter));
      }
    }
  }
  sub.body = position_;
  sub.startLine = lineNumber();
  // The body is passed over up to its @endsub.
  std::string line;
  for (;;) {
    ReadResult read = readLine(line);
    if (read == ReadResult::Error) return Outcome::Failed;
    if (read == ReadResult::End) {
      fail(strprintf("Missing endsub for %s", name));
      return Outcome::Failed;
    }
    std::string_view content = trimmedView(line);
    if (content.empty() || content.front() != '@') continue;
    std::size_t length = 1;
    while (length < content.size() && content[length] != ' ' && content[length] != '\t' &&
           content[length] != '(') {
      ++length;
    }
    const std::string_view word = content.substr(1, length - 1);
    if (equalsIgnoringCase(word, "sub")) {
      fail(strprintf("@sub found before @endsub in %s. Probably missing @endsub for %s.", name,
                     name));
      return Outcome::Failed;
    }
    if (equalsIgnoringCase(word, "endsub")) {
      const std::string_view endName = trimmedView(content.substr(length));
      if (!endName.empty() && !equalsIgnoringCase(endName, name)) {
        fail(strprintf("The name on @endsub (%s) does not match the current subroutine (%s)",
                       endName, name));
        return Outcome::Failed;
      }
      break;
    }
  }
  subroutines_.emplace(name, std::move(sub));
  return Outcome::Ok;
}

FilterRunner::Outcome FilterRunner::callSubroutine(std::string_view name,
                                                   std::string_view arguments) {
  auto found = subroutines_.find(std::string(name));
  if (found == subroutines_.end()) {
    fail(strprintf("Filter subroutine %s is not defined.", name));
    return Outcome::Failed;
  }
  Subroutine& sub = found->second;
  if (sub.active) {
    fail(strprintf("Subroutine %s called recursively.", sub.name));
    return Outcome::Failed;
  }
  // The arguments are split as the script reader splits a call's: at "," and ")" that stand
  // outside brackets and quotes.
  std::vector<std::string> texts;
  {
    script::ScriptPosition start;
    start.source = script::makeSource(std::string(arguments), "<filter>");
    bool reported = false;
    script::ScriptReader reader(std::move(start), [this, &reported](std::string_view message) {
      reported = true;
      fail(message);
    });
    if (!reader.readCallArguments(texts)) {
      if (!reported) fail("Missing ) in subroutine call.");
      return Outcome::Failed;
    }
  }
  if (texts.size() > sub.parameters.size()) {
    fail(strprintf("Too many parameters found for %s.", sub.name));
    return Outcome::Failed;
  }
  if (texts.size() < sub.parameters.size()) {
    fail(strprintf("Incorrect number of parameters in call to %s.", sub.name));
    return Outcome::Failed;
  }
  auto table = std::make_unique<SymbolTable>();
  for (std::size_t i = 0; i < texts.size(); ++i) {
    Value value;
    if (!evaluate(texts[i], value)) {
      fail(strprintf("Error in argument expression: %s", texts[i]));
      return Outcome::Failed;
    }
    if (table->findHere(sub.parameters[i]) != nullptr) {
      fail(strprintf("Subroutine parameter %s already defined.", sub.parameters[i]));
      return Outcome::Failed;
    }
    Symbol* symbol = defineVariable(*table, sub.parameters[i], "0");
    if (symbol == nullptr || setValue(*table, *symbol, value) != 0) {
      fail(strprintf("Unable to define %s for subroutine %s", sub.parameters[i], sub.name));
      return Outcome::Failed;
    }
  }
  if (nesting_ >= kMaxFilterNesting) {
    fail("Filter blocks are nested too deeply.");
    return Outcome::Failed;
  }
  const Position back = position_;
  locals_.push_back(std::move(table));
  sub.active = true;
  position_ = sub.body;
  BlockEnd end = runBlock({"endsub"});
  sub.active = false;
  locals_.pop_back();
  position_ = back;
  if (end.outcome != Outcome::Ok) return end.outcome;
  if (end.endOfText) {
    failAt(strprintf("Missing endsub for %s", sub.name), sub.startLine);
    return Outcome::Failed;
  }
  return Outcome::Ok;
}

}  // namespace zv
