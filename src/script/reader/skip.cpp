#include "script/reader/skip.h"

#include <algorithm>

#include "core/strfmt.h"

namespace zv::script {

namespace {

/// Passes over statements with a count of the nesting, so that no text can exhaust the stack.
class Skipper {
 public:
  explicit Skipper(ScriptReader& reader) : reader_(reader) {}

  bool statement(const ReadToken& first);
  bool toToken(std::initializer_list<Token> stops, ReadToken& found);
  bool tildeGroup();
  bool listBody();
  bool optionsBody();
  bool switchBody();

 private:
  bool enter() {
    if (++depth_ <= kMaxNesting) return true;
    reader_.report(strprintf("Statements nested too deeply (more than %d levels).", kMaxNesting));
    return false;
  }
  bool read(ReadToken& token) { return reader_.readToken(token); }
  bool head(std::size_t capacity = kHeadCapacity) {
    std::string text;
    return reader_.readHead(text, capacity);
  }
  bool toSemicolon();
  bool toSemicolonOutsideQuotes();
  bool plainWord();
  bool ifStatement();
  bool menuItem();
  bool submenu();
  bool func();
  bool dialog();
  bool members(Token closer, const char* missing, bool listMembers);

  ScriptReader& reader_;
  int depth_ = 0;
};

/// Leaves the nesting count as it was on every way out.
class Nest {
 public:
  explicit Nest(int& depth) : depth_(depth) {}
  ~Nest() { --depth_; }
  Nest(const Nest&) = delete;
  Nest& operator=(const Nest&) = delete;

