// Loading a 20,000-item data sheet into its game system, in binary and in text through the macro
// processor, against a bare token scan of the same files: the scan reads each token with the
// type the grammar gives it and builds nothing. The load/scan ratio shows what the reader and
// the game system cost beyond reading tokens.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/headless_host.h"
#include "formats/datasheet/data_sheet_loader.h"
#include "formats/macro/macro_context.h"
#include "formats/tokens/keywords.h"
#include "formats/tokens/tokenstream.h"
#include "synthetic_game_system.h"

namespace {

using namespace zv;

/// The directory of the generated files: ZV_SYNTHETIC_DIR when it is set (the files stay there,
/// e.g. for measuring one load with zarvelin-cli load-data), else a temporary directory removed
/// when the program ends.
struct GeneratedDir {
  std::filesystem::path path;
  bool keep = false;
  ~GeneratedDir() {
    std::error_code ignored;
    if (!path.empty() && !keep) std::filesystem::remove_all(path, ignored);
  }
};

const std::filesystem::path& dataDir() {
  static const char* const wanted = std::getenv("ZV_SYNTHETIC_DIR");
  static const GeneratedDir generated{
      [] {
        std::filesystem::path path = wanted != nullptr && *wanted != '\0'
                                         ? std::filesystem::path(wanted)
                                         : std::filesystem::temp_directory_path() /
                                               ("zv-bench-synthia-" + std::to_string(::getpid()));
        HeadlessHost quiet(nullptr);
        HostInstallation installed(quiet);
        if (!bench::writeSyntheticGameSystem(path)) {
          std::error_code ignored;
          std::filesystem::remove_all(path, ignored);
          path.clear();
        }
        return path;
      }(),
      wanted != nullptr && *wanted != '\0'};
  return generated.path;
}

std::string readWhole(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

long countItems(const ItemChain& chain) {
  long count = 0;
  for (const auto& item : chain)
    count += 1 + countItems(item->children);
  return count;
}

void runLoad(benchmark::State& state, const std::string& name) {
  if (dataDir().empty()) return state.SkipWithError("the synthetic game system was not written");
  HeadlessHost quiet(nullptr);
  HostInstallation installed(quiet);
  engine().dataSheets = DataSheetSettings{dataDir(), 0, false};
  long items = 0;
  for (auto _ : state) {
    state.PauseTiming();
    clearGameSystems();
    state.ResumeTiming();
    if (!loadDataSheet(dataDir() / name, name)) return state.SkipWithError("the load failed");
  }
  for (const auto& category : findGameSystem("Synthia")->categories)
    items += countItems(category->items);
  state.counters["items"] = static_cast<double>(items);
  state.counters["fileMB"] =
      static_cast<double>(std::filesystem::file_size(dataDir() / name)) / 1e6;
  clearGameSystems();
}

/// The bare scan: each keyword with the values the data sheet grammar gives it, nothing kept.
long scan(TokenStream& in) {
  long tokens = 0;
  std::string buffer;
  std::string text;
  std::int16_t number = 0;
  std::int32_t longNumber = 0;
  double real = 0;
  bool inCategories = false;
  if (in.readWord(text, 256) != kTokenOk) return -1;
  for (;;) {
    const int id = in.readKeyword(buffer, 4096);
    ++tokens;
    if (id == kNotKeyword) continue;
    if (id < 0) break;
    int result = kTokenOk;
    switch (id) {
      case kVersion:
      case kRealsize:
      case kIntsize:
      case kLm:
      case kRm:
      case kTm:
      case kBm:
      case kTabwidth:
      case kColumns:
      case kColumnSpacing:
      case kCharstyle:
      case kPointsize:
      case kPitch:
      case kCharset:
      case kFirstindent:
      case kLineheight:
      case kJust:
      case kDeftab:
        result = in.readInt(number);
        break;
      case kTabs:
        result = in.readInt(number);
        for (int i = 0; result == kTokenOk && i < 2 * number; ++i)
          result = in.readInt(number);
        break;
      case kLevel:
        result = inCategories ? in.readWord(text, 4096) : in.readInt(number);
        break;
      case kCdelay:
      case kTextcolor:
        result = in.readLong(longNumber);
        break;
      case kCost:
      case kTotalcost:
        result = in.readReal(real);
        break;
      case kCat:
        inCategories = true;
        result = in.readWord(text, 4096);
        break;
      case kGamesystem:
      case kTitle:
      case kCopyright:
      case kItem:
      case kFormula:
      case kVarname:
      case kSublist:
      case kAlias:
      case kFacename:
      case kList:
        result = in.readWord(text, 4096);
        break;
      case kVar:
      case kFunc:
      case kArray:
      case kAdd:
      case kMult:
        result = in.readWord(text, 4096);
        if (result == kTokenOk) result = in.readWord(text, 4096);
        break;
      default:
        break;
    }
    if (result != kTokenOk) return -1;
    ++tokens;
  }
  benchmark::DoNotOptimize(real);
  return tokens;
}

void runScan(benchmark::State& state, const std::string& name) {
  if (dataDir().empty()) return state.SkipWithError("the synthetic game system was not written");
  HeadlessHost quiet(nullptr);
  HostInstallation installed(quiet);
  long tokens = 0;
  for (auto _ : state) {
    MemoryByteStream input(readWhole(dataDir() / name));
    TokenStream in;
    in.setStream(&input);
    in.openStream();
    MacroContextScope scope;
    if (!in.binary()) {
      macroContext().macroStartText(dataDir() / name, input.data(), dataDir());
      in.setCharSource(&macroContext());
    } else {
      in.setRealSize(8);
    }
    tokens = scan(in);
    in.setCharSource(nullptr);
    macroContext().macroClear();
    if (tokens < 0) return state.SkipWithError("the scan failed");
  }
  state.counters["tokens"] = static_cast<double>(tokens);
}

void BM_LoadDataSheetBinary(benchmark::State& state) {
  runLoad(state, "synthia.cds");
}
void BM_LoadDataSheetTextWithMacros(benchmark::State& state) {
  runLoad(state, "synthia_text.cds");
}
void BM_ScanDataSheetBinary(benchmark::State& state) {
  runScan(state, "synthia.cds");
}
void BM_ScanDataSheetTextWithMacros(benchmark::State& state) {
  runScan(state, "synthia_text.cds");
}

BENCHMARK(BM_LoadDataSheetBinary)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ScanDataSheetBinary)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadDataSheetTextWithMacros)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ScanDataSheetTextWithMacros)->Unit(benchmark::kMillisecond);

}  // namespace
