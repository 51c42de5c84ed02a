// sub, call and return.

#include "core/strfmt.h"
#include "core/text.h"
#include "expr/expr_error.h"
#include "expr/symbols.h"
#include "script/expand/expand.h"
#include "script/flow/calls.h"
#include "script/flow/dispatch.h"
#include "script/flow/statements.h"
#include "script/state/dialog_fields.h"
#include "script/state/evaluate.h"

namespace zv::script {

namespace {

bool isParameterName(const ReadToken& token) {
  if (!token.is(Token::Plain) || token.quote != 0 || token.text.empty()) return false;
  const auto first = static_cast<unsigned char>(token.text.front());
  if (!isLetterChar(first) && first != '_') return false;
  for (char c : token.text) {
    const auto byte = static_cast<unsigned char>(c);
    if (!isLetterChar(byte) && !(c >= '0' && c <= '9') && c != '_') return false;
  }
  return true;
}

/// Marks a subroutine active with a frame of locals for the time of a call.
class CallScope {
 public:
  CallScope(ScriptRun& run, Subroutine& subroutine) : run_(run), subroutine_(subroutine) {
    subroutine.active = true;
    CallFrame frame;
    frame.subroutine = &subroutine;
    frame.locals = std::make_unique<SymbolTable>();
    frame.locals->owner = run.context->owner;
    run.frames.push_back(std::move(frame));
  }
  ~CallScope() {
    run_.frames.pop_back();
    subroutine_.active = false;
  }
  CallScope(const CallScope&) = delete;
  CallScope& operator=(const CallScope&) = delete;

 private:
  ScriptRun& run_;
  Subroutine& subroutine_;
};

}  // namespace

Flow callSubroutine(ScriptRun& run, Subroutine& subroutine,
                    const std::vector<std::string>& arguments, Value& result) {
  result = Value();
  if (!run.checkCancel()) return Flow::Stop;
  if (subroutine.active) {
    return run.fail(strprintf("Recursive subroutine call: %s.", subroutine.name));
  }
  if (arguments.size() > subroutine.parameters.size()) {
    return run.fail(strprintf("Too many parameters found for %s.", subroutine.name));
  }
  if (arguments.size() < subroutine.parameters.size()) {
    return run.fail(strprintf("Incorrect number of parameters in call to %s.", subroutine.name));
  }
  // The arguments are worked out in the caller's scope, before the new frame exists.
  std::vector<Value> values(arguments.size());
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (!evaluateStatementText(run, arguments[i], "Error in argument expression: %s", values[i])) {
      return Flow::Stop;
    }
  }
  NestingGuard nesting(run);
  if (!nesting.ok()) return Flow::Stop;
  CallScope scope(run, subroutine);
  SymbolTable& locals = *run.locals();
  for (std::size_t i = 0; i < values.size(); ++i) {
    Symbol* parameter = defineVariable(locals, subroutine.parameters[i], "0");
    if (parameter == nullptr || setValue(locals, *parameter, values[i]) != 0) {
      return run.fail(strprintf("Error defining %s", subroutine.parameters[i]));
    }
  }
  const ScriptPosition caller = run.reader.position;
  jumpTo(run.reader, ScriptPosition{subroutine.body, 0, subroutine.line});
  if (run.environment.debugger != nullptr) {
    run.environment.debugger->pushFrame(subroutine.name, run.reader.position);
  }
  ReadToken found;
  Flow flow = runStatements(run, {Token::CloseBrace}, found);
  if (run.environment.debugger != nullptr) run.environment.debugger->popFrame();
  if (flow == Flow::Stop && run.returnPending) {
    run.returnPending = false;
    result = std::move(run.returnValue);
    run.returnValue = Value();
    flow = Flow::Next;
  }
  if (flow == Flow::Next) jumpTo(run.reader, caller);
  return flow;
}

