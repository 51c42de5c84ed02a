// The single-line commands of a filter run: assignments and definitions, @gettext, @message,
// @output, @translate and @writepicture.

#include <fstream>

#include "core/messages.h"
#include "core/numbers.h"
#include "expr/expr_error.h"
#include "filter/run/filter_runner.h"
#include "filter/run/picture_output.h"

namespace zv {

namespace {

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

Symbol* FilterRunner::findVariable(std::string_view name) {
  for (auto it = locals_.rbegin(); it != locals_.rend(); ++it) {
    if (Symbol* symbol = (*it)->findHere(name); symbol != nullptr && !symbol->undefined()) {
      return symbol;
    }
  }
  Symbol* symbol = table_->find(name);
  return symbol != nullptr && !symbol->undefined() ? symbol : nullptr;
}

bool FilterRunner::store(std::string_view name, const Value& value, bool& defined) {
  defined = false;
  Symbol* symbol = findVariable(name);
  if (symbol == nullptr) {
    symbol = defineVariable(*table_, name, "0");
    if (symbol == nullptr) return false;
    defined = true;
  }
  if (!symbol->isVariable()) return false;
  return setValue(*symbol->table, *symbol, value) == 0;
}

FilterRunner::Outcome FilterRunner::runAssign(std::string_view text) {
  const std::size_t equals = text.find('=');
  const std::string name(
      trimmedView(text.substr(0, equals == std::string_view::npos ? 0 : equals)));
  if (equals == std::string_view::npos || name.empty()) {
    fail("Missing '=' or variable in filter assignment");
    return Outcome::Failed;
  }
  const std::string expression(trimmedView(text.substr(equals + 1)));
  Value value;
  if (!evaluate(expression, value)) {
    fail(strprintf("Error setting %s to %s", name, expression));
    return Outcome::Failed;
  }
  Symbol* symbol = findVariable(name);
  if (symbol == nullptr) {
    symbol = defineVariable(*table_, name, "0");
    if (symbol == nullptr) {
      fail(strprintf("Error defining %s=%s", name, expression));
      return Outcome::Failed;
    }
  }
  if (!symbol->isVariable() || setValue(*symbol->table, *symbol, value) != 0) {
    fail(strprintf("Error setting %s to %s", name, expression));
    return Outcome::Failed;
  }
  return Outcome::Ok;
}

FilterRunner::Outcome FilterRunner::runVar(std::string_view text) {
  text = trimmedView(text);
  SymbolTable& innermost = *locals_.back();
  const std::size_t mark = text.find_first_of(",=[");
  if (mark != std::string_view::npos && text[mark] == '[') {
    // A local array: "name[n] = values".
    const std::size_t equals = text.find('=');
    const std::string header(trimmedView(text.substr(0, equals)));
    const std::string values(
        equals == std::string_view::npos ? "" : trimmedView(text.substr(equals + 1)));
    if (defineArray(innermost, header, values) == nullptr) {
      fail(strprintf("%s is not a variable and cannot be defined.", header));
      return Outcome::Failed;
    }
    return Outcome::Ok;
  }
  // "name" or "name = expression", separated by commas outside brackets and quotes.
  std::vector<std::pair<std::string, std::string>> definitions;
  auto add = [&definitions](std::string_view piece) {
    const std::size_t equals = piece.find('=');
    if (equals == std::string_view::npos) {
      definitions.emplace_back(trimmedView(piece), "0");
    } else {
      definitions.emplace_back(trimmedView(piece.substr(0, equals)),
                               trimmedView(piece.substr(equals + 1)));
    }
  };
  int depth = 0;
  char quote = 0;
  std::size_t start = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '(' || c == '[') {
      ++depth;
    } else if ((c == ')' || c == ']') && depth > 0) {
      --depth;
    } else if (c == ',' && depth == 0) {
      add(text.substr(start, i - start));
      start = i + 1;
    }
  }
  add(text.substr(start));
  for (const auto& [name, expression] : definitions) {
    if (name.empty()) continue;
    Value value;
    if (!evaluate(expression, value)) {
      fail(strprintf("Error setting %s to %s", name, expression));
      return Outcome::Failed;
    }
    Symbol* symbol = innermost.findHere(name);
    if (symbol == nullptr || symbol->undefined()) symbol = defineVariable(innermost, name, "0");
    if (symbol == nullptr || !symbol->isVariable()) {
      fail(strprintf("%s is not a variable and cannot be defined.", name));
      return Outcome::Failed;
    }
    if (setValue(innermost, *symbol, value) != 0) {
      fail(strprintf("Error setting %s to %s", name, expression));
      return Outcome::Failed;
    }
  }
  return Outcome::Ok;
}

