#pragma once
// The macro processor of text data sheets. It sits between the raw bytes of the file and the
// character reader of the token stream: data sheets for a large game are written once as macro
// definitions and then as short macro calls. Directives begin with "$$", references to values
// are written "$(name)".
//
// All of its state lives in one process-wide MacroContext (macroContext()); a nested data sheet
// load moves the state aside with a MacroContextScope and gets it back at the end.

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/strfmt.h"
#include "core/value.h"
#include "formats/macro/macro_types.h"
#include "formats/tokens/tokenstream.h"

namespace zv {

/// Resolves a name of an expression through the macro's values: its text, or nullopt when the
/// name is not declared.
using MacroNameLookup = std::function<std::optional<std::string>(std::string_view name)>;
/// Evaluates the text of an expression ($$if, $$elseif, $$exp) in a scratch context whose names
/// are resolved by `lookup`. nullopt when the expression is bad.
using MacroExpressionEvaluator =
    std::function<std::optional<Value>(std::string_view expression, const MacroNameLookup& lookup)>;

class MacroContext : public CharSource {
 public:
  /// Reads one raw character of the base file: a byte 0-255, or a negative value at the end.
  using RawReader = std::function<int()>;

  /// One level of the expansion stack.
  struct Frame {
    std::string macroName;
    std::string body;
    std::vector<std::string> argNames;
    std::vector<std::string> args;  ///< one per declared argument; empty when not supplied
    std::size_t cursor = 0;
    /// A $$repeat frame (or a reference expanded inside one): lookup goes on to the frames below.
    bool passThrough = false;
  };

  /// An include file being read, held whole in memory.
  struct IncludeFile {
    std::filesystem::path path;  ///< full path
    std::string data;
    std::size_t position = 0;
  };

  /// Everything that a nested load moves aside. Copyable and movable.
  struct State {
    RawReader rawRead;
    /// The base file when it is held whole in memory; read before `rawRead` is asked.
    std::string_view baseText;
    std::size_t basePosition = 0;
    std::filesystem::path sourcePath;  ///< the file being read, for finding includes
    std::filesystem::path dataDir;     ///< where includes are looked for second
    std::vector<MacroDef> macros;
    std::vector<MacroArgType> argTypes;
    std::vector<MacroDefine> defines;  ///< newest last; names are unique ignoring case
    std::string output;                ///< the expansion being delivered
    std::size_t outputCursor = 0;
    std::string pending;  ///< characters read ahead, delivered first
    std::size_t pendingPos = 0;
    int lineNumber = 0;  ///< line of the base file, for messages
    std::vector<IncludeFile> includeStack;
    std::vector<Frame> frames;
    int pushback = kNoPushback;
    bool dropLineBreaks = false;  ///< the line breaks right after a definition are dropped
    bool failed = false;          ///< a failure was reported: the input ends here
    long budget = -1;             ///< characters of expansion left; -1 unlimited
  };

  static constexpr int kNoPushback = -100;
  static constexpr int kEnd = -1;
  static constexpr std::size_t kMaxDepth = 10;
  static constexpr std::size_t kMaxConditionLevels = 10;
  static constexpr std::size_t kMaxArgs = 30;
  static constexpr std::size_t kMaxNameLength = 31;
  static constexpr std::size_t kMaxReferenceName = 128;
  static constexpr std::size_t kMaxBody = 32000;
  static constexpr std::size_t kOutputLimit = 200000;
  static constexpr std::size_t kMaxDirectiveText = 511;

  MacroContext();

  /// Starts reading a file: the state is cleared, `rawRead` reads the base file, line 1.
  /// Starts reading a base file held whole in memory (it must outlive the reading): the same as
  /// with a byte reader, without a call per character.
  void macroStartText(const std::filesystem::path& sourcePath, std::string_view text,
                      const std::filesystem::path& dataDir = {});
  void macroStart(const std::filesystem::path& sourcePath, RawReader rawRead,
                  const std::filesystem::path& dataDir = {});
  /// Frees macros, defines, argument types, the output and open include files.
  void macroClear();
  /// The next character of the expanded text, or kEndOfFile (-1) at the end or after a reported
  /// failure. Never kNothing: directives that produce nothing are skipped here.
  int macroNextChar();
  int nextChar() override { return macroNextChar(); }
  /// The macro of that name, ignoring case; null when there is none.
  const MacroDef* macroFind(std::string_view name) const;
  /// Shows `text` in a box titled "Macro Error", followed by "\r\n\r\nAt line %d", and fails the
  /// processing: the input ends after the current expansion is given up.
  void macroError(std::string_view text);
  template <typename... Args>
  void macroErrorf(const char* format, const Args&... args) {
    macroError(strprintf(format, args...));
  }

  /// The argument type of that name, ignoring case; null when there is none.
  const MacroArgType* findArgType(std::string_view name) const;
  /// The define of that name, ignoring case; null when there is none.
  const MacroDefine* findDefine(std::string_view name) const;
  /// Sets a define: an existing one (ignoring case) takes the new value. The name is cut to 31
  /// characters.
  void setDefine(std::string_view name, std::string_view value);

  const std::vector<MacroDef>& macros() const { return state_.macros; }
  const std::vector<MacroArgType>& argTypes() const { return state_.argTypes; }
  const std::vector<MacroDefine>& defines() const { return state_.defines; }
  int lineNumber() const { return state_.lineNumber; }
  bool failed() const { return state_.failed; }

