// Page production of a 1,000-item list through a continuation box: the text of a long list laid
// out on a first page and flowed onto as many continuation pages as it needs, measured with
// fixed-width metrics at printer resolution.

#include <benchmark/benchmark.h>

#include <string>

#include "core/headless_host.h"
#include "print/produce/page_production.h"
#include "print/produce/test_devices.h"

namespace {

using namespace zv;

std::unique_ptr<PrintTemplate> listTemplate() {
  auto tmpl = newPrintTemplate("Bench");
  tmpl->pages.clear();
  auto first = std::make_unique<TemplatePage>();
  first->name = "First";
  auto box = newTemplateObject(*tmpl, ObjectKind::ExpandedText, {720, 720, 11000, 15000});
  box->continuationTag = "List";
  box->textProperties.tabs = {{4000, 1}, {6000, 3}};
  std::string text;
  for (int i = 0; i < 1000; ++i)
    text += "Item number " + std::to_string(i) + " of the long list\t" + std::to_string(i % 7) +
            "\t" + std::to_string(i * 3) + ".5\r\n";
  box->text = text;
  first->objects.push_back(std::move(box));
  tmpl->pages.push_back(std::move(first));
  auto more = std::make_unique<TemplatePage>();
  more->name = "More";
  more->pageType = static_cast<std::uint32_t>(PageType::Continuation);
  auto rest = newTemplateObject(*tmpl, ObjectKind::ExpandedText, {720, 720, 11000, 15000});
  rest->continuationTag = "List";
  rest->isContinuation = true;
  rest->textProperties.columns = 2;
  rest->textProperties.columnSpacing = 360;
  more->objects.push_back(std::move(rest));
  tmpl->pages.push_back(std::move(more));
  return tmpl;
}

void BM_ProduceThousandItemList(benchmark::State& state) {
  HeadlessHost host(nullptr);
  HostInstallation installation(host);
  auto tmpl = listTemplate();
  FixedWidthMetrics metrics(100, 240, 600);
  std::size_t pages = 0;
  for (auto _ : state) {
    auto output = producePages(metrics, *tmpl, nullptr, {});
    pages = output ? output->pages.size() : 0;
    benchmark::DoNotOptimize(output);
  }
  state.counters["pages"] = static_cast<double>(pages);
}
BENCHMARK(BM_ProduceThousandItemList)->Unit(benchmark::kMillisecond);

}  // namespace
