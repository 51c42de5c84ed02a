#pragma once
// Passing over statements without running them. Each statement is passed over by its keyword,
// so that the shape of the script is checked also in branches that are not taken.

#include <initializer_list>

#include "script/reader/script_reader.h"

namespace zv::script {

/// The deepest nesting of statements the reader passes over or the interpreter runs.
inline constexpr int kMaxNesting = 200;

/// Passes over the statement whose first token `first` has just been read. False after its
/// message ("Subroutine may not be define here.", "Unmatched %s found", "Missing endlist", ...).
bool skipStatement(ScriptReader& reader, const ReadToken& first);

/// Reads tokens up to one of `stops`, passing over every statement met on the way; the stop token
/// read is in `found`. False after "Premature end of script" or a statement's own message.
bool skipToToken(ScriptReader& reader, std::initializer_list<Token> stops, ReadToken& found);

/// Passes over a `~` group whose first token has not been read yet: tokens to the next `~`, then
/// statements up to `end`. False after "Missing end after ~ (started around line %d)".
bool skipTildeGroup(ScriptReader& reader);

/// Passes over the members of a `list` up to and including `endlist` (the name has been read).
bool skipListBody(ScriptReader& reader);
/// Passes over the members of an `options` up to and including `endoptions`.
bool skipOptionsBody(ScriptReader& reader);
/// Passes over the members of a `switch` (its head has been read) up to `endswitch`.
bool skipSwitchBody(ScriptReader& reader);

}  // namespace zv::script
