// Feeds the input to the filter runner as the body of a filter over a small sheet: two lists (one
// with a sublist and options), a dialog with a text field, a variable. Nothing may crash, leak or
// hang: loops are stopped by the interrupt poll. The sheet has no picture fields, so
// @writepicture never writes a file.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "core/dialog.h"
#include "core/fileinfo.h"
#include "core/headless_host.h"
#include "expr/symbols.h"
#include "filter/run/filter_run.h"
#include "formats/tokens/keywords.h"

namespace {

std::unique_ptr<zv::FileInfo> makeSheet() {
  auto sheet = std::make_unique<zv::FileInfo>(1, "fuzz.chr", "/tmp/fuzz.chr");
  sheet->gameSystemName = "Tiny";
  sheet->sheetType = "PC";
  sheet->notes = "Some notes & more";
  sheet->richText = "{\\rtf1 Rich \\b text\\b0\\par}";
  sheet->symbols = std::make_shared<zv::SymbolTable>();
  sheet->symbols->owner = sheet.get();
  zv::defineVariable(*sheet->symbols, "Might", "12");
  zv::ListInfo* skills = sheet->addList();
  skills->name = "Skills";
  auto climbing = std::make_unique<zv::Item>(zv::ItemKind::Item, "Climbing");
  climbing->totalCost = 4.5;
  auto option = std::make_unique<zv::Option>();
  option->name = "Grip";
  option->value = "?:2; weak; firm,2;";
  climbing->options.push_back(std::move(option));
  skills->appendItem(std::move(climbing));
  auto swords = std::make_unique<zv::Item>(zv::ItemKind::Sublist, "Swords");
  swords->setInheritOpts(true);
  swords->appendChild(std::make_unique<zv::Item>(zv::ItemKind::Item, "Broadsword"));
  skills->appendItem(std::move(swords));
  zv::ListInfo* gear = sheet->addList();
  gear->name = "Gear";
  gear->appendItem(std::make_unique<zv::Item>(zv::ItemKind::Item, "Rope"));
  zv::DlgInfo* dialog = sheet->addDialog();
  dialog->name = "Main";
  auto field = std::make_unique<zv::DlgItem>();
  field->kind = zv::kEdittext;
  field->varName = "Name";
  field->text = "Bob";
  dialog->appendItem(std::move(field));
  return sheet;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  zv::HeadlessHost host(nullptr);
  host.setInterruptAfterPolls(500);
  host.setFixedTime(zv::LocalTime{2024, 3, 5, 10, 0, 0, true});
  zv::HostInstallation installed(host);
  std::unique_ptr<zv::FileInfo> sheet = makeSheet();
  zv::FilterRunOptions options;
  zv::FilterContext context;
  zv::runFilterText(*sheet, text, 1, options, context);
  return 0;
}
