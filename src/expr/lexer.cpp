#include "expr/lexer.h"

#include <array>

#include "core/numbers.h"
#include "core/text.h"
#include "expr/builtin_table.h"
#include "expr/expr_error.h"
#include "expr/opcodes.h"

namespace zv {

namespace {

struct ReservedWord {
  std::string_view word;
  int token;
};

constexpr std::array<ReservedWord, 12> kReservedWords = {{
    {"and", kOpAnd},
    {"else", kOpElse},
    {"elseif", kOpElseIf},
    {"endif", kOpEndIf},
    {"endwhile", kOpEndWhile},
    {"if", kOpIf},
    {"local", kOpLocals},
    {"mod", kOpMod},
    {"not", kOpNot},
    {"or", kOpOr},
    {"return", kOpReturn},
    {"while", kOpWhile},
}};

// The longest number text that is kept; the rest is scanned and dropped.
constexpr std::size_t kNumberBuffer = 64;

constexpr unsigned char kTimesGlyph = 215;

bool isDigit(unsigned char c) {
  return c >= '0' && c <= '9';
}

bool isGlyph(unsigned char c) {
  return c == kQuarterGlyph || c == kHalfGlyph || c == kThreeQuartersGlyph;
}

double glyphValue(unsigned char c) {
  return c == kQuarterGlyph ? 0.25 : (c == kHalfGlyph ? 0.5 : 0.75);
}

bool startsName(unsigned char c) {
  return isLetterChar(c) || c == '_' || c == '@' || c == '`';
}

bool continuesName(unsigned char c) {
  return isLetterChar(c) || isDigit(c) || c == '_' || c == '@';
}

std::size_t single(ExprToken& token, int code, std::string_view text, std::size_t at,
                   std::size_t length) {
  token.code = code;
  token.text.assign(text.substr(at, length));
  return at + length;
}

std::size_t readNumber(std::string_view text, std::size_t at, ExprToken& token) {
  std::size_t end = at;
  while (end < text.size() &&
         (isDigit(static_cast<unsigned char>(text[end])) || text[end] == '.')) {
    ++end;
  }
  std::string_view kept = text.substr(at, std::min(end - at, kNumberBuffer));
  bool hasPoint = kept.find('.') != std::string_view::npos;
  token.text.assign(text.substr(at, end - at));
  if (!hasPoint) {
    std::uint32_t value = 0;
    for (char c : kept)
      value = value * 10u + static_cast<std::uint32_t>(c - '0');
    std::int32_t integer = static_cast<std::int32_t>(value);
    bool isFloat = false;
    double real = integer;
    if (end < text.size() && isGlyph(static_cast<unsigned char>(text[end]))) {
      real += glyphValue(static_cast<unsigned char>(text[end]));
      isFloat = true;
      ++end;
    }
    if (end < text.size() && text[end] == '%') {
      real /= 100.0;
      isFloat = true;
      ++end;
    }
    if (isFloat) {
      token.code = kOpFloat;
      token.real = real;
    } else {
      token.code = kOpInteger;
      token.integer = integer;
    }
    return end;
  }
  // A float read digit by digit up to a second point; a percent sign behind is ignored.
  double value = 0.0;
  double scale = 0.0;
  for (char c : kept) {
    if (c == '.') {
      if (scale != 0.0) break;
      scale = 1.0;
      continue;
    }
    if (scale == 0.0) {
      value = value * 10.0 + (c - '0');
    } else {
      scale /= 10.0;
      value += (c - '0') * scale;
    }
  }
  if (end < text.size() && text[end] == '%') ++end;
  token.code = kOpFloat;
  token.real = value;
  return end;
}

std::size_t readString(std::string_view text, std::size_t at, ExprToken& token) {
  char quote = text[at];
  std::size_t close = text.find(quote, at + 1);
  if (close == std::string_view::npos) {
    setErrorCode(kExprIllFormedString);
    token.code = kOpEnd;
    token.text.clear();
    return kNoPosition;
  }
  token.code = kOpString;
  token.text = expandNewlines(text.substr(at + 1, close - at - 1));
  return close + 1;
}

std::size_t readName(std::string_view text, std::size_t at, ExprToken& token) {
  std::size_t end = at + 1;  // the first character is taken as it is, a backquote included
  while (end < text.size()) {
    unsigned char c = static_cast<unsigned char>(text[end]);
    if (continuesName(c)) {
      ++end;
    } else if (c == '`') {
      ++end;
      while (end < text.size() && text[end] != '`') {
        if (static_cast<unsigned char>(text[end]) < 32) {
          token.code = kOpEnd;
          token.text.clear();
          return kNoPosition;
        }
        ++end;
      }
      if (end < text.size()) ++end;
    } else {
      break;
    }
  }
  std::string_view name = clipName(text.substr(at, end - at));
  int word = reservedWordToken(name);
  token.code = word != 0 ? word : kOpName;
  token.text.assign(name);
  return end;
}

}  // namespace

std::string expandNewlines(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == 'n') {
      out += "\r\n";
      ++i;
    } else {
      out += text[i];
    }
  }
  return out;
}

