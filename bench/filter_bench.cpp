// A realistic filter over a generated 1,000-item sheet (an HTML page with a table per list, every
// item's fields, its options, a subroutine and conditionals), and the throughput of the RTF
// reader and the HTML writer on a long story.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "core/engine_context.h"
#include "core/fileinfo.h"
#include "core/headless_host.h"
#include "filter/file/filter_loader.h"
#include "filter/filter_wiring.h"
#include "filter/rich/rich_writers.h"
#include "filter/rich/rtf_reader.h"
#include "filter/run/filter_run.h"
#include "formats/engine_wiring.h"
#include "formats/sheet/expr_sheet_symbols.h"
#include "formats/sheet/sheet_reader.h"
#include "formats/tokens/tokenstream.h"
#include "rules/value/level.h"

namespace {

constexpr int kLists = 4;
constexpr int kItemsPerList = 250;

/// Four lists of 250 elements: items with cost functions of their levels, options on every fifth,
/// a sublist of ten members in each list; a dialog with a name and the totals.
std::string generatedSheet() {
  std::string text =
      "\"Character Sheet file v. 1\"\ngamesystem Benchmark\nsheettype Hero help \"\"\n"
      "version 253 level 1 maxAttempts 0 rounding 0\ninfo notes \"A & B\" end\ndatafile end\n";
  for (int l = 0; l < kLists; ++l) {
    const std::string list = "L" + std::to_string(l);
    text += "list " + list + " var " + list + "Total 0 format \"%0ln%-12rv%-5rc\"\n";
    for (int i = 0; i < kItemsPerList - 11; ++i) {
      const std::string name = list + "S" + std::to_string(i);
      text += "item " + name + " formula \"x*2+1\" varname " + name;
      if (i % 5 == 0) text += " opt frac Hard \"+1/2\" text Note \"<kept>\" end";
      text += " level " + std::to_string(1 + i % 7) + "\n";
    }
    text += "sublist Pack" + list + " memlist\n";
    for (int i = 0; i < 10; ++i)
      text +=
          "item Thing" + list + "_" + std::to_string(i) + " cost " + std::to_string(i + 1) + "\n";
    text += "end childcostsseparate cost 2\nend\n";
  }
  text += "dialog Main 300 200\nedittext \"Bench & Co\" 10 10 80 20 Name\n";
  text += "formula \"L0Total+L1Total+L2Total+L3Total\" 10 40 80 20 right Spent\nend\nend\n";
  return text;
}

constexpr const char* kFilter =
    "@gamesystem Benchmark\r\n"
    "@description Bench page\r\n"
    "@trans & &amp;\r\n"
    "@trans < &lt;\r\n"
    "@trans > &gt;\r\n"
    "<html><head><title>%@Main.Name%</title></head><body>\r\n"
    "<h1>%@Main.Name%</h1><p>Spent %Spent% on %@date%</p>\r\n"
    "@sub table(title, name, total)\r\n"
    "<h2>%title%</h2><table>\r\n"
    "@foreach(%name%)\r\n"
    "<tr?@indent > 0? class=\"member\"??><td>%@name%\\\r\n"
    "@options\r\n"
    " <i>%@option%</i>\\\r\n"
    "@endoptions\r\n"
    "</td><td>?@level?%@level%??</td><td>%@cost%</td><td>%@item%</td></tr>\r\n"
    "@endfor\r\n"
    "<tr><td>Total</td><td></td><td>%total%</td></tr></table>\r\n"
    "@endsub\r\n"
    "@table(\"First\", \"L0\", L0Total)\r\n"
    "@table(\"Second\", \"L1\", L1Total)\r\n"
    "@table(\"Third\", \"L2\", L2Total)\r\n"
    "@table(\"Fourth\", \"L3\", L3Total)\r\n"
    "@if @notes\r\n"
    "<p>%@notes%</p>\r\n"
    "@endif\r\n"
    "</body></html>\r\n";

struct Environment {
  Environment() : installed(host) {
    static const bool once =
        (zv::wireEngineServices(zv::engine()), zv::wireFilterServices(zv::engine()), true);
    (void)once;
    host.setFixedTime(zv::LocalTime{2024, 3, 5, 10, 0, 0, true});
  }
  zv::HeadlessHost host{nullptr};
  zv::HostInstallation installed;
};

std::unique_ptr<zv::FileInfo> openGenerated() {
  auto sheet = std::make_unique<zv::FileInfo>();
  sheet->fileType = 1;
  sheet->name = "bench.chr";
  zv::MemoryByteStream input(generatedSheet());
  zv::SheetReadOptions options;
  options.symbols = &zv::exprSheetSymbols();
  options.loadData = false;
  options.settle = zv::settleSheetLevels;
  options.applyOptions = zv::applyItemOptions;
  if (!zv::readCharsheet(*sheet, input, options)) return nullptr;
  return sheet;
}

void BM_FilterOver1000Items(benchmark::State& state) {
  Environment environment;
  std::unique_ptr<zv::FileInfo> sheet = openGenerated();
  if (!sheet) {
    state.SkipWithError("the generated sheet didn't open");
    return;
  }
  zv::FilterDocument document;
  if (!zv::loadFilterText(sheet.get(), kFilter, "bench.flt", document, zv::FilterLoadMode::Whole)) {
    state.SkipWithError("the filter didn't load");
    return;
  }
  zv::FilterRunOptions options;
  zv::FilterContext context;
  std::size_t bytes = 0;
  for (auto _ : state) {
    std::optional<std::string> output = zv::runFilterBody(*sheet, document, options, context);
    if (!output) {
      state.SkipWithError("the filter failed");
      return;
    }
    bytes = output->size();
    benchmark::DoNotOptimize(output);
  }
  state.counters["output_bytes"] = static_cast<double>(bytes);
  state.SetItemsProcessed(state.iterations() * kLists * kItemsPerList);
}
BENCHMARK(BM_FilterOver1000Items)->Unit(benchmark::kMillisecond);

/// A story of many paragraphs as a word processor writes it: fonts, runs and escapes.
std::string longStory(int paragraphs) {
  std::string rtf =
      "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\froman Times New Roman;}{\\f1\\fswiss "
      "Arial;}}{\\colortbl;\\red255\\green0\\blue0;}\\paperw11906\\margl1134\r\n";
  for (int i = 0; i < paragraphs; ++i) {
    rtf += "\\pard\\li" + std::to_string((i % 3) * 720) +
           "\\sa120 The warden walked the \\b Saltreach\\b0  road at dusk, \\i "
           "counting\\i0  the lights: \\'bd of them were false, {\\f1\\fs28 & the rest} \\{kept\\} "
           "their <vigil>.\\par\r\n";
  }
  rtf += "}";
  return rtf;
}

void BM_RtfParse(benchmark::State& state) {
  const std::string rtf = longStory(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    zv::RichText rich;
    benchmark::DoNotOptimize(zv::parseRichText(rtf, rich));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(rtf.size()));
}
BENCHMARK(BM_RtfParse)->Arg(2000);

void BM_HtmlWrite(benchmark::State& state) {
  zv::RichText rich;
  zv::parseRichText(longStory(static_cast<int>(state.range(0))), rich);
  for (auto _ : state) {
    std::optional<std::string> html = zv::htmlOf(rich);
    benchmark::DoNotOptimize(html);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(rich.text.size()));
}
BENCHMARK(BM_HtmlWrite)->Arg(2000);

}  // namespace
