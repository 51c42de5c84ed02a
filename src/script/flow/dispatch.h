#pragma once
// Running statements: the dispatcher that runs one statement by its first token, and the loops
// that run statements up to a closing keyword.

#include <initializer_list>
#include <string_view>

#include "script/state/script_run.h"

namespace zv::script {

/// Runs the statement whose first token has just been read. A plain word followed by "(" is a
/// call of that subroutine, any other plain word an assignment; the end of text, `end` and ";"
/// do nothing. Flow::Stop when the run is to stop.
Flow dispatchStatement(ScriptRun& run, const ReadToken& token);

/// Runs statements up to one of `stops`, which is read and left in `found`. At the end of the
/// text `found` is Token::EndOfText and the position stays before it: the caller decides what a
/// missing closer means.
Flow runStatements(ScriptRun& run, std::initializer_list<Token> stops, ReadToken& found);

/// Runs a body up to its closing keyword; the end of the text gives `missing` (a format with the
/// "%d" of `startLine`).
Flow runBody(ScriptRun& run, Token closer, const char* missing, int startLine);

/// Passes over a body up to and including its closing keyword; the end of the text gives
/// `missing` with `startLine`. False after the message.
bool skipBody(ScriptRun& run, Token closer, const char* missing, int startLine);

/// Reads statement text up to a delimiter and expands it: the usual argument of a command.
/// False after the message.
bool readExpanded(ScriptRun& run, std::string_view delimiters, std::string& text, char& found,
                  std::size_t capacity = kTokenCapacity);

/// Expands and evaluates statement text; false after `format` (with the text as its "%s") or the
/// expansion's message.
bool evaluateStatementText(ScriptRun& run, std::string text, const char* format, Value& out);

}  // namespace zv::script
