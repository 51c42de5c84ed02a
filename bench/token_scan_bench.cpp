// A bare token scan of a large data-sheet-like file, in text and in binary form: each keyword is
// read with the value that follows it, and nothing is built. Reports bytes per second.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "core/headless_host.h"
#include "core/strfmt.h"
#include "formats/tokens/keywords.h"
#include "formats/tokens/tokenstream.h"

namespace {

using namespace zv;

// Reads from a block of memory without copying it.
class ViewByteStream : public ByteStream {
 public:
  explicit ViewByteStream(std::string_view data) : data_(data) {}
  long read(char* buffer, long count) override {
    size_t take = std::min(static_cast<size_t>(count), data_.size() - pos_);
    std::memcpy(buffer, data_.data() + pos_, take);
    pos_ += take;
    return static_cast<long>(take);
  }
  long write(const char*, long) override { return -1; }

 private:
  std::string_view data_;
  size_t pos_ = 0;
};

// About 190 bytes of text per item: quoted and plain words, reals with fractions, a comment, an
// escaped line break and a continuation line.
std::string makeTextSheet(int items) {
  static const char* const kNames[] = {"Long Sword", "Dagger", "Climb",      "Swim",
                                       "Fireball",   "Heal",   "Lockpicking"};
  std::string text = "\"Data Sheet file v. 1\"\r\n# generated for the token scan\r\n";
  for (int i = 0; i < items; ++i) {
    if (i % 500 == 0) text += strprintf("cat \"Category %d\"\r\n", i / 500);
    text += strprintf(
        "  item \"%s %d\" cost %d weight %d.5 level %d # entry %d\r\n"
        "    prereq \"Strength >= %d & Level >= 2\" formula cost*2 \\\r\n"
        "    notes \"A fine thing.\\n\\\r\nWell made.\" end\r\n",
        kNames[i % 7], i, i % 40, i % 9, i % 20, i, 10 + i % 8);
  }
  text += "end\r\n";
  return text;
}

// The scan: keyword, then the value its grammar gives it. Returns the tokens read.
long scan(TokenStream& in) {
  long tokens = 0;
  std::string buffer;
  std::string text;
  for (;;) {
    int id = in.readKeyword(buffer, 256);
    if (id < 0 && id != kNotKeyword) break;
    ++tokens;
    int result = kTokenOk;
    switch (id) {
      case kCost:
      case kWeight: {
        double value = 0;
        result = in.readReal(value);
        benchmark::DoNotOptimize(value);
        break;
      }
      case kLevel: {
        int16_t value = 0;
        result = in.readInt(value);
        benchmark::DoNotOptimize(value);
        break;
      }
      case kItem:
      case kCat:
      case kFormula:
        result = in.readWord(text, 256);
        break;
      case kPrereq:
        result = in.readText(text) ? kTokenOk : kTokenFailed;
        break;
      case kNotes:
        result = in.readBlock16() ? kTokenOk : kTokenFailed;
        break;
      default:
        break;
    }
    if (result != kTokenOk) break;
    ++tokens;
  }
  return tokens;
}

// The same tokens in binary form, written by converting the text with the same grammar.
std::string toBinary(const std::string& text) {
  TokenStream in;
  ViewByteStream source(text);
  in.setStream(&source);
  in.openStream();
  MemoryByteStream sink;
  TokenStream out;
  out.setStream(&sink);
  out.setBinary(true);
  out.beginWrite();
  out.writeLong(static_cast<int32_t>(kTokenFileMagic));
  std::string buffer;
  for (;;) {
    int id = in.readKeyword(buffer, 256);
    if (id == kNotKeyword) {
      out.writeString(buffer);
      continue;
    }
    if (id < 0) break;
    out.writeKeyword(id);
    switch (id) {
      case kCost:
      case kWeight: {
        double value = 0;
        in.readReal(value);
        out.writeReal(value);
        break;
      }
      case kLevel: {
        int16_t value = 0;
        in.readInt(value);
        out.writeInt(value);
        break;
      }
      case kItem:
      case kCat:
      case kFormula:
      case kPrereq:
      case kNotes:
        in.readWord(buffer, 40000);
        out.writeString(buffer);
        break;
      default:
        break;
    }
  }
  out.flush();
  return sink.data();
}

const std::string& textSheet() {
  static const std::string text = makeTextSheet(30000);
  return text;
}

const std::string& binarySheet() {
  static const std::string binary = toBinary(textSheet());
  return binary;
}

void runScan(benchmark::State& state, const std::string& data, bool binary) {
  HeadlessHost quiet(nullptr);
  HostInstallation installed(quiet);
  long tokens = 0;
  for (auto _ : state) {
    ViewByteStream source(data);
    TokenStream in;
    in.setStream(&source);
    in.openStream();
    if (in.binary() != binary) state.SkipWithError("wrong form");
    in.setRealSize(8);
    tokens = scan(in);
    benchmark::DoNotOptimize(tokens);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                          static_cast<int64_t>(data.size()));
  state.counters["tokens"] = static_cast<double>(tokens);
  state.counters["fileMB"] = static_cast<double>(data.size()) / 1e6;
}

void BM_TokenScanText(benchmark::State& state) {
  runScan(state, textSheet(), false);
}
void BM_TokenScanBinary(benchmark::State& state) {
  runScan(state, binarySheet(), true);
}

BENCHMARK(BM_TokenScanText)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TokenScanBinary)->Unit(benchmark::kMillisecond);

}  // namespace
