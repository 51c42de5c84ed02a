// The pure parts of a print job: measure fields, the paper plan (range, copies, forms with
// margins, detail pages), footers, the margins kept per form, the data sheet's print text.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "core/fileinfo.h"
#include "core/headless_host.h"
#include "core/item.h"
#include "core/option.h"
#include "print/job/data_sheet_print.h"
#include "print/job/footer.h"
#include "print/job/form_setup.h"
#include "print/job/measure_field.h"
#include "print/job/print_plan.h"

namespace zv {
namespace {

using U = MeasureUnit;

TEST(MeasureField, TextsReadAsTwips) {
  struct Case {
    const char* text;
    MeasureUnit unit;
    long twips;
  };
  const Case cases[] = {
      {"2.54cm", U::Inches, 1440},      // 2.54 * 1440 / 2.54
      {"72pt", U::Inches, 1440},        // 72 * 20
      {"25.4mm", U::Inches, 1440},      // 25.4 * 1440 / 25.4
      {"1", U::Inches, 1440},           // no unit: the preference's
      {"1.01pt", U::Inches, 20},        // 20.2, points cut without rounding
      {"0.5in", U::Centimetres, 720},   // a unit word wins over the preference
      {"0.5 IN", U::Centimetres, 720},  // blanks between, any case
      {"1.5\"", U::Centimetres, 2160},  // the inch mark
      {"1 inches", U::Millimetres, 1440},
      {"2", U::Centimetres, 1134},         // 1133.86 + 0.5
      {"3", U::Millimetres, 170},          // 170.08 + 0.5
      {" 1.25 cm extra", U::Inches, 709},  // 708.66 + 0.5; words after the unit are not read
      {"+1in", U::Points, 1440},
      {"12 points", U::Inches, 240},
  };
  for (const Case& c : cases) {
    auto read = readMeasure(c.text, c.unit);
    ASSERT_TRUE(std::holds_alternative<long>(read)) << c.text;
    EXPECT_EQ(std::get<long>(read), c.twips) << c.text;
  }
}

TEST(MeasureField, RefusedTextsGiveTheirMessages) {
  struct Case {
    const char* text;
    const char* message;
  };
  const Case cases[] = {
      {"abc", "Invalid measurement: abc"},
      {"", "Invalid measurement: "},
      {"cm", "Invalid measurement: cm"},
      {"2 furlongs", "Unrecognizable measurement"},
      {"2xx", "Unrecognizable measurement"},
      {"1e300", "Invalid measurement: 1e300"},  // beyond any page
  };
  for (const Case& c : cases) {
    auto read = readMeasure(c.text, U::Inches);
    ASSERT_TRUE(std::holds_alternative<MeasureError>(read)) << c.text;
    EXPECT_EQ(std::get<MeasureError>(read).text, c.message);
  }
  HeadlessHost host(nullptr);
  HostInstallation installed(host);
  EXPECT_EQ(measureFieldValue("2 furlongs", U::Inches), std::nullopt);
  EXPECT_EQ(measureFieldValue("2cm", U::Inches), 1134);
  EXPECT_EQ(host.transcript(), std::vector<std::string>{"[Error] Unrecognizable measurement"});
}

TEST(MeasureField, TwipsShowInTheUnit) {
  struct Case {
    long twips;
    MeasureUnit unit;
    const char* text;
  };
  const Case cases[] = {
      {567, U::Centimetres, "1cm"},  // 1.000125
      {250, U::Points, "12.5pt"},   {1440, U::Millimetres, "25.4mm"}, {1440, U::Inches, "1\""},
      {2160, U::Inches, "1.5\""},   {100, U::Inches, "0.07\""},     // 0.0694
      {0, U::Centimetres, "0cm"},   {1134, U::Centimetres, "2cm"},  // 2.0003
      {15840, U::Inches, "11\""},
  };
  for (const Case& c : cases)
    EXPECT_EQ(formatMeasure(c.twips, c.unit), c.text) << c.twips;
}

TEST(MeasureField, SpinStepsInTheUnitOfTheText) {
  struct Case {
    const char* text;
    int steps;
    MeasureUnit unit;
    const char* result;
  };
  const Case cases[] = {
      {"1\"", 1, U::Centimetres, "1.1\""},  // the inch mark names the unit
      {"1in", -2, U::Centimetres, "0.8\""},
      {"2cm", -1, U::Inches, "1.9cm"},
      {"5mm", 3, U::Inches, "8mm"},
      {"12p", 1, U::Inches, "13pt"},
      {"", 1, U::Points, "1pt"},  // no number starts from 0, in the preference's unit
      {"4", 1, U::Millimetres, "5mm"},
      {"0.05in", -1, U::Inches, "0\""},  // held at the lower bound
      {"9.95in", 1, U::Inches, "10\""},  // held at the upper bound (14400 twips)
  };
  for (const Case& c : cases)
    EXPECT_EQ(spinMeasure(c.text, c.steps, 0, 14400, c.unit), c.result) << c.text;
}

TEST(MeasureField, ThePreferenceOrTheLocaleGivesTheUnit) {
  EXPECT_EQ(measureUnitOf(-1, true), U::Centimetres);
  EXPECT_EQ(measureUnitOf(-1, false), U::Inches);
  EXPECT_EQ(measureUnitOf(2, true), U::Points);
  EXPECT_EQ(measureUnitOf(3, false), U::Millimetres);
  EXPECT_EQ(measureUnitOf(7, false), U::Inches);
}

// ---- The paper plan ----

PlacedPage T(int index, int x = 0, int y = 0) {
  return {PageSource::Template, index, x, y};
}
PlacedPage D(int index) {
  return {PageSource::Detail, index, 0, 0};
}

TEST(PrintPlan, PagesRangesCopiesAndForms) {
  const FormLayout letter{0, 0, 12240, 15840, {}};
  const FormLayout halfSheet{12240, 7920, 12240, 15840, {}};
  const FormLayout quarter{6120, 7920, 12240, 15840, {}};
  const FormLayout margins{5400, 7200, 12240, 15840, {720, 720, 720, 720}};
  struct Case {
    const char* name;
    int templatePages;
    int detailPages;
    PageSelection selection;
    FormLayout layout;
    std::vector<PaperSheet> sheets;
  };
  const Case cases[] = {
      {"every page a sheet", 3, 2, {}, letter, {{T(0)}, {T(1)}, {T(2)}, {D(0)}, {D(1)}}},
      {"a range across both kinds", 3, 2, {2, 4, 1}, letter, {{T(1)}, {T(2)}, {D(0)}}},
      {"copies repeat the range", 2, 0, {1, 1, 2}, letter, {{T(0)}, {T(0)}}},
      {"collated copies",
       2,
       1,
       {1, 0, 2},
       letter,
       {{T(0)}, {T(1)}, {D(0)}, {T(0)}, {T(1)}, {D(0)}}},
      {"a range past the end", 3, 0, {5, 9, 1}, letter, {}},
      {"a last page past the end", 2, 0, {2, 9, 1}, letter, {{T(1)}}},
      {"half-sheet forms two to a sheet",
       3,
       0,
       {},
       halfSheet,
       {{T(0, 0, 0), T(1, 0, 7920)}, {T(2, 0, 0)}}},
      {"quarter forms fill a column, then the next",
       5,
       0,
       {},
       quarter,
       {{T(0, 0, 0), T(1, 0, 7920), T(2, 6120, 0), T(3, 6120, 7920)}, {T(4, 0, 0)}}},
      {"forms inside the margins",
       5,
       0,
       {},
       margins,
       {{T(0, 720, 720), T(1, 720, 7920), T(2, 6120, 720), T(3, 6120, 7920)}, {T(4, 720, 720)}}},
      {"a detail page leaves the forms' sheet", 1, 1, {}, halfSheet, {{T(0)}, {D(0)}}},
      {"copies of a form share a sheet", 1, 0, {1, 1, 2}, halfSheet, {{T(0, 0, 0), T(0, 0, 7920)}}},
      {"the margins place a page without forms",
       1,
       0,
       {},
       FormLayout{0, 0, 12240, 15840, {360, 720, 0, 0}},
       {{T(0, 360, 720)}}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(planPaper(c.templatePages, c.detailPages, c.selection, c.layout), c.sheets) << c.name;
  }
}

TEST(PrintPlan, AFormLargerThanThePaperStillPrintsOneToASheet) {
  const FormLayout huge{20000, 20000, 12240, 15840, {}};
  EXPECT_EQ(planPaper(2, 0, {}, huge), (std::vector<PaperSheet>{{T(0)}, {T(1)}}));
}

// ---- Footers ----

TEST(Footer, TheSheetTheDateAndThePage) {
  EXPECT_EQ(footerText("Bob", std::string("3/5/24"), 1), "Bob: printed 3/5/24, Page 1");
  EXPECT_EQ(footerText("Bob", std::nullopt, 12), "Bob: Page 12");
  LocalTime today{2024, 3, 5, 10, 0, 0, true};
  EXPECT_EQ(footerDate(today, "M/d/yy"), "3/5/24");
  EXPECT_EQ(footerDate(today, "dd.MM.yyyy"), "05.03.2024");
  today.valid = false;
  EXPECT_EQ(footerDate(today, "M/d/yy"), std::nullopt);
}

// ---- Form setup ----

TEST(FormSetup, MarginsAreKeptPerForm) {
  namespace fs = std::filesystem;
  const fs::path file = fs::temp_directory_path() / "zv_form_setup_test.ini";
  fs::remove(file);
  Settings settings = Settings::fromFile(file);
  PrintTemplate tmpl;
  tmpl.path = "/data/forms/tavern-card.prt";
  EXPECT_EQ(formNameOf(tmpl), "tavern-card.prt");
  EXPECT_EQ(formSettingsSection("tavern-card.prt"), "Printing\\Forms\\tavern-card.prt");

  // Nothing kept yet: no margins, and the template's orientation.
  EXPECT_EQ(readFormMargins(settings, "tavern-card.prt", true), (FormMargins{0, 0, 0, 0, true}));
  writeFormMargins(settings, "tavern-card.prt", FormMargins{720, 360, 1440, 0, false});
  EXPECT_EQ(readFormMargins(settings, "tavern-card.prt", true),
            (FormMargins{720, 360, 1440, 0, false}));
  EXPECT_EQ(settings.getInt("Printing\\Forms\\tavern-card.prt", "TopMargin", -1), 1440);
  EXPECT_EQ(settings.getInt("Printing\\Forms\\tavern-card.prt", "Landscape", -1), 0);
  // Another form keeps its own.
  EXPECT_EQ(readFormMargins(settings, "other.prt", false), (FormMargins{}));
  fs::remove(file);

  PrintTemplate unsaved;
  unsaved.gameSystem = "Tiny";
  EXPECT_EQ(formNameOf(unsaved), "Tiny");
}

TEST(FormSetup, TheFormSizeInTheUnitOfMeasure) {
  PrintTemplate tmpl;
  tmpl.formHeight = 7920;
  tmpl.formWidth = 12240;
  EXPECT_EQ(formSizeText(tmpl, U::Inches), "The height and width of the form is 5.5\" x 8.5\".");
  EXPECT_EQ(formSizeText(tmpl, U::Centimetres),
            "The height and width of the form is 13.97cm x 21.59cm.");
}

// ---- The data sheet's print ----

TEST(DataSheetPrint, HeadingThenAnItemALine) {
  FileInfo dataSheet(6, "tiny-gear.cds", "/data/tiny-gear.cds");
  dataSheet.title = "Tiny Gear";
  dataSheet.copyright = "(c) the Tiny authors";
  dataSheet.gameSystemName = "Tiny";
  dataSheet.helpFile = "tiny.hlp";
  ListInfo* root = dataSheet.addList();
  Item& weapons = root->appendItem(std::make_unique<Item>(ItemKind::Sublist, "Weapons"));
  auto sword = std::make_unique<Item>(ItemKind::Item, "Sword");
  sword->cat = "Weapons";
  sword->formula = "10+level";
  sword->varName = "SwordSkill";
  sword->prereq = "Strength>10";
  auto edge = std::make_unique<Option>();
  edge->name = "Edge";
  edge->value = "+1";
  edge->qualifier = "sharp";
  sword->options.push_back(std::move(edge));
  auto heft = std::make_unique<Option>();
  heft->name = "Heft";
  heft->value = "2";
  sword->options.push_back(std::move(heft));
  weapons.children.push_back(std::move(sword));
  auto club = std::make_unique<Item>(ItemKind::Item, "Club");
  club->cost = 2.5;
  club->className = "Blunt";
  club->adj = "Strength+1";
  weapons.children.push_back(std::move(club));

  EXPECT_EQ(dataSheetPrintText(dataSheet),
            "Datasheet: tiny-gear.cds\r\n"
            "Title: Tiny Gear\r\n"
            "Copyright: (c) the Tiny authors\r\n"
            "Game System: Tiny\r\n"
            "Help File: tiny.hlp\r\n"
            "Sword; Category: Weapons; Variable Name: SwordSkill; Cost: 10+level; "
            "Requirements: Strength>10; Options: Edge: +1 (sharp), Heft: 2\r\n"
            "Club; Class: Blunt; Cost: 2\xBD; Adjustments: Strength+1\r\n");
}

}  // namespace
}  // namespace zv
