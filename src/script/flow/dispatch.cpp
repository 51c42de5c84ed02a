#include "script/flow/dispatch.h"

#include <algorithm>

#include "core/strfmt.h"
#include "expr/expr_error.h"
#include "script/expand/expand.h"
#include "script/flow/statements.h"
#include "script/reader/skip.h"
#include "script/state/evaluate.h"

namespace zv::script {

Flow dispatchStatement(ScriptRun& run, const ReadToken& token) {
  if (run.environment.debugger != nullptr) run.environment.debugger->line(run.reader.position);
  if (run.userCanceled) return run.fail("User canceled.");
  NestingGuard nesting(run);
  if (!nesting.ok()) return Flow::Stop;
  switch (token.token) {
    case Token::EndOfText:
    case Token::End:
    case Token::Semicolon:
      return Flow::Next;
    case Token::Plain: {
      const ScriptPosition atWord = run.reader.lastToken;
      ReadToken next;
      if (!run.reader.readToken(next)) return Flow::Stop;
      run.reader.position = atWord;
      return next.is(Token::OpenParen) ? runCall(run) : runAssignment(run);
    }
    default:
      break;
  }
  switch (token.token) {
    case Token::If:
      return runIf(run);
    case Token::For:
      return runFor(run);
    case Token::While:
      return runWhile(run);
    case Token::Foreach:
      return runForeach(run);
    case Token::Item:
      return runItem(run);
    case Token::Context:
      return runContext(run);
    case Token::Switch:
      return runSwitch(run);
    case Token::Var:
      return runVar(run, false);
    case Token::Array:
      return runArray(run, false);
    case Token::Local:
      return runVar(run, true);
    case Token::Func:
      return runFunc(run);
    case Token::Sub:
      return runSub(run);
    case Token::Call:
      return runCall(run);
    case Token::Return:
      return runReturn(run);
    case Token::Include:
      return runInclude(run);
    case Token::Exec:
      return runExec(run);
    case Token::Exit:
      return runExit(run);
    case Token::Fail:
      return runFail(run);
    case Token::Warn:
      return runWarn(run);
    case Token::ScriptMode:
      return run.fail("scriptmode command may appear only at outermost level of script.");
    case Token::Else:
    case Token::ElseIf:
    case Token::EndIf:
      return run.fail("Misplaced endif/else/elseif");
    default:
      break;
  }
  if (run.commands.command != nullptr) {
    if (std::optional<Flow> flow = run.commands.command(run, token)) return *flow;
  }
  return run.fail(strprintf("Unknown command: %s", token.text));
}

Flow runStatements(ScriptRun& run, std::initializer_list<Token> stops, ReadToken& found) {
  for (;;) {
    if (!run.reader.readToken(found)) return Flow::Stop;
    if (std::find(stops.begin(), stops.end(), found.token) != stops.end()) return Flow::Next;
    if (found.is(Token::EndOfText)) {
      run.reader.putBack();
      return Flow::Next;
    }
    if (dispatchStatement(run, found) == Flow::Stop) return Flow::Stop;
  }
}

Flow runBody(ScriptRun& run, Token closer, const char* missing, int startLine) {
  ReadToken found;
  if (runStatements(run, {closer}, found) == Flow::Stop) return Flow::Stop;
  if (found.is(Token::EndOfText)) return run.fail(strprintf(missing, startLine));
  return Flow::Next;
}

bool skipBody(ScriptRun& run, Token closer, const char* missing, int startLine) {
  ReadToken token;
  for (;;) {
    if (!run.reader.readToken(token)) return false;
    if (token.token == closer) return true;
    if (token.is(Token::EndOfText)) {
      run.reportError(strprintf(missing, startLine));
      return false;
    }
    if (!skipStatement(run.reader, token)) return false;
  }
}

bool readExpanded(ScriptRun& run, std::string_view delimiters, std::string& text, char& found,
                  std::size_t capacity) {
  return run.reader.scanToDelimiter(delimiters, text, found, capacity) &&
         expandExpression(run, text);
}

bool evaluateStatementText(ScriptRun& run, std::string text, const char* format, Value& out) {
  if (!expandExpression(run, text)) return false;
  if (evaluateText(run, text, out) != 0) {
    run.reportError(strprintf(format, text));
    return false;
  }
  return true;
}

}  // namespace zv::script
