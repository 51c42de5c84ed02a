#include <gtest/gtest.h>

#include "core/game_system.h"
#include "core/option.h"
#include "formats/tokens/keywords.h"
#include "filter/run/filter_file_run.h"
#include "run_test_support.h"

namespace zv {
namespace {

class ForeachTest : public test::RunFixture {
 protected:
  void SetUp() override {
    RunFixture::SetUp();
    open();
  }
  void expect(std::string_view body, const char* output, const char* shown = "") {
    quiet.clear();
    std::optional<std::string> out = runBody(body);
    if (output == nullptr) {
      EXPECT_FALSE(out.has_value()) << body << " gave " << out.value_or("");
    } else {
      EXPECT_EQ(out.value_or("(failed)"), output) << body;
    }
    EXPECT_EQ(quiet.lastShown(), shown) << body;
  }
};

TEST_F(ForeachTest, ListsAndDelimiters) {
  expect("@foreach(Traits)\n%@name%\n@endfor\n", "Tough\nWeak\nFast\n");
  expect("@foreach(Traits,;)\n%@name%\n@endfor\n", "Tough\n;Weak\n;Fast\n");
  expect("@foreach(Traits, \\n)\n%@name%\\\r\n@endforeach\n", "Tough \r\nWeak \r\nFast");
  // An element that writes nothing adds no delimiter...
  expect("@foreach(Traits,;)\n@if @level > 0\n%@name%\n@endif\n@endfor\n", "Tough\n;Fast\n");
  // ...and one that writes nothing at the end leaves the delimiter of the one before.
  item("Traits", 1).value = Value(std::int32_t{5});
  item("Traits", 2).value = Value(std::int32_t{0});
  expect("@foreach(Traits,;)\n@if @level > 0\n%@name%\n@endif\n@endfor\n", "Tough\n;Weak\n;");
  // Sublists are followed by their members, one level deeper.
  expect("@foreach(Skills,;)\n%@name%,%@indent%\n@endfor\n",
         "Climbing,0\n;Swords,0\n;Broadsword,1\n;Shortsword,1\n;Swimming,0\n");
  // A prefix finds a list; a blank before the bracket makes it part of the name.
  expect("@foreach(Tra)\n%@name% \\\n@endfor\n", "Tough Weak Fast ");
  expect("@foreach (Traits)\nX\n@endfor\n", nullptr,
         "[Filter Error] Can't find list window (Traits\\n\\nLine: 2");
  expect("@foreach(Traits\nX\n@endfor\n", nullptr, "[Filter Error] List missing ')'\\n\\nLine: 2");
  expect("@foreach(Traits,)\nX\n@endfor\n", nullptr, "[Filter Error] No delimiter found\\n\\nLine: 2");
  expect("@foreach(Traits)\nX\n", nullptr, "[Filter Error] Never found @endforeach\\n\\nLine: 2");
  expect("@foreach(*Nothing)\nX\n@endfor\n", nullptr,
         "[Filter Error] Can't find data list Nothing\\n\\nLine: 2");
  // The list's name from a text variable.
  expect("@which = \"Gear\"\n@foreach(%which%)\n%@name%\n@endfor\n", "Riding\n");
  // Nested loops and the item as the evaluator's.
  expect("@foreach(Traits)\n%@name%:?@level > 1?high?low?\n@endfor\n",
         "Tough:low\nWeak:high\nFast:low\n");
  expect("@foreach(Gear)\n@foreach(Traits)\n%@name%\\\n@endfor\n|%@name%\n@endfor\n",
         "ToughWeakFast|Riding\n");
}

TEST_F(ForeachTest, ItemFieldsOfFilters) {
  expect("@foreach(Gear)\n%@cost%|%@basecost%|%@item%|%@format%\n@endfor\n",
         "4\xBD|3|Riding\t4\xBD|Riding\t4\xBD\n");
  expect("@foreach(Skills)\n%@level%/%@item%/%@parent%\n@endfor\n",
         "12/Climbing\t12\t4/\n0/Swords\t3/\n1/Broadsword\t1\t1/Swords\n"
         "2/Shortsword\t2\t2/Swords\n1/Swimming\t1\t1/\n");
  expect("@foreach(Traits)\n%@basevalue%|%@bonus%|%@class%|%@varname%|%@nosuch%|\n@endfor\n",
         "1|0||Tough||\n0|0||Weak||\n2|0||Fast||\n");
  // A name that isn't an item field is a sheet word.
  expect("@foreach(Gear)\n%@gamesystem%\n@endfor\n", "Tiny\n");
  // Option fields outside @options: three give nothing, the others fail the run.
  expect("@foreach(Gear)\n[%@optname%%@option%%@optexp%]\n@endfor\n", "[]\n");
  expect("@foreach(Gear)\n%@optvalue%\n@endfor\n", nullptr,
         "[Filter Error] %@optvalue% has no option to read outside @options.\\n\\nLine: 3");
  // Quoted field names may hold blanks.
  expect("@foreach(Gear)\n%@`A`%\n@endfor\n", "1\xBD\n");
  // Fields that look into the item's adjustments and requirements.
  Item& climbing = item("Skills", 0);
  climbing.adj = "Wits+1";
  climbing.prereq = "Fast>1";
  expect("@foreach(Skills)\n?@name = \"Climbing\"?%@adj%|%@prereq%??\n@endfor\n",
         "Wits+1:Climbing|Fast>1\n\n\n\n\n");
}

TEST_F(ForeachTest, OptionsWalk) {
  Item& riding = item("Gear", 0);
  riding.options[1]->setHidden(true);  // B
  expect("@foreach(Gear)\n@options(; )\n%@optname%=%@optvalue%\\\n@endoptions\n\n@endfor\n",
         "A=1\xBD; D=Heavy, 3; E=Red, dark\n");
  expect("@foreach(Gear)\n@options\n%@option%\n@endoptions\n@endfor\n",
         "A: 1.5\nD: 3\nE: Red, dark\n");
  expect("@foreach(Traits)\n@options\nX\n@endoptions\n%@name%\n@endfor\n", "Tough\nWeak\nFast\n");
  expect("@options\n@endoptions\n", nullptr,
         "[Filter Error] Cannot use @options outside @foreach\\n\\nLine: 2");
  expect("@foreach(Gear)\n@options \n@endoptions\n@endfor\n", nullptr,
         "[Filter Error] @options missing ')'\\n\\nLine: 3");
  expect("@foreach(Gear)\n@options\n@options\n@endoptions\n@endoptions\n@endfor\n", nullptr,
         "[Filter Error] Cannot nest @options\\n\\nLine: 4");
  // Options of a parent sublist that passes them on; a noprint one only in its own item.
  Item& swords = item("Skills", 1);
  swords.setInheritOpts(true);
  auto edge = std::make_unique<Option>();
  edge->name = "Edge";
  edge->value = "keen";
  swords.options.push_back(std::move(edge));
  auto secret = std::make_unique<Option>();
  secret->name = "Secret";
  secret->value = "s";
  secret->setNoPrint(true);
  swords.options.push_back(std::move(secret));
  expect("@foreach(Skills)\n@options(,)\n%@name%.%@optname%\\\n@endoptions\n@endfor\n",
         "Swords.Edge,Swords.SecretBroadsword.EdgeShortsword.Edge");
  options.printInheritedOptions = false;
  expect("@foreach(Skills)\n@options(,)\n%@name%.%@optname%\\\n@endoptions\n@endfor\n",
         "Swords.Edge,Swords.Secret");
}

TEST_F(ForeachTest, Aliases) {
  Item& climbing = item("Skills", 0);
  climbing.alias = "Scaling";
  expect("@foreach(Skills)\n?@name = \"Climbing\"?%@name%??\\\n@endfor\n", "Climbing");
  options.useAliases = true;
  expect("@foreach(Skills)\n?@name = \"Climbing\"?%@name%|%@item%??\\\n@endfor\n",
         "Scaling|Scaling\t12\t4");
}

TEST_F(ForeachTest, DataSheetList) {
  GameSystem* system = sheet->gameSystem;
  ASSERT_NE(system, nullptr);
  Category& gear = system->findOrAddCategory("Tack");
  gear.appendItem(std::make_unique<Item>(ItemKind::Item, "Saddle"));
  gear.appendItem(std::make_unique<Item>(ItemKind::Item, "Bridle"));
  expect("@foreach(*Tack, / )\n%@name%\\\n@endfor\n", "Saddle / Bridle");
}

TEST_F(ForeachTest, WritePicture) {
  // A picture field holding a small PNG, and a field that chooses a picture file.
  const std::string png = std::string("\x89PNG\r\n\x1a\n", 8) + "body";
  auto& dialog = *sheet->dlgs.front();
  auto portrait = std::make_unique<DlgItem>();
  portrait->kind = kPicture;
  portrait->varName = "Portrait";
  portrait->pictureData = png;
  dialog.appendItem(std::move(portrait));
  auto empty = std::make_unique<DlgItem>();
  empty->kind = kPicture;
  empty->varName = "Blank";
  dialog.appendItem(std::move(empty));
  expect("@writepicture Main.Portrait, png, hex\n",
         "89504e470d0a1a0a626f6479");
  // Only a line that starts with "@" is a command.
  expect("A@writepicture\n", "A@writepicture\n");
  const std::string file = (dir / "out.png").string();
  expect("@writepicture Main.Portrait, png, binary, \"" + file + "\"\n", "");
  EXPECT_EQ(test::ScratchDir::read(file), png);
  expect("@writepicture Main.Portrait, png\n", nullptr,
         "[Filter Error] Error in writepicture command.\\n\\nLine: 2");
  expect("@writepicture Main.Nope, png, hex\n", nullptr,
         "[Filter Error] Can't find dialog field Main.Nope\\n\\nLine: 2");
  expect("@writepicture Main.Name, png, hex\n", nullptr,
         "[Filter Error] Error in writepicture: Main.Name is not a picture.\\n\\nLine: 2");
  expect("@writepicture Main.Blank, png, hex\n", nullptr,
         "[Filter Error] Error in writepicture: no picture found in Main.Blank.\\n\\nLine: 2");
  expect("@writepicture Main.Portrait, tiff, hex\n", nullptr,
         "[Filter Error] Error in writepicture: Unknown picture format: tiff.\\n\\nLine: 2");
  expect("@writepicture Main.Portrait, png, octal\n", nullptr,
         "[Filter Error] Error in writepicture: Unknown picture type: octal.\\n\\nLine: 2");
  expect("@writepicture Main.Portrait, png, hex, \"x.png\"\n", nullptr,
         "[Filter Error] Error in writepicture: cannot write hex into a file.\\n\\nLine: 2");
  expect("@writepicture Main.Portrait, png, binary, 7\n", nullptr,
         "[Filter Error] File name in writepicture must be a string.\\n\\nLine: 2");
  expect("@writepicture Main.Portrait, gif, binary\n", nullptr,
         "[Filter Error] Error in writepicture: unable to render Main.Portrait.\\n\\nThe picture "
         "is stored as png and can't be converted to gif here.\\n\\nLine: 2");
  // With a converter the program's picture library would give.
  context.convertPicture = [](std::string_view bytes, std::string_view format, std::string&) {
    return std::optional<std::string>(std::string(format) + ":" + std::to_string(bytes.size()));
  };
  expect("@writepicture Main.Portrait, gif, binary\n", "gif:12");
}

TEST_F(ForeachTest, FilterFilesAreChosenAndRun) {
  dir.write("plain.flt", "@gamesystem Tiny\n@description Plain list\nName: %@Main.Name%\n");
  dir.write("other.flt", "@gamesystem Other\n@description Elsewhere\n");
  dir.write("wide.flt", "@gamesystem Tiny\n@description Wide list\nWide %@Main.Name%\n");
  context.dataDir = dir.path();
  FilterDocument document;
  // A name given.
  EXPECT_EQ(runFilterFile(*sheet, document, "PLAIN.FLT", options, context), "Name: Bob\n");
  EXPECT_EQ(document.outputLength, 10);
  EXPECT_EQ(document.description, "Plain list");
  // The user's choice among the game system's filters, the sheet's own chosen at first.
  sheet->filter = "wide.flt";
  EXPECT_EQ(runFilterFile(*sheet, document, "", options, context), "Wide Bob\n");
  EXPECT_EQ(quiet.lastShown(), "[Select Filter] Filters for Tiny:");
  quiet.headless.addAnswer("Plain list");
  EXPECT_EQ(runFilterFile(*sheet, document, "", options, context), "Name: Bob\n");
  quiet.headless.addAnswer("Cancel");
  EXPECT_FALSE(runFilterFile(*sheet, document, "", options, context));
  // Without asking: the sheet's own, else the choice for a sheet that names none.
  context.askForFilters = false;
  quiet.clear();
  EXPECT_EQ(runFilterFile(*sheet, document, "", options, context), "Wide Bob\n");
  EXPECT_TRUE(quiet.shown().empty());
  sheet->filter = "";
  EXPECT_EQ(runFilterFile(*sheet, document, "", options, context), "Name: Bob\n");
  EXPECT_EQ(quiet.lastShown(), "[Choose a Filter] Filters for Tiny:");
  // A filter of another game system is refused when loaded for the sheet.
  EXPECT_FALSE(runFilterFile(*sheet, document, "other.flt", options, context));
  EXPECT_EQ(quiet.lastShown(),
            "[Filter Error] This filter uses the Other game system. The character sheet's game "
            "system is Tiny.\\n\\nLine: 1");
}

}  // namespace
}  // namespace zv
