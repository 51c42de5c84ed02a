#pragma once
// The section grammar of sheet files: the blocks that character sheets, templates and data sheets
// share (info, data file and associated file lists, definitions, lists with their items and
// options, dialogs with their fields). One SheetGrammar reads one file; the top-level loops of
// the sheet and data sheet readers call its block readers.
//
// Failures: a block reader returns false. When it has shown the reason (or the token stream
// has), reported() is true and the callers unwind silently; otherwise the enclosing block shows
// its own message ("Error reading list: %s", "Error reading dialog definition %s (%s)").

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/fileinfo.h"
#include "core/fixed_string.h"
#include "core/host.h"
#include "core/item.h"
#include "formats/sheet/sheet_read_options.h"
#include "formats/tokens/keywords.h"
#include "formats/tokens/tokenstream.h"

namespace zv {

/// A token read where a keyword may stand.
struct SheetToken {
  /// A text word or binary string that isn't a keyword.
  static constexpr int kWord = 0;

  int id = kWord;    ///< a keyword id (> 0), kWord, kTokenEndOfFile or kTokenFailed
  std::string text;  ///< the word as read (a keyword's name in binary)

  bool is(int keyword) const { return id == keyword; }
  bool isKeyword() const { return id > 0; }
  bool isWord() const { return id == kWord; }
  bool atEnd() const { return id == kTokenEndOfFile; }
  bool failed() const { return id == kTokenFailed; }
  /// `end` or the end of the input, which close every block alike.
  bool closesBlock() const { return atEnd() || is(kEnd); }
};

/// Where the item reader puts the items it reads: a list, a sublist or a category.
class ItemSink {
 public:
  virtual ~ItemSink() = default;
  /// Takes a new item and returns the item that the rest of its block fills (normally the same).
  virtual Item& addItem(std::unique_ptr<Item> item) = 0;
};

class SheetGrammar {
 public:
  SheetGrammar(TokenStream& input, FileInfo& sheet, const SheetReadOptions& options);

  TokenStream& input() { return in_; }
  FileInfo& sheet() { return sheet_; }
  const SheetReadOptions& options() const { return options_; }

  // ---- Failures ----------------------------------------------------------------------------
  bool reported() const { return reported_; }
  /// Shows an error box and marks the failure as reported. Returns false.
  bool fail(std::string_view text);
  /// The same with a title of its own.
  bool failTitled(std::string_view title, std::string_view text);
  /// Marks a failure whose message has been shown elsewhere. Returns false.
  bool failShown() {
    reported_ = true;
    return false;
  }
  /// Marks the failure as reported when the token stream has shown it. Returns false.
  bool failToken(int result);

  // ---- Tokens ------------------------------------------------------------------------------
  /// A keyword, or the word that stands where a keyword may.
  SheetToken next(size_t capacity = kTokenCapacity);
  /// Hands a token back: the next call of next() returns it.
  void pushBack(SheetToken token) { pending_ = std::move(token); }
  bool readInt(std::int16_t& value);
  bool readLong(std::int32_t& value);
  bool readReal(double& value);
  bool readText(std::string& value);
  /// One string cut to the capacity of a fixed field.
  template <std::size_t N>
  bool readWord(FixedString<N>& value) {
    std::string word;
    int result = in_.readWord(word, N);
    if (result != kTokenOk) return failToken(result);
    value = word;
    return true;
  }
  bool readWord(std::string& value, std::size_t capacity);
  /// Coordinates, scaled from the file's pixels per inch to the screen's.
  bool readCoordX(std::int16_t& value);
  bool readCoordY(std::int16_t& value);
  /// A text joined to `target` with ";" (repeated `cat` and `adj`); an empty result stays empty.
  bool readJoinedText(std::string& target);

  // ---- Blocks ------------------------------------------------------------------------------
  /// After `info`: the notes, window places and flags, up to `end`.
  bool readInfoBlock();
  /// After `datafile` or `assocfiles`: names up to `end`. The end of the input shows
  /// `endOfInputMessage`. Each name is passed to `onName` as it is read.
  bool readNameBlock(std::vector<std::string>& names, std::string_view endOfInputMessage,
                     const std::function<void(const std::string&)>& onName = {});
  /// After `define`: definitions up to `end`, appended to `defines` and (with a symbol binder)
  /// defined in the sheet's table.
  bool readDefineBlock(std::vector<DefineRec>& defines);
  /// After `list`: the name, the list's keywords and its items, up to `end`.
  bool readListBlock(ListInfo& list);
  /// One item block that begins with `start`. The token that ended it (the first that doesn't
  /// belong to it) is left in `following`.
  bool readItemBlock(SheetToken start, ItemSink& sink, SheetToken& following);
  /// After `opt`: the options of the item, up to `end`.
  bool readOptionBlock(Item& item);
  /// One option that begins with `start`: its kind keyword, or `begin` for the wrapped form
  /// `begin <kind> ... <tail> end`. The caller has checked that `start` is one of these.
  bool readOptionEntry(const SheetToken& start, std::unique_ptr<Option>& option);
  /// After `dialog`: the name, size, dialog keywords and fields, up to `end`.
  bool readDialogBlock(DlgInfo& dialog);

  /// Capacity of words read where a keyword may stand.
  static constexpr size_t kTokenCapacity = 4096;
  /// Sublists nested deeper than this fail the read, so that no file can exhaust the stack.
  static constexpr int kMaxSublistDepth = 200;

 private:
  bool readListKeyword(ListInfo& list, const SheetToken& token, bool& handled);
  bool readItemKeyword(Item& item, const SheetToken& token, bool& handled);
  bool readSublistMembers(Item& sublist);
  bool readOption(Item& item, const SheetToken& start);
  bool readOptionTail(Option& option);
  bool readFontList(DlgInfo& dialog);
  bool readFontEntry(FontSpec& font);
  bool readField(DlgInfo& dialog, const SheetToken& start);
  bool readFieldKind(DlgItem& field);
  bool readFieldTail(DlgItem& field);
  bool readEditVarKeywords(DlgItem& field);
  void defineFieldVariable(DlgItem& field, std::string_view expression);
  void defineChangeExpression(ListInfo& list);

  TokenStream& in_;
  FileInfo& sheet_;
  const SheetReadOptions& options_;
  PixelsPerInch screen_;
  bool reported_ = false;
  int sublistDepth_ = 0;
  std::optional<SheetToken> pending_;
  /// The last token read where a keyword may stand, for "Error reading dialog definition".
  std::string lastToken_;
};

}  // namespace zv
