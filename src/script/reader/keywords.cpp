#include "script/reader/keywords.h"

#include <algorithm>
#include <array>

#include "core/text.h"

namespace zv::script {

namespace {

constexpr std::array<KeywordEntry, 107> kKeywords{{
    {"add", Token::Add},
    {"addautoitems", Token::AddAutoItems},
    {"addoption", Token::AddOption},
    {"appendprogress", Token::AppendProgress},
    {"array", Token::Array},
    {"button", Token::Button},
    {"call", Token::Call},
    {"category", Token::Category},
    {"checkallreq", Token::CheckAllReq},
    {"checkbox", Token::CheckBox},
    {"checkreq", Token::CheckReq},
    {"closeprogress", Token::CloseProgress},
    {"closesublist", Token::CloseSublist},
    {"combobox", Token::ComboBox},
    {"context", Token::Context},
    {"convlevels", Token::ConvLevels},
    {"copyall", Token::CopyAll},
    {"copydefines", Token::CopyDefines},
    {"copydialog", Token::CopyDialog},
    {"copyitem", Token::CopyItem},
    {"copylist", Token::CopyList},
    {"copynotes", Token::CopyNotes},
    {"copyoption", Token::CopyOption},
    {"copyright", Token::Copyright},
    {"ctrlsize", Token::CtrlSize},
    {"datasheet", Token::DataSheet},
    {"default", Token::Default},
    {"defbutton", Token::DefButton},
    {"deleteitem", Token::DeleteItem},
    {"destination", Token::Destination},
    {"dialog", Token::Dialog},
    {"dialogsize", Token::DialogSize},
    {"dieroller", Token::DieRoller},
    {"dropdown", Token::DropDown},
    {"editcombo", Token::EditCombo},
    {"edititem", Token::EditItem},
    {"edittext", Token::EditText},
    {"else", Token::Else},
    {"elseif", Token::ElseIf},
    {"end", Token::End},
    {"endcontext", Token::EndContext},
    {"endfor", Token::EndFor},
    {"endforeach", Token::EndForeach},
    {"endif", Token::EndIf},
    {"enditem", Token::EndItem},
    {"endlist", Token::EndList},
    {"endoptions", Token::EndOptions},
    {"endsubmenu", Token::EndSubmenu},
    {"endswitch", Token::EndSwitch},
    {"endwhile", Token::EndWhile},
    {"error", Token::Fail},
    {"exclude", Token::Exclude},
    {"exec", Token::Exec},
    {"exit", Token::Exit},
    {"fail", Token::Fail},
    {"for", Token::For},
    {"foreach", Token::Foreach},
    {"func", Token::Func},
    {"gamesystem", Token::GameSystem},
    {"getfilename", Token::GetFileName},
    {"getitem", Token::GetItem},
    {"if", Token::If},
    {"include", Token::Include},
    {"insertitem", Token::InsertItem},
    {"item", Token::Item},
    {"keepnext", Token::KeepNext},
    {"keyword", Token::Keyword},
    {"list", Token::List},
    {"listbox", Token::ListBox},
    {"local", Token::Local},
    {"matchbox", Token::MatchBox},
    {"matchlist", Token::MatchList},
    {"menucommand", Token::MenuCommand},
    {"menuitem", Token::MenuItem},
    {"notes", Token::Notes},
    {"number", Token::Number},
    {"opensublist", Token::OpenSublist},
    {"openwindow", Token::OpenWindow},
    {"option", Token::Option},
    {"options", Token::Options},
    {"optqualifier", Token::OptQualifier},
    {"pauseprogress", Token::PauseProgress},
    {"picturelibrary", Token::PictureLibrary},
    {"purgedatasheet", Token::PurgeDataSheet},
    {"purgedatasheetitems", Token::PurgeDataSheetItems},
    {"rdonly", Token::RdOnly},
    {"return", Token::Return},
    {"samename", Token::SameName},
    {"scriptmode", Token::ScriptMode},
    {"selectitem", Token::SelectItem},
    {"set", Token::Set},
    {"showallreq", Token::ShowAllReq},
    {"showprogress", Token::ShowProgress},
    {"showreq", Token::ShowReq},
    {"skip", Token::Skip},
    {"sortlist", Token::SortList},
    {"sub", Token::Sub},
    {"submenu", Token::Submenu},
    {"switch", Token::Switch},
    {"text", Token::Text},
    {"title", Token::Title},
    {"treelist", Token::TreeList},
    {"unconverted", Token::Unconverted},
    {"var", Token::Var},
    {"warn", Token::Warn},
    {"warning", Token::Warn},
    {"while", Token::While},
}};

constexpr std::string_view kSingleCharacterNames[] = {"end of text", "",  "(", ")", ",",
                                                      ";",           "=", "{", "}", "~"};

}  // namespace

std::span<const KeywordEntry> keywordTable() {
  return kKeywords;
}

Token findKeyword(std::string_view word) {
  const auto found = std::lower_bound(kKeywords.begin(), kKeywords.end(), word,
                                      [](const KeywordEntry& entry, std::string_view w) {
                                        return compareIgnoringCase(entry.word, w) < 0;
                                      });
  if (found != kKeywords.end() && equalsIgnoringCase(found->word, word)) return found->token;
  return Token::Plain;
}

std::string_view tokenName(Token token) {
  if (!isKeyword(token)) return kSingleCharacterNames[static_cast<int>(token)];
  for (const KeywordEntry& entry : kKeywords) {
    if (entry.token == token) return entry.word;
  }
  return "";
}

}  // namespace zv::script
