#include "filter/run/filter_runner.h"

#include "core/messages.h"
#include "expr/compiler.h"
#include "expr/expr_error.h"
#include "expr/item_fields.h"
#include "filter/file/filter_messages.h"
#include "filter/file/format_commands.h"
#include "filter/file/translation.h"
#include "filter/run/filter_run.h"

namespace zv {

namespace {

bool isNameChar(char c) {
  const unsigned char u = static_cast<unsigned char>(c);
  return isLetterChar(u) || (u >= '0' && u <= '9') || u == '_';
}

/// The text without its line end.
std::string_view withoutLineEnd(std::string_view text) {
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
    text.remove_suffix(1);
  return text;
}

std::string_view skipBlanks(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
    text.remove_prefix(1);
  return text;
}

bool isCloser(std::string_view word) {
  static constexpr std::string_view kClosers[] = {
      "endfor", "endforeach", "endoptions", "endwhile", "endif", "end", "elseif", "else", "endsub"};
  for (std::string_view closer : kClosers) {
    if (word == closer) return true;
  }
  return false;
}

}  // namespace

std::string quoteDialogReferences(std::string_view text) {
  std::string out;
  out.reserve(text.size() + 8);
  std::size_t i = 0;
  while (i < text.size()) {
    const char c = text[i];
    if (c == '"' || c == '\'') {
      const std::size_t close = text.find(c, i + 1);
      const std::size_t end = close == std::string_view::npos ? text.size() : close + 1;
      out.append(text.substr(i, end - i));
      i = end;
      continue;
    }
    if (c == '@' && (i == 0 || !isNameChar(text[i - 1]))) {
      std::size_t first = i + 1;
      while (first < text.size() && isNameChar(text[first]))
        ++first;
      if (first > i + 1 && first + 1 < text.size() && text[first] == '.' &&
          isNameChar(text[first + 1]) && !(text[first + 1] >= '0' && text[first + 1] <= '9')) {
        std::size_t second = first + 1;
        while (second < text.size() && isNameChar(text[second]))
          ++second;
        out += "@`";
        out.append(text.substr(i + 1, second - i - 1));
        out += '`';
        i = second;
        continue;
      }
    }
    out += c;
    ++i;
  }
  return out;
}

FilterRunner::FilterRunner(FileInfo& sheet, std::string_view body, int headerLines,
                           const FilterRunOptions& options, FilterContext& context,
                           const FilterDocument* document)
    : sheet_(sheet), body_(body), headerLines_(headerLines), options_(options), context_(context) {
  sheetSettings_.blankSheet = options.blankSheet;
  sheetSettings_.pageNumber = options.pageNumber;
  sheetSettings_.shortDatePattern = context.shortDatePattern;
  if (sheet.symbols) {
    table_ = sheet.symbols.get();
  } else {
    ownTable_ = std::make_unique<SymbolTable>();
    ownTable_->owner = &sheet;
    table_ = ownTable_.get();
  }
  locals_.push_back(std::make_unique<SymbolTable>());
  if (document != nullptr) {
    // The chain is newest first; the newest entry of a character wins.
    for (auto it = document->translations.rbegin(); it != document->translations.rend(); ++it) {
      if (!translations_[it->code]) ++translationCount_;
      translations_[it->code] = it->text;
    }
  }
}

FilterRunner::~FilterRunner() = default;

bool FilterRunner::fail(std::string_view message) {
  reportFilterError(message, lineNumber());
  return false;
}

bool FilterRunner::failAt(std::string_view message, int line) {
  reportFilterError(message, line);
  return false;
}

bool FilterRunner::failTitled(std::string_view title, std::string_view message) {
  showTitled(Severity::Error, title, message);
  return false;
}

std::optional<std::string> FilterRunner::run() {
  savedContextItem_ = currentContextItem();
  savedContextOption_ = currentContextOption();
  if (Symbol* old = table_->findHere("outputFileName"); old != nullptr) deleteSymbol(*table_, *old);
  installResolver();
  BlockEnd end;
  {
    // Outside @foreach no item is current, whatever the caller had.
    ItemContextScope context(&sheet_, *table_);
    setCurrentItem(nullptr, nullptr);
    end = runBlock({});
  }
  table_->setResolver(std::move(savedResolver_));
  setCurrentItem(savedContextItem_, savedContextOption_);
  if (end.outcome == Outcome::Failed) return std::nullopt;
  if (end.outcome == Outcome::Exited) return std::string();
  if (outputOff_ && !context_.outputSuppressedShown) {
    context_.outputSuppressedShown = true;
    showTitled(Severity::Warning, "Output Suppressed",
               "The output was suppressed when this filter ended.\r\n\r\nThis probably means "
               "that there is an error in the filter: an @output off appeared, but no @output on "
               "appeared to turn output back on.");
  }
  return streams_.join();
}

FilterRunner::ReadResult FilterRunner::readLine(std::string& line) {
  for (;;) {
    if (position_.offset >= body_.size()) return ReadResult::End;
    std::size_t end = body_.find('\n', position_.offset);
    end = end == std::string_view::npos ? body_.size() : end + 1;
    std::string_view text = body_.substr(position_.offset, end - position_.offset);
    position_.offset = end;
    ++position_.lines;
    if (text.size() >= kMaxFilterLine) {
      fail(strprintf("Filter line too long. Maximum line length is %d.",
                     static_cast<int>(kMaxFilterLine)));
      return ReadResult::Error;
    }
    if (!text.empty() && text.front() == '#') continue;
    const std::size_t hash = text.find('#');
    if (hash != std::string_view::npos && !(hash > 0 && text[hash - 1] == '\\')) {
      text = text.substr(0, hash);
    }
    line.assign(text);
    return ReadResult::Line;
  }
}

FilterRunner::BlockEnd FilterRunner::runBlock(std::initializer_list<std::string_view> closers) {
  BlockEnd end;
  if (nesting_ >= kMaxFilterNesting) {
    fail("Filter blocks are nested too deeply.");
    end.outcome = Outcome::Failed;
    return end;
  }
  ++nesting_;
  std::string line;
  for (;;) {
    ReadResult read = readLine(line);
    if (read == ReadResult::End) {
      end.endOfText = true;
      break;
    }
    if (read == ReadResult::Error) {
      end.outcome = Outcome::Failed;
      break;
    }
    BlockEnd closer;
    Outcome outcome = runLine(line, closer);
    if (outcome != Outcome::Ok) {
      end.outcome = outcome;
      break;
    }
    if (closer.closer.empty()) continue;
    bool expected = false;
    for (std::string_view word : closers)
      expected = expected || word == closer.closer;
    if (!expected) {
      if (closer.closer == "endsub") {
        fail("@endsub encountered outside subroutine definition.");
      } else {
        fail(strprintf("Bad filter command: %s", closer.closer));
      }
      end.outcome = Outcome::Failed;
      break;
    }
    end = std::move(closer);
    break;
  }
  --nesting_;
  return end;
}

FilterRunner::Outcome FilterRunner::runLine(std::string_view line, BlockEnd& closer) {
  std::string_view content = skipBlanks(line);
  if (!content.empty() && content.front() == '@') return runCommand(content, closer);
  return emitText(line);
}

FilterRunner::Outcome FilterRunner::runCommand(std::string_view line, BlockEnd& closer) {
  std::string_view rest = line.substr(1);
  std::size_t length = 0;
  while (length < rest.size() && isNameChar(rest[length]))
    ++length;
  const std::string_view word = rest.substr(0, length);
  const std::string_view after = rest.substr(length);
  const std::string_view args = skipBlanks(withoutLineEnd(after));

  if (const int header = findFormatCommand(word); header != kFormatNone) {
    if (header == kFormatTrans) {
      std::string_view raw = withoutLineEnd(after);
      if (!raw.empty() && (raw.front() == ' ' || raw.front() == '\t')) raw.remove_prefix(1);
      if (auto entry = parseTranslation(raw)) {
        if (!translations_[entry->code]) ++translationCount_;
        translations_[entry->code] = std::move(entry->text);
      }
      return Outcome::Ok;
    }
    if (options_.headerWords == HeaderWordsInBody::Silent) return Outcome::Ok;
    return emitText(skipBlanks(after));
  }

  const std::string lower = toLower(word);
  if (isCloser(lower)) {
    closer.closer = lower;
    closer.rest = std::string(args);
    closer.line = lineNumber();
    return Outcome::Ok;
  }
  if (lower == "if") return runIf(args);
  if (lower == "while") return runWhile(args);
  if (lower == "for") return runFor(args);
  if (lower == "foreach") return runForeach(withoutLineEnd(after));
  if (lower == "options") return runOptions(withoutLineEnd(after));
  if (lower == "array") return runArray(args);
  if (lower == "assign") return runAssign(args);
  if (lower == "call") {
    const std::size_t open = args.find('(');
    if (open == std::string_view::npos) {
      fail("Missing ) in subroutine call.");
      return Outcome::Failed;
    }
    return callSubroutine(trim(args.substr(0, open)), args.substr(open + 1));
  }
  if (lower == "dest") {
    streams_.select(trim(args), StreamKind::Body);
    return Outcome::Ok;
  }
  if (lower == "header" || lower == "footer") {
    streams_.select(trim(args), lower == "header" ? StreamKind::Header : StreamKind::Footer)
        .text.clear();
    return Outcome::Ok;
  }
  if (lower == "exit") return Outcome::Exited;
  if (lower == "fail") {
    failTitled("Copy Filter Error", trim(args));
    return Outcome::Failed;
  }
  if (lower == "gettext") return runGetText(args);
  if (lower == "message") return runMessage(args);
  if (lower == "output") return runOutput(after);
  if (lower == "translate") return runTranslate(args);
  if (lower == "var") return runVar(args);
  if (lower == "writepicture") return runWritePicture(args);
  if (lower == "sub") return defineSubroutine(args);

  const std::string_view behind = skipBlanks(after);
  if (!word.empty() && !behind.empty() && behind.front() == '=') {
    return runAssign(withoutLineEnd(rest));
  }
  if (!word.empty() && !after.empty() && after.front() == '(') {
    return callSubroutine(word, withoutLineEnd(after.substr(1)));
  }
  fail(strprintf("Bad filter command: %s", word.empty() ? withoutLineEnd(rest) : word));
  return Outcome::Failed;
}

void FilterRunner::write(std::string_view text) {
  if (outputOff_) return;
  streams_.current().text += text;
}

void FilterRunner::writeTranslated(std::string_view text) {
  if (!translateOn_ || translationCount_ == 0) {
    write(text);
    return;
  }
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    const auto& entry = translations_[static_cast<unsigned char>(c)];
    if (entry) {
      out += *entry;
    } else {
      out += c;
    }
  }
  write(out);
}