 private:
  int& depth_;
};

bool Skipper::toSemicolon() {
  ReadToken token;
  for (;;) {
    if (!read(token)) return false;
    if (token.is(Token::Semicolon)) return true;
    if (token.is(Token::EndOfText)) {
      reader_.putBack();
      return true;
    }
  }
}

bool Skipper::toSemicolonOutsideQuotes() {
  ScriptPosition& at = reader_.position;
  const std::string& text = at.source->text;
  bool quoted = false;
  for (;;) {
    if (at.offset >= text.size() || text[at.offset] == '\0') {
      reader_.report("Premature end of command.");
      return false;
    }
    const char c = text[at.offset];
    if (c == ';' && !quoted) return true;
    if (c == '"') quoted = !quoted;
    if (c == '\n') ++at.line;
    ++at.offset;
  }
}

bool Skipper::plainWord() {
  ReadToken next;
  if (!read(next)) return false;
  if (next.is(Token::Tilde)) return true;
  if (!next.is(Token::Equals) && !next.is(Token::OpenParen)) {
    reader_.putBack();
    return true;
  }
  for (;;) {
    if (!read(next)) return false;
    if (next.is(Token::Semicolon)) return true;
    if (next.is(Token::EndOfText)) {
      reader_.putBack();
      return true;
    }
    if (isKeyword(next.token)) {
      reader_.report(strprintf("Keyword \"%s\" found; expecting semicolon", next.text));
      return false;
    }
  }
}

bool Skipper::ifStatement() {
  if (!head()) return false;
  ReadToken token;
  for (;;) {
    if (!read(token)) return false;
    switch (token.token) {
      case Token::EndIf:
        return true;
      case Token::ElseIf:
        if (!head()) return false;
        break;
      case Token::Else:
        break;
      case Token::EndOfText:
        reader_.report("Error in if -- endif may be missing.");
        return false;
      default:
        if (!statement(token)) return false;
    }
  }
}

bool Skipper::menuItem() {
  ReadToken token;
  for (;;) {
    if (!read(token)) return false;
    if (token.is(Token::OpenBrace)) break;
    if (token.is(Token::Semicolon)) {
      reader_.report("Never found body of menuitem -- no '{' found.");
      return false;
    }
    if (token.is(Token::EndOfText)) {
      reader_.report("Premature end of script");
      return false;
    }
  }
  for (;;) {
    if (!read(token)) return false;
    if (token.is(Token::CloseBrace)) return true;
    if (token.is(Token::EndOfText)) {
      reader_.report("Premature end of script");
      return false;
    }
  }
}

bool Skipper::submenu() {
  if (!enter()) return false;
  Nest nest(depth_);
  if (!toSemicolon()) return false;
  ReadToken token;
  for (;;) {
    if (!read(token)) return false;
    if (token.is(Token::EndSubmenu)) return true;
    if (token.is(Token::MenuItem)) {
      if (!menuItem()) return false;
    } else if (token.is(Token::Submenu)) {
      if (!submenu()) return false;
    } else {
      reader_.report(strprintf("Expected submenu; found '%s'.", token.text));
      return false;
    }
  }
}

bool Skipper::func() {
  ReadToken token;
  for (;;) {
    if (!read(token)) return false;
    if (token.is(Token::Semicolon)) return true;
    if (token.is(Token::EndOfText)) {
      reader_.putBack();
      return true;
    }
    if (token.is(Token::OpenBrace)) {
      for (;;) {
        if (!read(token)) return false;
        if (token.is(Token::CloseBrace)) return true;
        if (token.is(Token::EndOfText)) {
          reader_.report("Premature end of script");
          return false;
        }
      }
    }
  }
}

bool Skipper::dialog() {
  std::string text;
  char found = '\0';
  if (!reader_.scanToDelimiter(",", text, found)) return false;
  if (!reader_.scanToDelimiter(";", text, found)) return false;
  ReadToken end;
  return toToken({Token::End}, end);
}

bool Skipper::tildeGroup() {
  if (!enter()) return false;
  Nest nest(depth_);
  const int startLine = reader_.position.line;
  ReadToken token;
  auto missingEnd = [&] {
    reader_.report(strprintf("Missing end after ~ (started around line %d)", startLine));
    return false;
  };
  for (;;) {
    if (!read(token)) return false;
    if (token.is(Token::Tilde)) break;
    if (token.is(Token::EndOfText)) return missingEnd();
  }
  for (;;) {
    if (!read(token)) return false;
    if (token.is(Token::End)) return true;
    if (token.is(Token::EndOfText)) return missingEnd();
    if (!statement(token)) return false;
  }
}

bool Skipper::members(Token closer, const char* missing, bool listMembers) {
  if (!enter()) return false;
  Nest nest(depth_);
  ReadToken token;
  for (;;) {
    if (!read(token)) return false;
    if (token.token == closer) return true;
    if (token.is(Token::EndOfText)) {
      reader_.report(missing);
      return false;
    }
    if (token.is(Token::Semicolon)) continue;
    if (listMembers && (token.is(Token::Destination) || token.is(Token::Options) ||
                        token.is(Token::Skip) || token.is(Token::Unconverted))) {
      if (!statement(token)) return false;
      continue;
    }
    reader_.putBack();
    if (!tildeGroup()) return false;
  }
}

bool Skipper::listBody() {
  return members(Token::EndList, "Missing endlist", true);
}

bool Skipper::optionsBody() {
  return members(Token::EndOptions, "Missing endoptions", false);
}

bool Skipper::switchBody() {
  return members(Token::EndSwitch, "Missing endswitch", false);
}

bool Skipper::toToken(std::initializer_list<Token> stops, ReadToken& found) {
  if (!enter()) return false;
  Nest nest(depth_);
  for (;;) {
    if (!read(found)) return false;
    if (std::find(stops.begin(), stops.end(), found.token) != stops.end()) return true;
    if (found.is(Token::EndOfText)) {
      reader_.report("Premature end of script");
      return false;
    }
    if (!statement(found)) return false;
  }
}

bool Skipper::statement(const ReadToken& first) {
  if (!enter()) return false;
  Nest nest(depth_);
  ReadToken token;
  switch (first.token) {
    case Token::EndOfText:
    case Token::OpenParen:
    case Token::CloseParen:
    case Token::Comma:
    case Token::Semicolon:
    case Token::Equals:
    case Token::OpenBrace:
    case Token::CloseBrace:
    case Token::Tilde:
    case Token::End:
      return true;
    case Token::Plain:
      return plainWord();
    case Token::Add:
    case Token::AddOption:
    case Token::Option:
      return toSemicolonOutsideQuotes();
    case Token::Copyright:
    case Token::Destination:
    case Token::Title:
    case Token::Unconverted:
      return read(token);
    case Token::Context:
      return head() && toToken({Token::EndContext}, token);
    case Token::Item:
      return head() && toToken({Token::EndItem}, token);
    case Token::For:
      return head() && toToken({Token::EndFor}, token);
    case Token::Foreach:
      return head() && toToken({Token::EndForeach}, token);
    case Token::While:
      return head() && toToken({Token::EndWhile}, token);
    case Token::If:
      return ifStatement();
    case Token::Dialog:
      return dialog();
    case Token::List:
      return read(token) && listBody();
    case Token::Options:
      return optionsBody();
    case Token::Switch:
      return head(kSwitchHeadCapacity) && switchBody();
    case Token::MenuItem:
      return menuItem();
    case Token::Submenu:
      return submenu();
    case Token::Func:
      return func();
    case Token::Sub:
      reader_.report("Subroutine may not be define here.");
      return false;
    case Token::Else:
    case Token::ElseIf:
    case Token::EndContext:
    case Token::EndFor:
    case Token::EndForeach:
    case Token::EndIf:
    case Token::EndItem:
    case Token::EndList:
    case Token::EndOptions:
    case Token::EndSwitch:
    case Token::EndWhile:
    case Token::EndSubmenu:
      reader_.report(strprintf("Unmatched %s found", first.text));
      return false;
    default:
      return toSemicolon();
  }
}

}  // namespace

bool skipStatement(ScriptReader& reader, const ReadToken& first) {
  return Skipper(reader).statement(first);
}

bool skipToToken(ScriptReader& reader, std::initializer_list<Token> stops, ReadToken& found) {
  return Skipper(reader).toToken(stops, found);
}

bool skipTildeGroup(ScriptReader& reader) {
  return Skipper(reader).tildeGroup();
}

bool skipListBody(ScriptReader& reader) {
  return Skipper(reader).listBody();
}

bool skipOptionsBody(ScriptReader& reader) {
  return Skipper(reader).optionsBody();
}

bool skipSwitchBody(ScriptReader& reader) {
  return Skipper(reader).switchBody();
}

}  // namespace zv::script