int reservedWordToken(std::string_view name) {
  if (name.size() < 2 || name.size() > 8) return 0;
  for (const ReservedWord& r : kReservedWords) {
    if (equalsIgnoringCase(r.word, name)) return r.token;
  }
  return 0;
}

bool isReservedName(std::string_view name) {
  return reservedWordToken(name) != 0 || findBuiltin(name) != nullptr;
}

std::size_t nextExpressionToken(std::string_view text, std::size_t position, ExprToken& token) {
  std::size_t at = position;
  for (;;) {
    while (at < text.size() && (text[at] == ' ' || text[at] == '\t' || text[at] == '\r' ||
                                text[at] == '\n' || text[at] == '\f' || text[at] == '\v')) {
      ++at;
    }
    if (at >= text.size()) {
      token.code = kOpEnd;
      token.text.clear();
      return kNoPosition;
    }
    char c = text[at];
    // "~" and "&" start a name only before a letter or "_"; otherwise they count as blanks.
    if (c == '~' || c == '&') {
      unsigned char next = at + 1 < text.size() ? static_cast<unsigned char>(text[at + 1]) : 0;
      if (isLetterChar(next) || next == '_') return readName(text, at, token);
      ++at;
      continue;
    }
    break;
  }
  unsigned char c = static_cast<unsigned char>(text[at]);
  char next = at + 1 < text.size() ? text[at + 1] : '\0';
  switch (c) {
    case '<':
      if (next == '=') return single(token, kOpLessEqual, text, at, 2);
      if (next == '>') return single(token, kOpNotEqual, text, at, 2);
      return single(token, kOpLess, text, at, 1);
    case '>':
      if (next == '=') return single(token, kOpGreaterEqual, text, at, 2);
      return single(token, kOpGreater, text, at, 1);
    case '=':
      return single(token, kOpEqual, text, at, 1);
    case '!':
      if (next == '=') return single(token, kOpNotEqual, text, at, 2);
      return single(token, kOpNot, text, at, 1);
    case ':':
      if (next == '=') return single(token, kOpStore, text, at, 2);
      return single(token, kOpColon, text, at, 1);
    case '?':
      return single(token, kOpConditional, text, at, 1);
    case '^':
      return single(token, kOpPower, text, at, 1);
    case '[':
      return single(token, kOpIndex, text, at, 1);
    case ']':
      return single(token, kOpCloseBracket, text, at, 1);
    case '{':
      return single(token, kOpOpenProcedure, text, at, 1);
    case '}':
      return single(token, kOpCloseProcedure, text, at, 1);
    case ';':
      return single(token, kOpSemicolon, text, at, 1);
    case '(':
      return single(token, kOpOpenParen, text, at, 1);
    case ')':
      return single(token, kOpCloseParen, text, at, 1);
    case ',':
      return single(token, kOpComma, text, at, 1);
    case '*':
    case kTimesGlyph:
      return single(token, kOpMultiply, text, at, 1);
    case '+':
      return single(token, kOpAdd, text, at, 1);
    case '-':
      return single(token, kOpSubtract, text, at, 1);
    case '/':
      return single(token, kOpDivide, text, at, 1);
    case '"':
    case '\'':
      return readString(text, at, token);
    default:
      break;
  }
  if (isGlyph(c)) {
    token.code = kOpFloat;
    token.real = glyphValue(c);
    token.text.assign(text.substr(at, 1));
    return at + 1;
  }
  if (isDigit(c) || c == '.') return readNumber(text, at, token);
  if (startsName(c)) return readName(text, at, token);
  return single(token, kOpIllegal, text, at, 1);
}

}  // namespace zv