FilterRunner::Outcome FilterRunner::runArray(std::string_view text) {
  text = trimmedView(text);
  const std::size_t bracket = text.find('[');
  const std::size_t equals = text.find('=');
  if (bracket == std::string_view::npos || (equals != std::string_view::npos && equals < bracket)) {
    fail("Missing '[' in array definition");
    return Outcome::Failed;
  }
  const std::string name(trimmedView(text.substr(0, bracket)));
  const std::string header(trimmedView(text.substr(0, equals)));
  std::string values(equals == std::string_view::npos ? "" : trimmedView(text.substr(equals + 1)));
  // The values may stand as one quoted text, as in scripts.
  if (values.size() >= 2 && values.front() == '"' && values.back() == '"') {
    values = values.substr(1, values.size() - 2);
  }
  if (Symbol* existing = table_->findHere(name);
      existing != nullptr && !existing->undefined() && !existing->isArray()) {
    fail(strprintf("Array %s is already defined as something else", name));
    return Outcome::Failed;
  }
  if (defineArray(*table_, header, values) == nullptr) {
    fail(strprintf("Error defining array: %s", expressionErrorText()));
    return Outcome::Failed;
  }
  return Outcome::Ok;
}

FilterRunner::Outcome FilterRunner::runGetText(std::string_view text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) {
    fail("Missing , in @gettext command.");
    return Outcome::Failed;
  }
  const std::string name(trimmedView(text.substr(0, comma)));
  const std::string prompt(trimmedView(text.substr(comma + 1)));
  Symbol* symbol = findVariable(name);
  const std::string initial =
      symbol != nullptr && symbol->isVariable() ? valueToText(symbol->value) : "";
  std::optional<std::string> answer = host().enterValue("Filter Input", prompt, initial);
  if (!answer) return Outcome::Failed;  // Cancel stops the filter
  bool defined = false;
  if (!store(name, Value(*answer), defined)) {
    fail(strprintf("Unable to define %s, or it is already defined as an array.", name));
    return Outcome::Failed;
  }
  return Outcome::Ok;
}

FilterRunner::Outcome FilterRunner::runMessage(std::string_view text) {
  const std::string expression(trimmedView(text));
  Value value;
  if (evaluate(expression, value) && value.isString()) {
    showTitled(Severity::Message, "Note", value.text());
  } else {
    showTitled(Severity::Message, "Note", expression);
  }
  return Outcome::Ok;
}