Flow valueOfText(ScriptRun& run, const std::string& text, const char* format, Value& out) {
  if (std::optional<std::string> raw = sourceFieldText(*run.sourceSheet, trimBlanks(text))) {
    out = Value(std::move(*raw));
    return Flow::Next;
  }
  const std::size_t open = text.find('(');
  if (open != std::string::npos) {
    if (Subroutine* subroutine = run.findSubroutine(trimBlanks(text.substr(0, open)))) {
      ScriptReader arguments(
          ScriptPosition{makeSource(text.substr(open + 1), run.reader.position.file()), 0,
                         run.reader.position.line},
          [&run](std::string_view message) { run.reportError(message); });
      std::vector<std::string> texts;
      if (!arguments.readCallArguments(texts)) return Flow::Stop;
      ReadToken rest;
      if (!arguments.readToken(rest)) return Flow::Stop;
      if (!rest.is(Token::EndOfText)) return run.fail(strprintf(format, text));
      return callSubroutine(run, *subroutine, texts, out);
    }
  }
  return evaluateStatementText(run, text, format, out) ? Flow::Next : Flow::Stop;
}

Flow runSub(ScriptRun& run) {
  ScriptReader& reader = run.reader;
  ReadToken token;
  if (!reader.readToken(token)) return Flow::Stop;
  if (!token.is(Token::Plain) || token.quote != 0) return run.fail("Expected subroutine name");
  const std::string name = token.text;
  if (run.findSubroutine(name) != nullptr) {
    return run.fail(strprintf("Subroutine %s redefined", name));
  }
  auto subroutine = std::make_unique<Subroutine>();
  subroutine->name = name;
  if (!reader.readToken(token)) return Flow::Stop;
  if (token.is(Token::OpenParen)) {
    if (!reader.readToken(token)) return Flow::Stop;
    if (!token.is(Token::CloseParen)) {
      for (int number = 1;; ++number) {
        if (!isParameterName(token)) {
          return run.fail(strprintf("Illegal parameter name: parameter %d", number));
        }
        subroutine->parameters.push_back(token.text);
        if (!reader.readToken(token)) return Flow::Stop;
        if (token.is(Token::CloseParen)) break;
        if (!token.is(Token::Comma)) {
          return run.fail(strprintf("Expected comma after parameter %d", number));
        }
        if (!reader.readToken(token)) return Flow::Stop;
      }
    }
    if (!reader.readToken(token)) return Flow::Stop;
  }
  if (!token.is(Token::OpenBrace)) return run.fail("Expected { for subroutine definition.");
  subroutine->line = reader.position.line;
  const std::size_t bodyStart = reader.position.offset;
  for (;;) {
    if (!reader.readToken(token)) return Flow::Stop;
    if (token.is(Token::CloseBrace)) break;
    if (token.is(Token::EndOfText)) return run.fail("Missing } at end of subroutine definition");
  }
  const std::string& text = reader.position.source->text;
  subroutine->body = makeSource(text.substr(bodyStart, reader.position.offset - bodyStart),
                                reader.position.file());
  run.subroutines->push_back(std::move(subroutine));
  return Flow::Next;
}

Flow runCall(ScriptRun& run) {
  ScriptReader& reader = run.reader;
  ReadToken token;
  if (!reader.readToken(token)) return Flow::Stop;
  if (!token.is(Token::Plain) || token.quote != 0) return run.fail("Expected subroutine name");
  Subroutine* subroutine = run.findSubroutine(token.text);
  if (subroutine == nullptr) return run.fail(strprintf("Subroutine %s undefined.", token.text));
  if (subroutine->active) {
    return run.fail(strprintf("Recursive subroutine call: %s.", subroutine->name));
  }
  if (!reader.readToken(token)) return Flow::Stop;
  if (!token.is(Token::OpenParen)) {
    return run.fail(strprintf("Missing parameters in call to %s.", subroutine->name));
  }
  std::vector<std::string> arguments;
  if (!reader.readCallArguments(arguments)) return Flow::Stop;
  Value ignored;
  return callSubroutine(run, *subroutine, arguments, ignored);
}

Flow runReturn(ScriptRun& run) {
  ReadToken next;
  if (!run.reader.peekToken(next)) return Flow::Stop;
  Value value;
  if (next.is(Token::Semicolon) || next.is(Token::EndOfText)) {
    if (next.is(Token::Semicolon)) run.reader.readToken(next);
  } else {
    std::string text;
    char found = '\0';
    if (!run.reader.scanToDelimiter(";", text, found)) return Flow::Stop;
    if (!evaluateStatementText(run, text, "Error in return expression: %s", value)) {
      return Flow::Stop;
    }
  }
  if (run.frames.empty()) {
    run.errorReported = true;
    return Flow::Stop;
  }
  run.returnPending = true;
  run.returnValue = std::move(value);
  return Flow::Stop;
}

}  // namespace zv::script
