#include "script/reader/script_reader.h"

#include <limits>

#include "core/item.h"
#include "core/strfmt.h"
#include "core/text.h"

namespace zv::script {

namespace {

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}

/// Characters that end a word besides blanks.
bool endsWord(char c) {
  switch (c) {
    case '(':
    case ')':
    case '#':
    case '"':
    case '\'':
    case ',':
    case ';':
    case '=':
    case '{':
    case '}':
      return true;
    default:
      return false;
  }
}

Token singleCharacterToken(char c) {
  switch (c) {
    case '(':
      return Token::OpenParen;
    case ')':
      return Token::CloseParen;
    case ',':
      return Token::Comma;
    case ';':
      return Token::Semicolon;
    case '=':
      return Token::Equals;
    case '{':
      return Token::OpenBrace;
    case '}':
      return Token::CloseBrace;
    case '~':
      return Token::Tilde;
    default:
      return Token::Plain;
  }
}

void trimTrailingBlanks(std::string& text) {
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t'))
    text.pop_back();
}

const std::string kNoFile;

}  // namespace

std::shared_ptr<const SourceText> makeSource(std::string text, std::string label) {
  return std::make_shared<const SourceText>(SourceText{std::move(text), std::move(label)});
}

const std::string& ScriptPosition::file() const {
  return source ? source->label : kNoFile;
}

bool ScriptPosition::atEnd() const {
  return !source || offset >= source->text.size() || source->text[offset] == '\0';
}

ScriptReader::ScriptReader(ScriptPosition start, ReaderErrorSink errors)
    : position(std::move(start)), lastToken(position), errors_(std::move(errors)) {}

void ScriptReader::report(std::string_view message) const {
  if (errors_) errors_(message);
}

char ScriptReader::peekChar(std::size_t ahead) const {
  if (!position.source) return '\0';
  const std::string& text = position.source->text;
  const std::size_t at = position.offset + ahead;
  return at < text.size() ? text[at] : '\0';
}

bool ScriptReader::skipBlanks() {
  for (;;) {
    const char c = peekChar();
    if (c == '\0') return true;
    if (isBlank(c)) {
      if (c == '\n') ++position.line;
      ++position.offset;
    } else if (c == '#') {
      while (peekChar() != '\0' && peekChar() != '\n')
        ++position.offset;
    } else {
      return false;
    }
  }
}

bool ScriptReader::readString(char quote, std::string& out, std::size_t capacity) {
  ++position.offset;
  auto append = [&](std::string_view piece) {
    if (out.size() + piece.size() > capacity - 1) {
      report("String too long");
      return false;
    }
    out.append(piece);
    return true;
  };
  for (;;) {
    const char c = peekChar();
    if (c == '\0') {
      report("No terminator on string");
      return false;
    }
    if (c == quote) {
      ++position.offset;
      return true;
    }
    if (c == '\n') {
      std::string readSoFar = out;
      if (!readSoFar.empty() && readSoFar.back() == '\r') readSoFar.pop_back();
      report(strprintf("Unterminated string (%s).", readSoFar));
      return false;
    }
    if (c == '\\') {
      const char next = peekChar(1);
      if (next == '\r') {
        position.offset += 2;
        if (peekChar() == '\n') ++position.offset;
        ++position.line;
        continue;
      }
      if (next == '\n') {
        position.offset += 2;
        ++position.line;
        continue;
      }
      if (next == 'n') {
        if (!append("\r\n")) return false;
        position.offset += 2;
        continue;
      }
      if (next == '\0') {
        if (!append("\\")) return false;
        ++position.offset;
        continue;
      }
      const char pair[2] = {c, next};
      if (!append(std::string_view(pair, 2))) return false;
      position.offset += 2;
      continue;
    }
    if (!append(std::string_view(&c, 1))) return false;
    ++position.offset;
  }
}

void ScriptReader::readWord(std::string& out, bool& tooLong, std::size_t capacity) {
  tooLong = false;
  for (;;) {
    const char c = peekChar();
    if (c == '\0' || isBlank(c) || endsWord(c)) return;
    // A tilde ends a word of two or more characters, except behind "$$", "$*" and "$@", so that
    // "$$~name" stays one word while "Climb~" is a word and a tilde.
    if (c == '~' && out.size() >= 2 && out[out.size() - 2] != '$') return;
    if (out.size() >= capacity - 1) {
      tooLong = true;
      return;
    }
    out.push_back(c);
    ++position.offset;
  }
}

bool ScriptReader::readToken(ReadToken& out, std::size_t capacity) {
  out.text.clear();
  out.quote = 0;
  if (!position.source) {
    report("Internal error: null pointer in readToken.");
    return false;
  }
  skipBlanks();
  lastToken = position;
  const char c = peekChar();
  if (c == '\0') {
    out.token = Token::EndOfText;
    return true;
  }
  if (const Token single = singleCharacterToken(c); single != Token::Plain) {
    out.token = single;
    out.text.assign(1, c);
    ++position.offset;
    return true;
  }
  bool isWord = false;
  if (c == '"' || c == '\'') {
    if (!readString(c, out.text, capacity)) return false;
    out.quote = c;
  } else {
    bool tooLong = false;
    readWord(out.text, tooLong, capacity);
    if (tooLong) {
      report("Value too long");
      return false;
    }
    isWord = true;
  }
  if (position.currentItem != nullptr && findIgnoringCase(out.text, "$n") != std::string::npos) {
    std::string replaced = out.text;
    replaceToken(replaced, std::numeric_limits<std::size_t>::max(), "$n",
                 position.currentItem->name);
    if (replaced.size() + 1 > capacity) {
      report("Error in replaceToken -- temporary string too small");
      return false;
    }
    out.text = std::move(replaced);
  }
  out.token = isWord ? findKeyword(out.text) : Token::Plain;
  return true;
}