bool FilterRunner::evaluate(std::string_view text, Value& out) {
  const std::string expression = quoteDialogReferences(text);
  return parseExpInContext(table_, currentItem_, currentOption_, expression, out) == 0;
}

bool FilterRunner::truth(std::string_view text, bool& out) {
  Value value;
  if (!evaluate(text, value)) return false;
  if (value.isString()) {
    out = !value.text().empty();
  } else if (value.isFloat()) {
    out = static_cast<long long>(value.real()) != 0;
  } else {
    out = integerOf(value) != 0;
  }
  return true;
}

FilterRunner::Outcome FilterRunner::emitText(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size()) {
    const char c = text[i];
    if (c == '\\') {
      if (i + 1 >= text.size()) break;
      const char next = text[i + 1];
      if (next == '\r') {
        i += 2;
        if (i < text.size() && text[i] == '\n') ++i;
        continue;
      }
      if (next == '\n') {  // a backslash before a bare LF joins lines as well
        i += 2;
        continue;
      }
      if (next == 'n') {
        write("\r\n");
      } else {
        write(text.substr(i + 1, 1));
      }
      i += 2;
      continue;
    }
    if (c == '%') {
      std::size_t j = i + 1;
      while (j < text.size() && text[j] != '%')
        j += text[j] == '\\' && j + 1 < text.size() ? 2 : 1;
      if (j >= text.size()) {
        fail("Missing % in filter");
        return Outcome::Failed;
      }
      if (!emitField(text.substr(i + 1, j - i - 1))) return Outcome::Failed;
      i = j + 1;
      continue;
    }
    if (c == '?') {
      if (Outcome outcome = emitConditional(text, i); outcome != Outcome::Ok) return outcome;
      continue;
    }
    std::size_t plain = i + 1;
    while (plain < text.size() && text[plain] != '\\' && text[plain] != '%' && text[plain] != '?') {
      ++plain;
    }
    write(text.substr(i, plain - i));
    i = plain;
  }
  return Outcome::Ok;
}

