#pragma once
// The lexer of expressions. Its token codes are the opcodes of compiled code (opcodes.h), plus
// the source-only ones: 9 an illegal character, 29 a name, and the punctuation and statement
// words. Other small grammars (array and function headers, literal tests) use it too.

#include <cstdint>
#include <string>
#include <string_view>

namespace zv {

struct ExprToken {
  int code = 11;
  std::int32_t integer = 0;  ///< an integer literal
  double real = 0.0;         ///< a float literal
  /// A name (cut to 64 bytes), a string literal's bytes (backslash-n made CR LF), or the source
  /// text of a word or an operator.
  std::string text;
};

/// Returned in place of a position at the end of the text and after a failure.
inline constexpr std::size_t kNoPosition = std::string_view::npos;

/// Reads the token at `position`: returns the position behind it, or kNoPosition with token 11 at
/// the end of the text, and kNoPosition after an unterminated string (error -10 is then in the
/// record) or a control character inside a backquoted stretch of a name. An illegal character
/// gives token 9.
std::size_t nextExpressionToken(std::string_view text, std::size_t position, ExprToken& token);

/// True for the reserved words and the names of the built-in functions, ignoring case.
bool isReservedName(std::string_view name);

/// The token of a reserved word (and, or, mod, not, if, ...), or 0 when the name is none.
int reservedWordToken(std::string_view name);

/// Replaces each backslash followed by "n" with CR LF.
std::string expandNewlines(std::string_view text);

}  // namespace zv
