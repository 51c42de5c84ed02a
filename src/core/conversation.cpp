#include "core/conversation.h"

#include <optional>

#include "core/text.h"

namespace zv {

namespace {

struct CommandShape {
  std::string_view name;
  size_t arguments;
};

constexpr CommandShape kCommands[] = {
    {"FileOpen", 1}, {"FilePrint", 0}, {"EditFilterCopy", 1}, {"FileExit", 0}, {"FileClose", 0},
};

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  void skipBlanks() {
    while (pos_ < text_.size() && (text_[pos_] == ' ' || text_[pos_] == '\t' ||
                                   text_[pos_] == '\r' || text_[pos_] == '\n')) {
      ++pos_;
    }
  }
  bool atEnd() {
    skipBlanks();
    return pos_ >= text_.size();
  }
  bool take(char c) {
    skipBlanks();
    if (pos_ < text_.size() && text_[pos_] == c) {
      ++pos_;
      return true;
    }
    return false;
  }
  std::string name() {
    skipBlanks();
    size_t start = pos_;
    while (pos_ < text_.size() && (isLetterChar(static_cast<unsigned char>(text_[pos_])) ||
                                   (text_[pos_] >= '0' && text_[pos_] <= '9'))) {
      ++pos_;
    }
    return std::string(text_.substr(start, pos_ - start));
  }
  /// A quoted argument, or an unquoted one running to "," or ")".
  std::optional<std::string> argument() {
    skipBlanks();
    if (pos_ < text_.size() && text_[pos_] == '"') {
      size_t close = text_.find('"', pos_ + 1);
      if (close == std::string_view::npos) return std::nullopt;
      std::string value(text_.substr(pos_ + 1, close - pos_ - 1));
      pos_ = close + 1;
      return value;
    }
    size_t start = pos_;
    while (pos_ < text_.size() && text_[pos_] != ',' && text_[pos_] != ')' && text_[pos_] != ']') {
      ++pos_;
    }
    if (pos_ == start) return std::nullopt;
    return trim(text_.substr(start, pos_ - start));
  }

 private:
  std::string_view text_;
  size_t pos_ = 0;
};

std::optional<ConversationCommand> parseOne(Scanner& in) {
  if (!in.take('[')) return std::nullopt;
  ConversationCommand command;
  command.name = in.name();
  if (command.name.empty()) return std::nullopt;
  if (in.take('(')) {
    if (!in.take(')')) {
      do {
        auto argument = in.argument();
        if (!argument || command.arguments.size() == kMaxConversationArguments) return std::nullopt;
        command.arguments.push_back(std::move(*argument));
      } while (in.take(','));
      if (!in.take(')')) return std::nullopt;
    }
  }
  if (!in.take(']')) return std::nullopt;
  return command;
}

}  // namespace

ConversationRequest parseConversation(std::string_view text) {
  ConversationRequest request;
  Scanner in(text);
  while (!in.atEnd()) {
    auto command = parseOne(in);
    const CommandShape* shape = nullptr;
    if (command) {
      for (const CommandShape& s : kCommands) {
        if (equalsIgnoringCase(s.name, command->name)) shape = &s;
      }
    }
    if (!shape || command->arguments.size() != shape->arguments) {
      request.ok = false;
      return request;
    }
    command->name = std::string(shape->name);
    request.commands.push_back(std::move(*command));
  }
  return request;
}

std::optional<std::string> formatConversation(const std::vector<ConversationCommand>& commands) {
  std::string text;
  for (const ConversationCommand& command : commands) {
    text += '[' + command.name + '(';
    for (std::size_t i = 0; i < command.arguments.size(); ++i) {
      if (command.arguments[i].find('"') != std::string::npos) return std::nullopt;
      if (i > 0) text += ',';
      text += '"' + command.arguments[i] + '"';
    }
    text += ")]";
  }
  return text;
}

}  // namespace zv