FilterRunner::Outcome FilterRunner::runOutput(std::string_view rest) {
  const std::string_view word = trimmedView(rest);
  if (equalsIgnoringCase(word, "on")) {
    outputOff_ = false;
    return Outcome::Ok;
  }
  if (equalsIgnoringCase(word, "off")) {
    outputOff_ = true;
    return Outcome::Ok;
  }
  // Text written now, whatever the state, as a line without its command word.
  std::string_view text = rest;
  if (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  if (!word.empty() && word.front() == '@') {
    fail("@output may not contain a command.");
    return Outcome::Failed;
  }
  const bool saved = outputOff_;
  outputOff_ = false;
  Outcome outcome = emitText(text);
  outputOff_ = saved;
  return outcome;
}

FilterRunner::Outcome FilterRunner::runTranslate(std::string_view text) {
  const std::string_view word = trimmedView(text);
  if (equalsIgnoringCase(word, "false")) {
    translateOn_ = false;
  } else if (equalsIgnoringCase(word, "true")) {
    translateOn_ = true;
  } else {
    translateOn_ = leadingInteger(word) != 0;
  }
  return Outcome::Ok;
}

FilterRunner::Outcome FilterRunner::runWritePicture(std::string_view text) {
  std::vector<std::string> parts;
  std::size_t from = 0;
  for (int i = 0; i < 3; ++i) {
    const std::size_t comma = text.find(',', from);
    if (comma == std::string_view::npos) {
      parts.emplace_back(trimmedView(text.substr(from)));
      from = text.size() + 1;
      break;
    }
    parts.emplace_back(trimmedView(text.substr(from, comma - from)));
    from = comma + 1;
  }
  std::string fileExpression;
  if (from <= text.size()) fileExpression = std::string(trimmedView(text.substr(from)));
  if (parts.size() < 3 || parts[2].empty()) {
    fail("Error in writepicture command.");
    return Outcome::Failed;
  }
  const std::string& fieldName = parts[0];
  const std::size_t dot = fieldName.find('.');
  DlgItem* field = dot == std::string::npos
                       ? nullptr
                       : findDialogField(sheet_, std::string_view(fieldName).substr(0, dot),
                                         std::string_view(fieldName).substr(dot + 1));
  if (field == nullptr) {
    fail(strprintf("Can't find dialog field %s", fieldName));
    return Outcome::Failed;
  }
  std::string picture;
  std::string problem;
  switch (pictureOfField(sheet_, *field, context_.dataDir, picture)) {
    case PictureSource::Found:
      break;
    case PictureSource::NotAPicture:
      fail(strprintf("Error in writepicture: %s is not a picture.", fieldName));
      return Outcome::Failed;
    case PictureSource::Empty:
      fail(strprintf("Error in writepicture: no picture found in %s.", fieldName));
      return Outcome::Failed;
    case PictureSource::NotAvailable:
      fail(strprintf("Error in writepicture: no picture available for %s.", fieldName));
      return Outcome::Failed;
  }
  const std::string format = toLower(parts[1]);
  if (!isPictureFormat(format)) {
    fail(strprintf("Error in writepicture: Unknown picture format: %s.", parts[1]));
    return Outcome::Failed;
  }
  const std::string mode = toLower(parts[2]);
  if (mode != "binary" && mode != "hex") {
    fail(strprintf("Error in writepicture: Unknown picture type: %s.", parts[2]));
    return Outcome::Failed;
  }
  if (!fileExpression.empty()) {
    Value file;
    if (!evaluate(fileExpression, file)) {
      fail(strprintf("Error in writepicture file name: %s.", fileExpression));
      return Outcome::Failed;
    }
    if (!file.isString()) {
      fail("File name in writepicture must be a string.");
      return Outcome::Failed;
    }
    if (mode == "hex") {
      fail("Error in writepicture: cannot write hex into a file.");
      return Outcome::Failed;
    }
    std::optional<std::string> bytes =
        renderPicture(picture, format, context_.convertPicture, problem);
    bool written = false;
    if (bytes) {
      std::ofstream out(file.text(), std::ios::binary | std::ios::trunc);
      out.write(bytes->data(), static_cast<std::streamsize>(bytes->size()));
      written = static_cast<bool>(out);
      if (!written) problem = "The file can't be written.";
    }
    if (!written) {
      fail(strprintf("Error in writepicture writing %s to %s.\r\n\r\n%s", fieldName, file.text(),
                     problem));
      return Outcome::Failed;
    }
    return Outcome::Ok;
  }
  std::optional<std::string> bytes =
      renderPicture(picture, format, context_.convertPicture, problem);
  if (!bytes) {
    fail(strprintf("Error in writepicture: unable to render %s.\r\n\r\n%s", fieldName, problem));
    return Outcome::Failed;
  }
  if (mode == "hex") {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string hex;
    hex.reserve(bytes->size() * 2);
    for (unsigned char b : *bytes) {
      hex += kDigits[b >> 4];
      hex += kDigits[b & 15];
    }
    write(hex);
  } else {
    write(*bytes);
  }
  return Outcome::Ok;
}

}  // namespace zv
