// The token helpers of the sheet grammar and its simple blocks: info, name lists, definitions.

#include "formats/sheet/sheet_grammar.h"

#include "core/messages.h"
#include "core/strfmt.h"

namespace zv {

SheetGrammar::SheetGrammar(TokenStream& input, FileInfo& sheet, const SheetReadOptions& options)
    : in_(input), sheet_(sheet), options_(options), screen_(host().screenPixelsPerInch()) {}

bool SheetGrammar::fail(std::string_view text) {
  showError(text);
  reported_ = true;
  return false;
}

bool SheetGrammar::failTitled(std::string_view title, std::string_view text) {
  showTitled(Severity::Error, title, text);
  reported_ = true;
  return false;
}

bool SheetGrammar::failToken(int result) {
  if (result == kTokenFailed) reported_ = true;
  return false;
}

SheetToken SheetGrammar::next(size_t capacity) {
  if (pending_) {
    SheetToken token = std::move(*pending_);
    pending_.reset();
    return token;
  }
  SheetToken token;
  int result = in_.readKeyword(token.text, capacity);
  if (result == kNotKeyword || result == 0) {
    token.id = SheetToken::kWord;
  } else {
    token.id = result;
    if (result == kTokenFailed) reported_ = true;
    // A binary keyword id that the table lacks is named by its number.
    if (result > 0 && token.text.empty()) token.text = std::to_string(result);
  }
  lastToken_ = token.text;
  return token;
}

bool SheetGrammar::readInt(std::int16_t& value) {
  int result = in_.readInt(value);
  return result == kTokenOk || failToken(result);
}

bool SheetGrammar::readLong(std::int32_t& value) {
  int result = in_.readLong(value);
  return result == kTokenOk || failToken(result);
}

bool SheetGrammar::readReal(double& value) {
  int result = in_.readReal(value);
  return result == kTokenOk || failToken(result);
}

bool SheetGrammar::readText(std::string& value) {
  if (in_.readText(value)) return true;
  // The text form shows its own message for a quoted word cut by a line end.
  if (!in_.binary() && in_.lastChar() == kEndOfLine) reported_ = true;
  return false;
}

bool SheetGrammar::readWord(std::string& value, std::size_t capacity) {
  int result = in_.readWord(value, capacity);
  return result == kTokenOk || failToken(result);
}

bool SheetGrammar::readCoordX(std::int16_t& value) {
  int result = in_.readCoord(value, sheet_.pixInX, screen_.x);
  return result == kTokenOk || failToken(result);
}

bool SheetGrammar::readCoordY(std::int16_t& value) {
  int result = in_.readCoord(value, sheet_.pixInY, screen_.y);
  return result == kTokenOk || failToken(result);
}

bool SheetGrammar::readJoinedText(std::string& target) {
  std::string piece;
  if (!readText(piece)) return false;
  if (piece.empty()) return true;
  if (target.empty()) {
    target = std::move(piece);
  } else {
    target += ';';
    target += piece;
  }
  return true;
}

bool SheetGrammar::readInfoBlock() {
  for (;;) {
    SheetToken token = next();
    if (token.failed()) return false;
    if (token.closesBlock()) return true;
    bool ok = true;
    switch (token.id) {
      case kNotes: {
        std::optional<std::string> block = in_.readBlock16();
        ok = block.has_value();
        if (ok) sheet_.notes = std::move(*block);
        break;
      }
      case kNotesloc:
        ok = readCoordX(sheet_.notesLoc.x) && readCoordY(sheet_.notesLoc.y) &&
             readCoordX(sheet_.notesLoc.width) && readCoordY(sheet_.notesLoc.height);
        break;
      case kRichtext: {
        std::optional<std::string> block = in_.readBlock32();
        ok = block.has_value();
        if (ok) sheet_.richText = std::move(*block);
        break;
      }
      case kNotesopen:
        sheet_.setNotesOpen(true);
        break;
      case kRtopen:
        sheet_.setRichTextOpen(true);
        break;
      case kRtloc:
        ok = readCoordX(sheet_.richTextLoc.x) && readCoordY(sheet_.richTextLoc.y) &&
             readCoordX(sheet_.richTextLoc.width) && readCoordY(sheet_.richTextLoc.height) &&
             readLong(sheet_.richTextSelStart) && readLong(sheet_.richTextSelEnd);
        break;
      case kCreated:
        ok = readWord(sheet_.created);
        break;
      case kConstcost:
        sheet_.setConstCost(true);
        break;
      case kRunchargen:
        sheet_.setRunChargen(true);
        break;
      default:
        return fail(strprintf("Data file format error: %s", token.text));
    }
    if (!ok) {
      if (reported_) return false;
      return fail(strprintf("Data file format error: %s", token.text));
    }
  }
}

bool SheetGrammar::readNameBlock(std::vector<std::string>& names,
                                 std::string_view endOfInputMessage,
                                 const std::function<void(const std::string&)>& onName) {
  for (;;) {
    SheetToken token = next();
    if (token.failed()) return false;
    if (token.atEnd()) return fail(endOfInputMessage);
    if (token.is(kEnd)) return true;
    // Any other token is a name, keyword or not.
    names.push_back(token.text);
    if (onName) onName(names.back());
  }
}

bool SheetGrammar::readDefineBlock(std::vector<DefineRec>& defines) {
  SheetToken token = next();
  for (;;) {
    if (token.failed()) return false;
    if (token.closesBlock()) return true;
    if (!token.is(kVar) && !token.is(kFunc) && !token.is(kArray))
      return fail(strprintf("Unexpected token: %s", token.text));
    DefineRec define;
    define.kind = token.id;
    define.sourceId = options_.sourceId;
    if (!readText(define.name)) return reported_ ? false : fail("Can't add name to define");
    if (!readText(define.body)) {
      if (reported_) return false;
      return fail(strprintf("Error reading definition of '%s'", define.name));
    }
    if (SheetSymbolBinder* symbols = options_.symbols) {
      SheetSymbolBinder::Result result;
      if (define.kind == kVar) {
        result = symbols->defineVariable(sheet_, define.name, define.body);
      } else if (define.kind == kFunc) {
        result = symbols->defineFunction(sheet_, define.name, define.body);
      } else {
        result = symbols->defineArray(sheet_, define.name, define.body);
      }
      if (result.ok) {
        define.symbol = result.symbol;
      } else {
        showError(strprintf("Error: '%s': '%s': %s", result.error, define.name, define.body));
      }
    }
    defines.push_back(std::move(define));
    token = next();
    if (token.is(kScriptadded)) {
      defines.back().setScriptAdded(true);
      token = next();
    }
  }
}

}  // namespace zv
