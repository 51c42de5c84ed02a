// Expands arbitrary bytes as a text data sheet through the macro processor, directly or through
// the token reader, with the expression engine behind $$if and $$exp. Nothing may crash, hang,
// leak or read out of bounds. The context has no source path and no data directory, so no include
// file is ever opened. A budget of characters bounds the work of expansions that fan out.

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/headless_host.h"
#include "formats/macro/macro_context.h"
#include "formats/tokens/tokenstream.h"

namespace {

using namespace zv;

constexpr std::size_t kMaxOutput = 4'000'000;
constexpr long kExpansionBudget = 2'000'000;

void expandDirectly(const std::string& data) {
  std::size_t position = 0;
  MacroContext context;
  context.setExpansionBudget(kExpansionBudget);
  context.macroStart({}, [&]() -> int {
    if (position >= data.size()) return kEndOfFile;
    return static_cast<unsigned char>(data[position++]);
  });
  std::size_t delivered = 0;
  while (delivered < kMaxOutput && context.macroNextChar() >= 0)
    ++delivered;
  context.macroClear();
}

void readTokens(const std::string& data) {
  TokenStream stream;
  stream.setStream(std::make_unique<MemoryByteStream>(data));
  stream.setName("fuzz.cds");
  if (stream.openStream() != kTokenOk || stream.binary()) return;
  MacroContext context;
  context.setExpansionBudget(kExpansionBudget);
  context.macroStart({}, [&stream] { return stream.readByte(); });
  stream.setCharSource(&context);
  std::string word;
  for (int i = 0; i < 1'000'000 && stream.readWord(word, 128) == kTokenOk; ++i) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  static HeadlessHost quiet(nullptr);
  static HostInstallation installed(quiet);
  quiet.clearTranscript();
  tokenLineState() = TokenLineState{1, true};

  const std::string data(reinterpret_cast<const char*>(bytes), size);
  if (size % 2 == 0) {
    expandDirectly(data);
  } else {
    readTokens(data);
  }
  return 0;
}