  void setExpressionEvaluator(MacroExpressionEvaluator evaluator) {
    evaluator_ = std::move(evaluator);
  }
  /// Limits the characters that expansions may read in all (a guard for fuzzing); when they run
  /// out the input ends without a message. -1 is no limit. Kept across macroStart.
  void setExpansionBudget(long characters) { budgetLimit_ = characters; }

  /// The state, moved out (the context is left cleared) or put back.
  State takeState();
  void restoreState(State state);

 private:
  struct Condition {
    bool active = true;
    bool taken = true;
  };
  /// What a running expansion knows: its name, its condition stack and the quoted state.
  struct Expansion {
    std::string name;
    std::vector<Condition> conditions;
    bool quoted = false;
    bool active() const { return conditions.empty() || conditions.back().active; }
    bool enclosingActive() const {
      return conditions.size() < 2 || conditions[conditions.size() - 2].active;
    }
  };

  // Raw characters and small readers (macro_context.cpp).
  int rawChar();
  void pushBack(int c);
  int takePushback();
  int skipBlanks();           // spaces and tabs; returns the first other character
  int skipBlanksAndBreaks();  // spaces, tabs, CR and LF
  std::string readWord(std::size_t limit, bool underscore, int& terminator);
  bool appendOutput(std::string_view text);
  bool appendOutput(char c) {
    if (state_.output.size() + 1 >= kOutputLimit) return appendOutput(std::string_view(&c, 1));
    state_.output.push_back(c);
    return true;
  }
  bool spendBudget();
  const std::string& currentName() const;
  std::optional<std::string> lookupValue(std::string_view name) const;
  MacroNameLookup nameLookup() const;
  std::optional<Value> evaluate(std::string_view expression) const;
  void premature(std::string_view name);

  // Directives (macro_directives.cpp).
  void runDirective(Expansion* expansion);
  void runDefine(bool active);
  void runInclude(bool active);
  bool openInclude(std::string_view name);

  // Definitions (macro_define.cpp).
  void defineMacro();
  bool readMacroBody(MacroDef& def);
  bool readBodyDirective(MacroDef& def, const std::string& word, bool& handled);
  bool readArgDesc(MacroDef& def);
  bool readMacroDesc(MacroDef& def);
  bool readDescField(std::string_view terminators, std::string& out, int& terminator);

  // Calls and arguments (macro_call.cpp).
  void callMacro(const std::string& word, bool active);
  bool readTabArgs(std::vector<std::string>& args, std::string_view macroName, bool active);
  bool readBracketArgs(std::vector<std::string>& args, std::string_view macroName, bool active);
  bool readStartReference(std::string& arg, bool active);
  bool readArgumentStart(int& c, std::string& arg, bool active);
  int readRawArgChar(std::string& arg, int c);
  bool readQuotedArg(std::string& arg, std::string_view macroName);
  std::optional<std::string> simpleExpand(std::string_view text);

  // Expansion, references and conditions (macro_expand.cpp).
  void expandMacro(const MacroDef& def, std::vector<std::string> args);
  void pushAndExpand(Frame frame, std::string_view calledFrom);
  void runExpansion(Expansion& expansion);
  void runReference(Expansion* expansion);
  bool readParenthesized(std::string& text, std::string_view macroName);
  void runCondition(const std::string& word, Expansion& expansion);
  void runError(Expansion& expansion);
  void runExp(Expansion& expansion);
  void runScan(Expansion& expansion);

  // Strings of directives (macro_strings.cpp).
  bool readQuotedString(std::string& out, bool expandDefines);
  std::string expandDefinesIn(std::string_view text) const;

  // $$repeat (macro_repeat.cpp).
  void runRepeat(Expansion* expansion);
  bool readRepeatBody(std::string& body);

  // $$argtype (macro_argtype.cpp).
  void runArgType(bool active);

  State state_;
  MacroExpressionEvaluator evaluator_;
  long budgetLimit_ = -1;
};

/// The process-wide context of the macro processor.
MacroContext& macroContext();

/// Moves the process-wide context's state aside, and the line state of the token reader with it,
/// and puts both back when it ends: a nested data sheet load runs inside one. A text data sheet
/// is read through the processor like this:
///   MacroContextScope scope;
///   tokenLineState() = TokenLineState{1, true};
///   macroContext().macroStart(path, [&stream] { return stream.readByte(); }, dataDir);
///   stream.setCharSource(&macroContext());
///   ... read tokens ...
///   stream.setCharSource(nullptr);
///   macroContext().macroClear();
class MacroContextScope {
 public:
  MacroContextScope();
  ~MacroContextScope();
  MacroContextScope(const MacroContextScope&) = delete;
  MacroContextScope& operator=(const MacroContextScope&) = delete;

 private:
  MacroContext::State saved_;
  TokenLineState savedLines_;
};

/// The whole expanded text of a file, as the token reader would see it, using a context of its
/// own. nullopt after a failure (its box has been shown), and without a box when the file itself
/// can't be read (the caller reports that).
std::optional<std::string> expandMacroFile(const std::filesystem::path& path,
                                           const std::filesystem::path& dataDir);

/// The evaluator of the expression engine: a scratch symbol table whose resolver gives the
/// macro's values as strings.
MacroExpressionEvaluator standardMacroExpressionEvaluator();

}  // namespace zv