FilterRunner::Outcome FilterRunner::emitConditional(std::string_view text, std::size_t& pos) {
  std::size_t marks[4] = {pos, 0, 0, 0};
  for (int k = 1; k < 4; ++k) {
    marks[k] = text.find('?', marks[k - 1] + 1);
    if (marks[k] == std::string_view::npos) {
      fail("Missing ? in filter conditional.");
      return Outcome::Failed;
    }
  }
  const std::string_view condition = text.substr(marks[0] + 1, marks[1] - marks[0] - 1);
  bool on = false;
  if (!truth(condition, on)) {
    fail(strprintf("Bad expression or missing %%: %s\r\n\r\n%s", condition, expressionErrorText()));
    return Outcome::Failed;
  }
  const std::string_view part = on ? text.substr(marks[1] + 1, marks[2] - marks[1] - 1)
                                   : text.substr(marks[2] + 1, marks[3] - marks[2] - 1);
  pos = marks[3] + 1;
  if (nesting_ >= kMaxFilterNesting) {
    fail("Filter blocks are nested too deeply.");
    return Outcome::Failed;
  }
  ++nesting_;
  BlockEnd closer;
  Outcome outcome = runLine(part, closer);
  --nesting_;
  if (outcome == Outcome::Ok && !closer.closer.empty()) {
    fail(strprintf("Bad filter command: %s", closer.closer));
    return Outcome::Failed;
  }
  return outcome;
}

