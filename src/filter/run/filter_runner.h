#pragma once
// The state of one filter run and the reading and running of its lines. One object per run, so
// that a print object's small filter can run while a page is produced by another.

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/fileinfo.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "filter/file/filter_document.h"
#include "filter/run/filter_context.h"
#include "filter/run/filter_run.h"
#include "filter/run/output_streams.h"
#include "filter/run/sheet_values.h"

namespace zv {

/// The longest text between the % signs of a field.
inline constexpr std::size_t kMaxFieldText = 255;
/// The longest word in backquotes in an item field.
inline constexpr std::size_t kMaxQuotedFieldName = 62;
/// How deep blocks, calls and conditionals may nest in one run.
inline constexpr int kMaxFilterNesting = 200;

/// An expression's "@dialog.field" references written as one name ("@`dialog.field`"), which
/// the run's look-up hook answers; quoted texts are left alone.
std::string quoteDialogReferences(std::string_view text);

class FilterRunner {
 public:
  FilterRunner(FileInfo& sheet, std::string_view body, int headerLines,
               const FilterRunOptions& options, FilterContext& context,
               const FilterDocument* document);
  ~FilterRunner();
  FilterRunner(const FilterRunner&) = delete;
  FilterRunner& operator=(const FilterRunner&) = delete;

  /// Runs the body; the joined output, or nullopt for a failed run.
  std::optional<std::string> run();

  // ---- What running a line or a block comes to ----
  enum class Outcome { Ok, Failed, Exited };
  /// How a block of lines ended: a closing word (`closer`), the end of the body, or a stop.
  struct BlockEnd {
    Outcome outcome = Outcome::Ok;
    bool endOfText = false;
    std::string closer;  ///< lower case
    std::string rest;    ///< the closing line's text behind its word, without the line end
    int line = 0;        ///< the closing line's number
  };

 private:
  /// A place in the body: the offset of the next line and the number of lines read before it.
  struct Position {
    std::size_t offset = 0;
    int lines = 0;
  };
  struct Subroutine {
    std::string name;
    Position body;  ///< just behind the @sub line
    int startLine = 0;
    std::vector<std::string> parameters;
    bool active = false;
  };
  enum class ReadResult { Line, End, Error };

  // Reading (filter_runner.cpp).
  ReadResult readLine(std::string& line);
  int lineNumber() const { return headerLines_ + position_.lines; }
  bool fail(std::string_view message);  ///< a "Filter Error" box with the line; false
  bool failAt(std::string_view message, int line);
  bool failTitled(std::string_view title, std::string_view message);

  // Running lines (filter_runner.cpp).
  BlockEnd runBlock(std::initializer_list<std::string_view> closers);
  Outcome runLine(std::string_view line, BlockEnd& closer);
  Outcome runCommand(std::string_view line, BlockEnd& closer);
  Outcome emitText(std::string_view text);
  bool emitField(std::string_view name);
  Outcome emitConditional(std::string_view text, std::size_t& pos);
  void write(std::string_view text);
  void writeTranslated(std::string_view text);
  bool evaluate(std::string_view text, Value& out);
  bool truth(std::string_view text, bool& out);

  // Fields (run_fields.cpp).
  enum class FieldStatus { Text, NoSuchField, Failed };
  FieldStatus itemFieldText(Item& item, std::string_view word, std::string& out);
  bool sheetWordText(std::string_view word, std::string& out);
  bool installResolver();
  bool resolve(std::string_view name, Value& out);

  // Blocks (run_blocks.cpp).
  BlockEnd skipBlock(std::initializer_list<std::string_view> closers);
  Outcome runIf(std::string_view condition);
  Outcome runWhile(std::string_view condition);
  Outcome runFor(std::string_view head);
  Outcome runLoop(std::string_view condition, std::string_view step, const char* badCondition,
                  const char* missingEnd, const char* word, int startLine);
  Outcome runForeach(std::string_view head);
  Outcome runForeachChain(ItemChain& chain, const Position& body, const std::string& delimiter,
                          BlockEnd& end, int startLine);
  Outcome runOptions(std::string_view rest);
  bool cancelRequested();

  // Commands (run_commands.cpp).
  Outcome runAssign(std::string_view text);
  Outcome runVar(std::string_view text);
  Outcome runArray(std::string_view text);
  Outcome runGetText(std::string_view text);
  Outcome runMessage(std::string_view text);
  Outcome runOutput(std::string_view rest);
  Outcome runTranslate(std::string_view text);
  Outcome runWritePicture(std::string_view text);
  Symbol* findVariable(std::string_view name);
  bool store(std::string_view name, const Value& value, bool& defined);

  // Subroutines (run_subroutines.cpp).
  Outcome defineSubroutine(std::string_view text);
  Outcome callSubroutine(std::string_view name, std::string_view arguments);

  FileInfo& sheet_;
  std::string_view body_;
  int headerLines_ = 0;
  const FilterRunOptions& options_;
  FilterContext& context_;
  SheetValueSettings sheetSettings_;

  Position position_;
  SymbolTable* table_ = nullptr;  ///< the sheet's table (or the run's own when it has none)
  std::unique_ptr<SymbolTable> ownTable_;
  /// The locals: [0] the filter's own table, then one per subroutine call.
  std::vector<std::unique_ptr<SymbolTable>> locals_;
  std::map<std::string, Subroutine, LessIgnoringCase> subroutines_;
  OutputStreams streams_;
  std::array<std::optional<std::string>, 256> translations_;
  int translationCount_ = 0;
  bool translateOn_ = true;
  bool outputOff_ = false;
  Item* currentItem_ = nullptr;
  Option* currentOption_ = nullptr;
  int foreachDepth_ = 0;
  int foreachIndex_ = 0;
  int foreachCount_ = 0;
  int nesting_ = 0;
  // What the run changed and puts back.
  SymbolTable::Resolver savedResolver_;
  bool resolverInstalled_ = false;
  Item* savedContextItem_ = nullptr;
  Option* savedContextOption_ = nullptr;
};

}  // namespace zv
