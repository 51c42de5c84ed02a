// The macro context: its lifecycle, the raw character reader with its priorities, the main loop
// that delivers expanded characters, value lookup and the error box.

#include <new>

#include "core/messages.h"
#include "core/text.h"
#include "formats/macro/macro_context.h"
#include "formats/macro/macro_messages.h"

namespace zv {

namespace {

bool isWordChar(int c, bool underscore) {
  if (c < 0 || c > 255) return false;
  if (c >= '0' && c <= '9') return true;
  if (underscore && c == '_') return true;
  return isLetterChar(static_cast<unsigned char>(c));
}

int asChar(char c) {
  return static_cast<unsigned char>(c);
}

}  // namespace

MacroContext::MacroContext() : evaluator_(standardMacroExpressionEvaluator()) {}

void MacroContext::macroStart(const std::filesystem::path& sourcePath, RawReader rawRead,
                              const std::filesystem::path& dataDir) {
  state_ = State{};
  state_.sourcePath = sourcePath;
  state_.rawRead = std::move(rawRead);
  state_.dataDir = dataDir;
  state_.lineNumber = 1;
  state_.budget = budgetLimit_;
}

void MacroContext::macroStartText(const std::filesystem::path& sourcePath, std::string_view text,
                                  const std::filesystem::path& dataDir) {
  macroStart(sourcePath, nullptr, dataDir);
  state_.baseText = text;
}

void MacroContext::macroClear() {
  state_ = State{};
}

MacroContext::State MacroContext::takeState() {
  State taken = std::move(state_);
  state_ = State{};
  return taken;
}

void MacroContext::restoreState(State state) {
  state_ = std::move(state);
}

// Priority: a pushed-back character, the innermost frame's body (the end of the body ends that
// expansion), the open include file, the base file. Only base file lines are counted.
int MacroContext::rawChar() {
  State& st = state_;
  if (st.pushback != kNoPushback) {
    int c = st.pushback;
    st.pushback = kNoPushback;
    return c;
  }
  if (!st.frames.empty()) {
    Frame& frame = st.frames.back();
    if (frame.cursor >= frame.body.size()) return kEnd;
    if (!spendBudget()) return kEnd;
    return asChar(frame.body[frame.cursor++]);
  }
  while (!st.includeStack.empty()) {
    IncludeFile& include = st.includeStack.back();
    if (include.position < include.data.size()) return asChar(include.data[include.position++]);
    st.includeStack.pop_back();
  }
  int c = kEnd;
  if (st.basePosition < st.baseText.size()) {
    c = asChar(st.baseText[st.basePosition++]);
  } else if (st.rawRead) {
    c = st.rawRead();
  }
  if (c < 0 || c > 255) return kEnd;
  if (c == '\n') ++st.lineNumber;
  return c;
}

bool MacroContext::spendBudget() {
  State& st = state_;
  if (st.budget < 0) return true;
  if (st.budget == 0) {
    st.failed = true;  // a guard, not a user error: the input just ends
    return false;
  }
  --st.budget;
  return true;
}

void MacroContext::pushBack(int c) {
  if (c != kEnd) state_.pushback = c;
}

int MacroContext::takePushback() {
  int c = state_.pushback;
  state_.pushback = kNoPushback;
  return c;
}

int MacroContext::skipBlanks() {
  int c = rawChar();
  while (c == ' ' || c == '\t')
    c = rawChar();
  return c;
}

int MacroContext::skipBlanksAndBreaks() {
  int c = rawChar();
  while (c == ' ' || c == '\t' || c == '\r' || c == '\n')
    c = rawChar();
  return c;
}

std::string MacroContext::readWord(std::size_t limit, bool underscore, int& terminator) {
  std::string word;
  int c = rawChar();
  while (isWordChar(c, underscore) && word.size() < limit) {
    word.push_back(static_cast<char>(c));
    c = rawChar();
  }
  terminator = c;
  pushBack(c);
  return word;
}

bool MacroContext::appendOutput(std::string_view text) {
  if (state_.output.size() + text.size() >= kOutputLimit) {
    macroError(macro_text::kInsufficientMemory);
    return false;
  }
  state_.output.append(text);
  return true;
}

const std::string& MacroContext::currentName() const {
  static const std::string mainFile = macro_text::kMainFile;
  return state_.frames.empty() ? mainFile : state_.frames.back().macroName;
}

void MacroContext::premature(std::string_view name) {
  macroErrorf(macro_text::kPrematureEnd, std::string(name), state_.lineNumber);
}

const MacroDef* MacroContext::macroFind(std::string_view name) const {
  for (const MacroDef& def : state_.macros) {
    if (equalsIgnoringCase(def.name, name)) return &def;
  }
  return nullptr;
}

const MacroArgType* MacroContext::findArgType(std::string_view name) const {
  for (const MacroArgType& type : state_.argTypes) {
    if (equalsIgnoringCase(type.name, name)) return &type;
  }
  return nullptr;
}

const MacroDefine* MacroContext::findDefine(std::string_view name) const {
  for (auto it = state_.defines.rbegin(); it != state_.defines.rend(); ++it) {
    if (equalsIgnoringCase(it->name, name)) return &*it;
  }
  return nullptr;
}

void MacroContext::setDefine(std::string_view name, std::string_view value) {
  std::string_view kept = name.substr(0, kMaxNameLength);
  for (MacroDefine& define : state_.defines) {
    if (equalsIgnoringCase(define.name, kept)) {
      define.value = std::string(value);
      return;
    }
  }
  state_.defines.push_back(MacroDefine{std::string(kept), std::string(value)});
}

// The arguments of the innermost frame; a $$repeat frame above the bottom passes on to the frames
// below it; then the defines.
std::optional<std::string> MacroContext::lookupValue(std::string_view name) const {
  const auto& frames = state_.frames;
  for (std::size_t i = frames.size(); i-- > 0;) {
    const Frame& frame = frames[i];
    for (std::size_t k = 0; k < frame.argNames.size(); ++k) {
      if (equalsIgnoringCase(frame.argNames[k], name)) return frame.args[k];
    }
    if (!frame.passThrough || i == 0) break;
  }
  if (const MacroDefine* define = findDefine(name)) return define->value;
  return std::nullopt;
}

MacroNameLookup MacroContext::nameLookup() const {
  return [this](std::string_view name) { return lookupValue(name); };
}

std::optional<Value> MacroContext::evaluate(std::string_view expression) const {
  if (!evaluator_) return std::nullopt;
  return evaluator_(expression, nameLookup());
}

void MacroContext::macroError(std::string_view text) {
  if (state_.failed) return;  // one box per failure
  state_.failed = true;
  std::string shown(text);
  shown += strprintf(macro_text::kAtLine, state_.lineNumber);
  showTitled(Severity::Error, macro_text::kTitle, shown);
}

int MacroContext::macroNextChar() {
  State& st = state_;
  TokenLineState& lines = tokenLineState();
  if (lines.macroInput) lines.lineNumber = st.lineNumber;
  try {
    for (;;) {
      if (st.failed) {
        st.output.clear();
        st.outputCursor = 0;
        st.pending.clear();
        st.pendingPos = 0;
        return kEndOfFile;
      }
      if (st.pendingPos < st.pending.size()) return asChar(st.pending[st.pendingPos++]);
      if (st.outputCursor < st.output.size()) return asChar(st.output[st.outputCursor++]);
      if (!st.output.empty()) {
        st.output.clear();
        st.outputCursor = 0;
      }
      if (!st.pending.empty()) {
        st.pending.clear();
        st.pendingPos = 0;
      }

      int c = rawChar();
      if (c == kEnd) {
        if (st.failed) continue;
        return kEndOfFile;
      }
      if (st.dropLineBreaks) {
        if (c == '\r' || c == '\n') continue;
        st.dropLineBreaks = false;
      }
      if (c != '$') return c;
      int next = rawChar();
      if (next == '$') {
        runDirective(nullptr);
      } else if (next == '(') {
        runReference(nullptr);
      } else {
        if (next != kEnd) st.pending.push_back(static_cast<char>(next));
        return '$';
      }
    }
  } catch (const std::bad_alloc&) {
    macroError(macro_text::kInsufficientMemory);
    st.frames.clear();
    st.pushback = kNoPushback;
    st.output.clear();
    st.outputCursor = 0;
    return kEndOfFile;
  }
}

MacroContext& macroContext() {
  static MacroContext context;
  return context;
}

MacroContextScope::MacroContextScope()
    : saved_(macroContext().takeState()), savedLines_(tokenLineState()) {}

MacroContextScope::~MacroContextScope() {
  macroContext().restoreState(std::move(saved_));
  tokenLineState() = savedLines_;
}

}  // namespace zv
