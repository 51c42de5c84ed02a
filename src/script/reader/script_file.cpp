#include "script/reader/script_file.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <system_error>

#include "core/messages.h"
#include "core/paths.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "script/reader/skip.h"

namespace zv::script {

namespace {

/// Reads a header item's string: a plain token, cut to `length` bytes.
bool readHeaderString(ScriptReader& reader, std::size_t length, const char* message,
                      std::string& out) {
  ReadToken token;
  if (!reader.readToken(token)) return false;
  if (!token.is(Token::Plain)) {
    reader.report(message);
    return false;
  }
  out = token.text.substr(0, length);
  return true;
}

bool readHeaderInteger(ScriptReader& reader, int& out) {
  ReadToken token;
  if (!reader.readToken(token)) return false;
  out = std::atoi(token.text.c_str());
  return true;
}

}  // namespace

std::shared_ptr<const SourceText> loadScriptFile(const std::filesystem::path& dataDir,
                                                 std::string_view name) {
  const std::filesystem::path path = findDataFile(dataDir, name);
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) {
    showError(strprintf("Conversion script %s doesn't exist", name));
    return nullptr;
  }
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    showError(strprintf("Can't open script file %s", name));
    return nullptr;
  }
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) {
    showError(strprintf("Read error on conversion script %s", name));
    return nullptr;
  }
  return makeSource(std::move(text), std::string(name));
}

bool readScriptHeader(ScriptReader& reader, ScriptHeader& header) {
  header = ScriptHeader{};
  ReadToken token;
  if (!reader.readToken(token)) return false;
  if (!token.is(Token::Plain) || !equalsIgnoringCase(token.text, kScriptSignature)) {
    reader.report(strprintf("The file %s is not formatted as a script.", reader.position.file()));
    return false;
  }
  for (;;) {
    if (!reader.readToken(token)) return false;
    switch (token.token) {
      case Token::GameSystem:
        if (!readHeaderString(reader, kGameSystemNameLength, "Game system string expected",
                              header.sourceSystem) ||
            !readHeaderString(reader, kGameSystemNameLength, "Game system string expected",
                              header.destSystem)) {
          return false;
        }
        header.hasGameSystems = true;
        break;
      case Token::Title:
        if (!readHeaderString(reader, kScriptTitleLength, "Script title expected.", header.title)) {
          return false;
        }
        break;
      case Token::ConvLevels:
        if (!readHeaderInteger(reader, header.sourceLevel) ||
            !readHeaderInteger(reader, header.destLevel)) {
          return false;
        }
        break;
      case Token::MenuItem:
      case Token::Submenu:
        header.hasMenu = true;
        if (!skipStatement(reader, token)) return false;
        break;
      case Token::Semicolon:
        break;
      default:
        reader.putBack();
        return true;
    }
  }
}

std::vector<ScriptListing> listScripts(const std::filesystem::path& dataDir,
                                       std::string_view extension, std::string_view gameSystem) {
  std::vector<ScriptListing> found;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(dataDir, error)) {
    if (!entry.is_regular_file(error)) continue;
    const std::string fileName = entry.path().filename().string();
    if (!endsWithIgnoringCase(fileName, extension)) continue;
    std::ifstream in(entry.path(), std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    ScriptReader reader(ScriptPosition{makeSource(std::move(text), fileName)}, nullptr);
    ScriptListing listing{fileName, {}};
    if (!readScriptHeader(reader, listing.header)) continue;
    if (!gameSystem.empty() && listing.header.hasGameSystems &&
        !equalsIgnoringCase(listing.header.sourceSystem, gameSystem)) {
      continue;
    }
    found.push_back(std::move(listing));
  }
  std::sort(found.begin(), found.end(), [](const ScriptListing& a, const ScriptListing& b) {
    return compareIgnoringCase(a.displayTitle(), b.displayTitle()) < 0;
  });
  return found;
}

}  // namespace zv::script