bool FilterRunner::emitField(std::string_view raw) {
  if (options_.blankSheet) return true;
  std::string name;
  for (std::size_t i = 0; i < raw.size(); ++i) {
    if (raw[i] == '\\' && i + 1 < raw.size()) {
      const char next = raw[++i];
      name += next == 'n' ? '\n' : next == 'r' ? '\r' : next;
    } else {
      name += raw[i];
    }
  }
  if (name.size() > kMaxFieldText) return fail("Name overflow in filter");
  if (name.empty() || name.front() != '@') {
    Value value;
    if (!evaluate(name, value)) {
      return fail(
          strprintf("Bad expression or missing %%: %s\r\n\r\n%s", name, expressionErrorText()));
    }
    writeTranslated(valueToText(value));
    return true;
  }
  std::string_view word = std::string_view(name).substr(1);
  if (!word.empty() && word.front() == '`') {
    const std::size_t close = word.find('`', 1);
    const std::string_view inner =
        word.substr(1, close == std::string_view::npos ? std::string_view::npos : close - 1);
    if (inner.size() > kMaxQuotedFieldName) return fail("Buffer overflow in filter");
    word = inner;
  } else if (const std::size_t dot = word.find('.'); dot != std::string_view::npos) {
    const std::string_view dialog = word.substr(0, dot);
    const std::string_view fieldName = word.substr(dot + 1);
    DlgItem* field = findDialogField(sheet_, dialog, fieldName);
    if (field == nullptr) {
      return fail(strprintf("Can't find dialog field %s in %s", fieldName, dialog));
    }
    writeTranslated(dialogFieldText(sheet_, *field));
    return true;
  }
  if (currentItem_ != nullptr) {
    std::string text;
    switch (itemFieldText(*currentItem_, word, text)) {
      case FieldStatus::Text:
        writeTranslated(text);
        return true;
      case FieldStatus::Failed:
        return false;
      case FieldStatus::NoSuchField:
        break;
    }
  }
  std::string text;
  if (!sheetWordText(word, text)) return false;
  writeTranslated(text);
  return true;
}

std::optional<std::string> runFilterText(FileInfo& sheet, std::string_view text, int headerLines,
                                         const FilterRunOptions& options, FilterContext& context,
                                         const FilterDocument* document) {
  FilterRunner runner(sheet, text, headerLines, options, context, document);
  return runner.run();
}

std::optional<std::string> runFilterBody(FileInfo& sheet, FilterDocument& document,
                                         const FilterRunOptions& options, FilterContext& context) {
  std::optional<std::string> output =
      runFilterText(sheet, document.body, document.headerLines, options, context, &document);
  if (output) document.outputLength = static_cast<std::int32_t>(output->size());
  return output;
}

}  // namespace zv
