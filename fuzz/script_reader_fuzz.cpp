// Feeds the input to the script reader: as a header and then tokens to the end of the text; as
// statements passed over by the skip table; as statement text, heads and call arguments. Nothing
// may crash, hang or exhaust the stack, whatever the nesting.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/item.h"
#include "script/reader/script_file.h"
#include "script/reader/script_reader.h"
#include "script/reader/skip.h"

namespace {

zv::script::ScriptReader readerOver(std::string text, zv::Item* item) {
  zv::script::ScriptPosition start{zv::script::makeSource(std::move(text), "fuzz.scp")};
  start.currentItem = item;
  return zv::script::ScriptReader(start, [](std::string_view) {});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 16384) return 0;
  const std::string text(reinterpret_cast<const char*>(data), size);
  zv::Item item(zv::ItemKind::Item, "Fuzzed \"item\"");

  {
    zv::script::ScriptReader reader = readerOver(text, &item);
    zv::script::ScriptHeader header;
    zv::script::readScriptHeader(reader, header);
    zv::script::ReadToken token;
    for (int guard = 0; guard < 100000 && reader.readToken(token, 64); ++guard) {
      if (token.is(zv::script::Token::EndOfText)) break;
    }
  }
  {
    zv::script::ScriptReader reader = readerOver(text, nullptr);
    zv::script::ReadToken token;
    for (int guard = 0; guard < 100000 && reader.readToken(token); ++guard) {
      if (token.is(zv::script::Token::EndOfText)) break;
      if (!zv::script::skipStatement(reader, token)) break;
    }
  }
  {
    zv::script::ScriptReader reader = readerOver(text, nullptr);
    std::string out;
    char found = '\0';
    std::vector<std::string> arguments;
    for (int guard = 0; guard < 1000 && !reader.position.atEnd(); ++guard) {
      const std::size_t before = reader.position.offset;
      if (!reader.scanToDelimiter(";~,", out, found, 256)) reader.position.offset = before + 1;
      if (reader.position.atEnd()) break;
      if (!reader.readHead(out)) reader.position.offset += 1;
      if (!reader.readCallArguments(arguments, 64)) reader.position.offset += 1;
      zv::script::stripQuotes(out);
    }
  }
  return 0;
}