bool ScriptReader::peekToken(ReadToken& out, std::size_t capacity) {
  const ScriptPosition saved = lastToken;
  if (!readToken(out, capacity)) return false;
  putBack();
  lastToken = saved;
  return true;
}

bool ScriptReader::scanToDelimiter(std::string_view delimiters, std::string& out, char& found,
                                   std::size_t capacity) {
  out.clear();
  found = '\0';
  skipBlanks();
  auto room = [&](std::size_t bytes) {
    if (out.size() + bytes > capacity - 1) {
      report("Buffer filled while scanning");
      return false;
    }
    return true;
  };
  for (;;) {
    const char c = peekChar();
    if (c == '\0') {
      report("Premature end found scanning for statement end");
      return false;
    }
    if (delimiters.find(c) != std::string_view::npos) {
      ++position.offset;
      found = c;
      trimTrailingBlanks(out);
      return true;
    }
    if (c == '"' || c == '\'') {
      if (!room(1)) return false;
      out.push_back(c);
      ++position.offset;
      for (;;) {
        const char d = peekChar();
        if (d == '\0') {
          report("Premature end found scanning for statement end");
          return false;
        }
        if (d == c) {
          if (!room(1)) return false;
          out.push_back(d);
          ++position.offset;
          break;
        }
        if (d == '\r') {
          report("Unterminated string");
          return false;
        }
        if (d == '\\') {
          const char next = peekChar(1);
          if (next == '\0') {
            report("Unterminated string.");
            return false;
          }
          if (next == '\r' || next == '\n') {
            position.offset += 2;
            if (next == '\r' && peekChar() == '\n') ++position.offset;
            ++position.line;
            continue;
          }
          if (next == 'n') {
            if (!room(2)) return false;
            out.append("\r\n");
          } else {
            if (!room(2)) return false;
            out.push_back(d);
            out.push_back(next);
          }
          position.offset += 2;
          continue;
        }
        if (d == '\n') ++position.line;
        if (!room(1)) return false;
        out.push_back(d);
        ++position.offset;
      }
      continue;
    }
    if (!room(1)) return false;
    if (c == '\r') {
      out.push_back(' ');
      ++position.offset;
      if (peekChar() == '\n') {
        ++position.offset;
        ++position.line;
      }
      continue;
    }
    if (c == '\n') {
      out.push_back(' ');
      ++position.offset;
      ++position.line;
      continue;
    }
    out.push_back(c);
    ++position.offset;
  }
}

bool ScriptReader::readHead(std::string& out, std::size_t capacity) {
  out.clear();
  skipBlanks();
  if (peekChar() != '(') {
    report("Missing '('");
    return false;
  }
  ++position.offset;
  int depth = 1;
  char quote = '\0';
  for (;;) {
    const char c = peekChar();
    if (c == '\0' || c == '\n' || c == '\r') {
      report("Missing ')' on if/for");
      return false;
    }
    ++position.offset;
    if (quote != '\0') {
      if (c == quote) quote = '\0';
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '(') {
      ++depth;
    } else if (c == ')' && --depth == 0) {
      return true;
    }
    if (out.size() >= capacity - 1) {
      report("Expression too long");
      return false;
    }
    out.push_back(c);
  }
}

bool ScriptReader::readCallArguments(std::vector<std::string>& arguments, std::size_t capacity) {
  arguments.clear();
  std::string current;
  int depth = 0;
  bool sawComma = false;
  char quote = '\0';
  for (;;) {
    const char c = peekChar();
    if (c == '\0' || (c == ';' && quote == '\0')) {
      report("Missing ) in subroutine call.");
      return false;
    }
    ++position.offset;
    if (c == '\n') ++position.line;
    if (quote == '\0') {
      if (c == ')' && depth == 0) {
        std::string last = trimBlanks(current);
        if (sawComma || !last.empty()) arguments.push_back(std::move(last));
        return true;
      }
      if (c == ',' && depth == 0) {
        arguments.push_back(trimBlanks(current));
        current.clear();
        sawComma = true;
        continue;
      }
      if (c == '(') ++depth;
      if (c == ')') --depth;
      if (c == '"' || c == '\'') quote = c;
    } else if (c == quote) {
      quote = '\0';
    }
    if (current.size() >= capacity - 1) {
      report(strprintf("Argument %d is too long.", static_cast<int>(arguments.size()) + 1));
      return false;
    }
    current.push_back(quote == '\0' && (c == '\r' || c == '\n') ? ' ' : c);
  }
}

bool ScriptReader::unquote(std::string& text) const {
  if (stripQuotes(text)) return true;
  report("Missing end quote on name");
  return false;
}

bool stripQuotes(std::string& text) {
  if (text.empty() || text.front() != '"') return true;
  const std::size_t partner = text.find('"', 1);
  if (partner == std::string::npos) return false;
  text = text.substr(1, partner - 1);
  return true;
}

std::string trimBlanks(std::string_view text) {
  std::size_t begin = 0;
  std::size_t end = text.size();
  while (begin < end && isBlank(text[begin]))
    ++begin;
  while (end > begin && isBlank(text[end - 1]))
    --end;
  return std::string(text.substr(begin, end - begin));
}

}  // namespace zv::script
