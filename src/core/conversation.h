#pragma once
// Commands that another process sends to the program, as strings of the form
// [Name("arg","arg")][Name2(...)]... with at most 10 arguments each.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

struct ConversationCommand {
  std::string name;  ///< as written in the request: FileOpen, FilePrint, EditFilterCopy, ...
  std::vector<std::string> arguments;
};

struct ConversationRequest {
  std::vector<ConversationCommand> commands;  ///< the commands before any error, in order
  bool ok = true;  ///< false: a syntax error or a wrong argument count ended the sequence
};

inline constexpr size_t kMaxConversationArguments = 10;

/// Parses a request. Commands must be one of FileOpen (1 argument), FilePrint, EditFilterCopy (1),
/// FileExit, FileClose (none), named ignoring case; anything else ends the sequence as an error.
ConversationRequest parseConversation(std::string_view text);

/// The text of a request for these commands, each argument quoted: [FileOpen("a.chr")][FileExit()].
/// Nullopt when an argument holds a double quote, which the request's syntax can't carry.
std::optional<std::string> formatConversation(const std::vector<ConversationCommand>& commands);

}  // namespace zv
