#pragma once
// The words of the script language and the one-character tokens. The reader looks a word up in
// one sorted table ignoring case; a word found there reads as its keyword token, any other word
// or a quoted string as the plain token.

#include <cstdint>
#include <span>
#include <string_view>

namespace zv::script {

enum class Token : std::uint8_t {
  EndOfText,
  Plain,  ///< a string or a word that is no keyword
  OpenParen,
  CloseParen,
  Comma,
  Semicolon,
  Equals,
  OpenBrace,
  CloseBrace,
  Tilde,
  // The keywords, in table order. "error" reads as Fail and "warning" as Warn.
  Add,
  AddAutoItems,
  AddOption,
  AppendProgress,
  Array,
  Button,
  Call,
  Category,
  CheckAllReq,
  CheckBox,
  CheckReq,
  CloseProgress,
  CloseSublist,
  ComboBox,
  Context,
  ConvLevels,
  CopyAll,
  CopyDefines,
  CopyDialog,
  CopyItem,
  CopyList,
  CopyNotes,
  CopyOption,
  Copyright,
  CtrlSize,
  DataSheet,
  Default,
  DefButton,
  DeleteItem,
  Destination,
  Dialog,
  DialogSize,
  DieRoller,
  DropDown,
  EditCombo,
  EditItem,
  EditText,
  Else,
  ElseIf,
  End,
  EndContext,
  EndFor,
  EndForeach,
  EndIf,
  EndItem,
  EndList,
  EndOptions,
  EndSubmenu,
  EndSwitch,
  EndWhile,
  Exclude,
  Exec,
  Exit,
  Fail,
  For,
  Foreach,
  Func,
  GameSystem,
  GetFileName,
  GetItem,
  If,
  Include,
  InsertItem,
  Item,
  KeepNext,
  Keyword,
  List,
  ListBox,
  Local,
  MatchBox,
  MatchList,
  MenuCommand,
  MenuItem,
  Notes,
  Number,
  OpenSublist,
  OpenWindow,
  Option,
  Options,
  OptQualifier,
  PauseProgress,
  PictureLibrary,
  PurgeDataSheet,
  PurgeDataSheetItems,
  RdOnly,
  Return,
  SameName,
  ScriptMode,
  SelectItem,
  Set,
  ShowAllReq,
  ShowProgress,
  ShowReq,
  Skip,
  SortList,
  Sub,
  Submenu,
  Switch,
  Text,
  Title,
  TreeList,
  Unconverted,
  Var,
  Warn,
  While,
};

/// One entry of the keyword table.
struct KeywordEntry {
  std::string_view word;
  Token token;
};

/// The 107 words of the language, sorted as the lookup compares them (ignoring case).
std::span<const KeywordEntry> keywordTable();

/// The keyword token of a word (ignoring case), or Token::Plain for any other word.
Token findKeyword(std::string_view word);

/// True for the tokens of the keyword table.
constexpr bool isKeyword(Token token) {
  return token >= Token::Add;
}

/// The text of a token for messages: a keyword's word in lower case ("endif"), a one-character
/// token's character, "end of text" or "" for the plain token.
std::string_view tokenName(Token token);

}  // namespace zv::script
