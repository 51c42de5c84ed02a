#pragma once
// The script reader: tokens, statement text and bracketed heads of a script's source text.
//
// A reader walks one text with one position. Before each token it keeps a copy of its position
// (`lastToken`), so that a caller that read one token too many goes back with putBack(). Errors
// are reported once, through the error sink given to the reader, and the call returns false.
//
// Splitting an argument list (a call "name(a, "b, c", f(1, 2))"): read the name and the "("
// with readToken, then readCallArguments(), which gives the argument texts as written, each cut
// at a "," or ")" that stands at bracket depth zero outside quotes, and leaves the position
// behind the ")". For words and strings one by one use readToken: a Token::Plain token's `text`
// is the string without its quotes (`quote` tells which quote it had) or the word.

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/record_types.h"
#include "script/reader/keywords.h"

namespace zv {
struct Option;
}

namespace zv::script {

/// The size of the reader's token and statement buffers: a token or statement text holds at most
/// one byte less.
inline constexpr std::size_t kTokenCapacity = 10000;
/// The size of a parenthesised head (512 for `switch`).
inline constexpr std::size_t kHeadCapacity = 256;
inline constexpr std::size_t kSwitchHeadCapacity = 512;

/// A text that a reader walks, with the file name that messages show for it.
struct SourceText {
  std::string text;
  std::string label;
};

/// Makes a source text to read.
std::shared_ptr<const SourceText> makeSource(std::string text, std::string label);

/// Where a reader stands: the text, the place in it, the line (from 1), and the item and option
/// being visited ("$n" in a token is replaced by the current item's name).
struct ScriptPosition {
  std::shared_ptr<const SourceText> source;
  std::size_t offset = 0;
  int line = 1;
  Item* currentItem = nullptr;
  Option* currentOption = nullptr;

  /// The file name that messages show; "" without a source.
  const std::string& file() const;
  bool atEnd() const;
};

/// One token read.
struct ReadToken {
  Token token = Token::EndOfText;
  /// A plain token's string (without quotes, escapes applied) or word; a keyword's word as
  /// written; a one-character token's character.
  std::string text;
  /// '"' or '\'' for a quoted string, 0 for anything else.
  char quote = 0;

  bool is(Token t) const { return token == t; }
};

/// Receives each error message of a reader (without any position suffix).
using ReaderErrorSink = std::function<void(std::string_view message)>;

class ScriptReader {
 public:
  ScriptReader() = default;
  ScriptReader(ScriptPosition start, ReaderErrorSink errors);

  /// The live position and the one before the last token read.
  ScriptPosition position;
  ScriptPosition lastToken;

  void setErrorSink(ReaderErrorSink errors) { errors_ = std::move(errors); }
  /// Reports a message through the sink (for callers that detect an error of their own).
  void report(std::string_view message) const;

  /// Reads the next token, skipping blanks and "#" comments. Strings are quoted with '"' or '\''
  /// ("\n" gives CR LF, a backslash before a line end joins the lines, any other backslash pair
  /// stays); with a current item every "$n" (any case) becomes the item's name. A token holds at
  /// most `capacity` - 1 bytes. False after "Unterminated string (%s).", "No terminator on
  /// string", "String too long", "Value too long" or replaceToken's message.
  bool readToken(ReadToken& out, std::size_t capacity = kTokenCapacity);
  /// Goes back to the place before the last token read.
  void putBack() { position = lastToken; }
  /// Reads a token and puts it back: what the next readToken will give.
  bool peekToken(ReadToken& out, std::size_t capacity = kTokenCapacity);

  /// Copies statement text, after blanks and comments, up to the first of the delimiter
  /// characters, and moves behind it; `found` is that delimiter. Quoted parts are copied whole
  /// with their quotes (delimiters inside don't count), a line end outside quotes becomes one
  /// blank, "#" is kept, trailing blanks are cut. False after "Premature end found scanning for
  /// statement end", "Unterminated string", "Unterminated string." or "Buffer filled while
  /// scanning".
  bool scanToDelimiter(std::string_view delimiters, std::string& out, char& found,
                       std::size_t capacity = kTokenCapacity);

  /// Reads a parenthesised head "( ... )" with nested brackets; `out` is the text inside. False
  /// after "Missing '('", "Missing ')' on if/for" (a line end or the end of text inside) or
  /// "Expression too long".
  bool readHead(std::string& out, std::size_t capacity = kHeadCapacity);

  /// Reads the arguments of a call whose "(" has been read, up to and including the ")": each
  /// argument is the text up to a "," or ")" at bracket depth zero outside quotes, trimmed. "()"
  /// gives no argument. False after "Missing ) in subroutine call." (a ";" or the end of text
  /// first) or "Argument %d is too long." (more than `capacity` - 1 bytes).
  bool readCallArguments(std::vector<std::string>& arguments, std::size_t capacity = 1024);

  /// stripQuotes on statement text, reporting "Missing end quote on name" when it fails.
  bool unquote(std::string& text) const;

  /// Skips blanks and comments, counting lines; true when the end of the text follows.
  bool skipBlanks();

 private:
  char peekChar(std::size_t ahead = 0) const;
  bool readString(char quote, std::string& out, std::size_t capacity);
  void readWord(std::string& out, bool& tooLong, std::size_t capacity);

  ReaderErrorSink errors_;
};

/// Removes one level of double quotes from statement text: a leading '"' goes with its partner
/// and everything behind the partner ("\"abc\" def" gives "abc"). A leading '\'' stays. False
/// when the partner is missing (the caller reports "Missing end quote on name").
bool stripQuotes(std::string& text);

/// The text with blanks at both ends removed.
std::string trimBlanks(std::string_view text);

}  // namespace zv::script
