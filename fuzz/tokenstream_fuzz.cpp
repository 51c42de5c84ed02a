// Reads arbitrary bytes as a token stream, in the form the magic test picks and then in the other
// form, with every kind of token reader in turn; each token read is written out again in both
// forms. Nothing may crash, hang, leak or read out of bounds.

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/headless_host.h"
#include "formats/tokens/keywords.h"
#include "formats/tokens/tokenstream.h"

namespace {

using namespace zv;

constexpr int kMaxTokens = 100000;

// One read of the kind chosen by `step`; false when reading must stop.
bool readOne(TokenStream& in, TokenStream& textOut, TokenStream& binaryOut, int step,
             int& lastKeyword) {
  std::string text;
  int result = kTokenOk;
  switch (step % 11) {
    case 0:
    case 1: {
      result = in.readKeyword(text, 128);
      if (result > 0) {
        lastKeyword = result;
        textOut.writeKeyword(result);
        binaryOut.writeKeyword(result);
        return true;
      }
      if (result == kNotKeyword) result = kTokenOk;
      break;
    }
    case 2:
      result = in.readWord(text, 64);
      break;
    case 3:
      result = in.readText(text) ? kTokenOk : kTokenEndOfFile;
      break;
    case 4: {
      double real = 0;
      result = in.readReal(real);
      if (result == kTokenOk) {
        textOut.writeReal(real);
        binaryOut.writeReal(real);
      }
      return result == kTokenOk;
    }
    case 5: {
      int16_t value = 0;
      result = in.readInt(value);
      if (result == kTokenOk && lastKeyword == kRealsize) in.setRealSize(value);
      if (result == kTokenOk) {
        textOut.writeInt(value);
        binaryOut.writeInt(value);
      }
      return result == kTokenOk;
    }
    case 6: {
      int32_t value = 0;
      result = in.readLong(value);
      if (result == kTokenOk) {
        textOut.writeLong(value);
        binaryOut.writeLong(value);
      }
      return result == kTokenOk;
    }
    case 7: {
      if (in.binary() && step % 3 == 0) in.skip();  // the alarm path, which reads on
      int16_t value = 0;
      return in.readCoord(value, 120, 96) == kTokenOk;
    }
    case 8: {
      auto block = in.readBlock16();
      textOut.writeKeywordBlock(kNotes, block);
      binaryOut.writeKeywordBlock(kNotes, block);
      return block.has_value();
    }
    case 9: {
      auto block = in.readBlock32();
      textOut.writeKeywordBlock(kRichtext, block);
      binaryOut.writeKeywordBlock(kRichtext, block);
      return block.has_value();
    }
    default: {
      result = in.readBytes(text, static_cast<size_t>(step % 7));
      if (result == kTokenOk) {
        textOut.writeBytes(text);
        binaryOut.writeBytes(text);
      }
      return result == kTokenOk;
    }
  }
  if (result != kTokenOk) return false;
  textOut.writeString(text);
  binaryOut.writeString(text);
  return true;
}

void readAll(const std::string& data, bool otherForm) {
  TokenStream in;
  in.setStream(std::make_unique<MemoryByteStream>(data));
  in.setName("fuzz.chr");
  if (in.openStream() != kTokenOk) return;
  if (otherForm) in.setBinary(!in.binary());

  MemoryByteStream textSink;
  MemoryByteStream binarySink;
  TokenStream textOut;
  TokenStream binaryOut;
  textOut.setStream(&textSink);
  binaryOut.setStream(&binarySink);
  binaryOut.setBinary(true);
  textOut.beginWrite();
  binaryOut.beginWrite();

  int lastKeyword = 0;
  for (int step = 0; step < kMaxTokens; ++step) {
    if (!readOne(in, textOut, binaryOut, step + static_cast<int>(data.size()), lastKeyword)) {
      break;
    }
  }
  textOut.flush();
  binaryOut.flush();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  static HeadlessHost quiet(nullptr);
  static HostInstallation installed(quiet);
  quiet.clearTranscript();
  TokenLineState& lines = tokenLineState();
  lines.lineNumber = 1;
  lines.macroInput = size % 2 == 1;

  const std::string data(reinterpret_cast<const char*>(bytes), size);
  readAll(data, false);
  readAll(data, true);
  return 0;
}
