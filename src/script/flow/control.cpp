// if, for, while, switch and context.

#include "core/strfmt.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "script/expand/expand.h"
#include "script/flow/dispatch.h"
#include "script/flow/statements.h"
#include "script/reader/skip.h"
#include "script/state/evaluate.h"

namespace zv::script {

namespace {

/// Behind a branch that ran: passes over the other branches up to `endif`. The end of the text
/// closes the `if` without a word.
Flow skipRestOfIf(ScriptRun& run) {
  ReadToken token;
  for (;;) {
    if (!run.reader.readToken(token)) return Flow::Stop;
    switch (token.token) {
      case Token::EndIf:
        return Flow::Next;
      case Token::EndOfText:
        run.reader.putBack();
        return Flow::Next;
      case Token::ElseIf: {
        std::string head;
        if (!run.reader.readHead(head)) return Flow::Stop;
        break;
      }
      case Token::Else:
        break;
      default:
        if (!skipStatement(run.reader, token)) return Flow::Stop;
    }
  }
}

/// The variable of a `for`: a local of the innermost call, else a variable of the context.
Symbol* findLoopVariable(ScriptRun& run, std::string_view name, SymbolTable*& table) {
  if (SymbolTable* locals = run.locals()) {
    if (Symbol* local = locals->findHere(name)) {
      table = locals;
      return local;
    }
  }
  Symbol* symbol = run.context->find(name);
  if (symbol != nullptr && symbol->isVariable() && !symbol->undefined()) {
    table = symbol->table != nullptr ? symbol->table : run.context;
    return symbol;
  }
  table = run.context;
  return nullptr;
}

/// Evaluates a loop's condition afresh, expanded into a buffer of 128 bytes.
bool loopCondition(ScriptRun& run, const std::string& condition, bool& holds) {
  std::string text = condition.substr(0, 127);
  if (!expandExpression(run, text, 128)) return false;
  Value value;
  if (evaluateText(run, text, value) != 0) {
    run.reportError(strprintf("Unable to evaluate control expression: %s", text));
    return false;
  }
  holds = nonZeroTruth(value);
  return true;
}

struct ForHead {
  std::string variable;
  std::string start;
  std::string condition;
  std::string step;  ///< the expression of the step; empty for none
};

bool splitForHead(ScriptRun& run, const std::string& head, ForHead& out) {
  const std::size_t equals = head.find('=');
  out.variable = equals == std::string::npos ? "" : trimBlanks(head.substr(0, equals));
  if (out.variable.empty()) {
    run.reportError("Expected variable name in for assignment");
    return false;
  }
  const std::string rest = head.substr(equals + 1);
  const std::size_t first = rest.find(';');
  const std::size_t second = first == std::string::npos ? first : rest.find(';', first + 1);
  if (second == std::string::npos) {
    run.reportError("Expected semicolon for for");
    return false;
  }
  out.start = trimBlanks(rest.substr(0, first));
  out.condition = trimBlanks(rest.substr(first + 1, second - first - 1));
  const std::string step = trimBlanks(rest.substr(second + 1));
  if (!step.empty()) {
    const std::size_t stepEquals = step.find('=');
    if (stepEquals == std::string::npos ||
        !equalsIgnoringCase(trimBlanks(step.substr(0, stepEquals)), out.variable)) {
      run.reportError(
          "The same variable name must be used in the initialization and increment parts of the "
          "for");
      return false;
    }
    out.step = trimBlanks(step.substr(stepEquals + 1));
    if (out.step.empty()) out.step = "0";
  }
  return true;
}

bool initializeForVariable(ScriptRun& run, const ForHead& head) {
  std::string start = head.start.substr(0, 127);
  if (!expandExpression(run, start, 128)) return false;
  const std::string failure = strprintf("Unable to initialize %s to %s", head.variable, start);
  SymbolTable* table = nullptr;
  if (Symbol* variable = findLoopVariable(run, head.variable, table)) {
    Value value;
    if (evaluateText(run, start, value) != 0 || setValue(*table, *variable, value) != 0) {
      run.reportError(failure);
      return false;
    }
    return true;
  }
  if (defineVariable(*run.context, head.variable, start) == nullptr) {
    run.reportError(failure);
    return false;
  }
  return true;
}

bool stepForVariable(ScriptRun& run, const ForHead& head) {
  std::string step = head.step;
  if (!expandExpression(run, step)) return false;
  Value value;
  if (evaluateText(run, step, value) != 0) {
    run.reportError(strprintf("Unable to evaluate increment expression: %s", step));
    return false;
  }
  SymbolTable* table = nullptr;
  Symbol* variable = findLoopVariable(run, head.variable, table);
  if (variable == nullptr) variable = defineVariable(*run.context, head.variable, "0");
  if (variable == nullptr || setValue(*table, *variable, value) != 0) {
    run.reportError("Error incrementing for variable");
    return false;
  }
  return true;
}

/// Runs a `~` group's statements up to `end`, or passes over them.
Flow groupStatements(ScriptRun& run, bool runIt) {
  const int startLine = run.reader.position.line;
  const char* missing = "Missing end after ~ (started around line %d)";
  if (runIt) return runBody(run, Token::End, missing, startLine);
  return skipBody(run, Token::End, missing, startLine) ? Flow::Next : Flow::Stop;
}

/// Reads one case of a `switch`: tokens up to a "," or "~" at bracket depth zero. The text as
/// written is in `text`, the ender in `ender`.
bool readSwitchCase(ScriptRun& run, std::string& text, Token& ender) {
  ScriptReader& reader = run.reader;
  ReadToken token;
  int depth = 0;
  std::size_t begin = std::string::npos;
  std::size_t end = 0;
  for (;;) {
    if (!reader.readToken(token)) return false;
    const bool closes = depth == 0 && (token.is(Token::Comma) || token.is(Token::Tilde));
    if (closes) {
      ender = token.token;
      break;
    }
    if (token.is(Token::EndOfText) || token.is(Token::Semicolon) || token.is(Token::End) ||
        token.is(Token::EndSwitch) || token.is(Token::Default)) {
      run.reportError("Comma missing after switch case.");
      return false;
    }
    if (token.is(Token::OpenParen)) ++depth;
    if (token.is(Token::CloseParen)) --depth;
    if (begin == std::string::npos) begin = reader.lastToken.offset;
    end = reader.position.offset;
  }
  const std::string& source = reader.position.source->text;
  text = begin == std::string::npos ? "" : trimBlanks(source.substr(begin, end - begin));
  return true;
}

}  // namespace

Flow runIf(ScriptRun& run) {
  const int startLine = run.reader.lastToken.line;
  std::string head;
  if (!run.reader.readHead(head)) return Flow::Stop;
  Value value;
  if (!evaluateStatementText(run, head, "Error in if expression: %s", value)) return Flow::Stop;
  bool taken = integerTruth(value);
  const std::string missing = strprintf("Missing endif on if starting at line %d", startLine);
  ReadToken token;
  while (!taken) {
    if (!run.reader.readToken(token)) return Flow::Stop;
    switch (token.token) {
      case Token::EndIf:
        return Flow::Next;
      case Token::EndOfText:
        return run.fail(missing);
      case Token::ElseIf:
        if (!run.reader.readHead(head) ||
            !evaluateStatementText(run, head, "Error in if expression: %s", value)) {
          return Flow::Stop;
        }
        taken = integerTruth(value);
        break;
      case Token::Else:
        taken = true;
        break;
      default:
        if (!skipStatement(run.reader, token)) return Flow::Stop;
    }
  }
  if (runStatements(run, {Token::ElseIf, Token::Else, Token::EndIf, Token::End}, token) ==
      Flow::Stop) {
    return Flow::Stop;
  }
  switch (token.token) {
    case Token::EndIf:
    case Token::EndOfText:
      return Flow::Next;
    case Token::End:
      return run.fail(missing);
    case Token::ElseIf:
      if (!run.reader.readHead(head)) return Flow::Stop;
      return skipRestOfIf(run);
    default:
      return skipRestOfIf(run);
  }
}

Flow runFor(ScriptRun& run) {
  const int startLine = run.reader.lastToken.line;
  std::string headText;
  if (!run.reader.readHead(headText)) return Flow::Stop;
  ForHead head;
  if (!splitForHead(run, headText, head) || !initializeForVariable(run, head)) return Flow::Stop;
  const char* missing = "Missing endfor (for started on line %d)";
  const ScriptPosition bodyStart = run.reader.position;
  if (!skipBody(run, Token::EndFor, missing, startLine)) return Flow::Stop;
  const ScriptPosition afterEnd = run.reader.position;
  for (;;) {
    if (!run.checkCancel()) return Flow::Stop;
    bool holds = false;
    if (!loopCondition(run, head.condition, holds)) return Flow::Stop;
    if (!holds) break;
    jumpTo(run.reader, bodyStart);
    if (runBody(run, Token::EndFor, missing, startLine) == Flow::Stop) return Flow::Stop;
    if (run.environment.debugger != nullptr) {
      ScriptPosition atFor = bodyStart;
      atFor.line = startLine;
      run.environment.debugger->line(atFor);
    }
    if (!head.step.empty() && !stepForVariable(run, head)) return Flow::Stop;
  }
  jumpTo(run.reader, afterEnd);
  return Flow::Next;
}

Flow runWhile(ScriptRun& run) {
  const int startLine = run.reader.lastToken.line;
  std::string condition;
  if (!run.reader.readHead(condition)) return Flow::Stop;
  const char* missing = "Missing endwhile (for started on line %d)";
  const ScriptPosition bodyStart = run.reader.position;
  if (!skipBody(run, Token::EndWhile, missing, startLine)) return Flow::Stop;
  const ScriptPosition afterEnd = run.reader.position;
  for (;;) {
    if (!run.checkCancel()) return Flow::Stop;
    bool holds = false;
    if (!loopCondition(run, condition, holds)) return Flow::Stop;
    if (!holds) break;
    jumpTo(run.reader, bodyStart);
    if (runBody(run, Token::EndWhile, missing, startLine) == Flow::Stop) return Flow::Stop;
  }
  jumpTo(run.reader, afterEnd);
  return Flow::Next;
}

Flow runSwitch(ScriptRun& run) {
  std::string head;
  if (!run.reader.readHead(head, kSwitchHeadCapacity)) return Flow::Stop;
  Value subject;
  if (!evaluateStatementText(run, head, "Unable to evaluate switch expression: %s", subject)) {
    return Flow::Stop;
  }
  bool ran = false;
  bool afterDefault = false;
  ReadToken token;
  for (;;) {
    if (!run.reader.readToken(token)) return Flow::Stop;
    if (token.is(Token::EndSwitch)) return Flow::Next;
    if (token.is(Token::EndOfText)) return run.fail("Missing endswitch");
    if (token.is(Token::Semicolon)) continue;
    if (token.is(Token::Default)) {
      if (!run.reader.readToken(token)) return Flow::Stop;
      if (!token.is(Token::Tilde)) return run.fail("Missing ~ after switch default");
      const bool matches = !ran;
      if (groupStatements(run, matches) == Flow::Stop) return Flow::Stop;
      ran = ran || matches;
      afterDefault = true;
      continue;
    }
    if (afterDefault) return run.fail("Found case after switch default");
    if (token.is(Token::End)) return run.fail("Missing ~ after switch case.");
    run.reader.putBack();
    bool matched = false;
    for (;;) {
      std::string caseText;
      Token ender = Token::Tilde;
      if (!readSwitchCase(run, caseText, ender)) return Flow::Stop;
      if (!ran && !matched) {
        Value value;
        if (!evaluateStatementText(run, caseText, "Unable to evaluate switch case: %s", value)) {
          return Flow::Stop;
        }
        matched = compareValues(subject, value) == 0;
      }
      if (ender == Token::Tilde) break;
    }
    const bool runIt = matched && !ran;
    if (groupStatements(run, runIt) == Flow::Stop) return Flow::Stop;
    ran = ran || runIt;
  }
}

Flow runContext(ScriptRun& run) {
  const int startLine = run.reader.lastToken.line;
  std::string head;
  if (!run.reader.readHead(head)) return Flow::Stop;
  head = trimBlanks(head);
  FileInfo* sheet = nullptr;
  if (equalsIgnoringCase(head, "source") || equalsIgnoringCase(head, "src")) {
    sheet = run.sourceSheet;
  } else if (equalsIgnoringCase(head, "destination") || equalsIgnoringCase(head, "dest")) {
    sheet = run.destSheet;
  } else {
    return run.fail("context() requires source or destination indicator");
  }
  SymbolTable* previous = run.context;
  if (sheet->symbols) run.context = sheet->symbols.get();
  const Flow flow =
      runBody(run, Token::EndContext, "Missing endcontext (context started on line %d)", startLine);
  run.context = previous;
  return flow;
}

}  // namespace zv::script
