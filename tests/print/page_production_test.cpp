// Page production with fixed-width metrics (1440 dpi, so device units are twips): the page walk,
// continuation choice and repeats, background rings, page numbers, layout and drawing.

#include <gtest/gtest.h>

#include "core/fileinfo.h"
#include "core/headless_host.h"
#include "expr/symbols.h"
#include "print/produce/draw_object.h"
#include "print/produce/layout_text.h"
#include "print/produce/page_production.h"
#include "print/produce/test_devices.h"

namespace zv {
namespace {

class ProductionTest : public ::testing::Test {
 protected:
  HeadlessHost host_{nullptr};
  HostInstallation installation_{host_};
  FixedWidthMetrics metrics_{120, 240};
  FileInfo sheet_;
  std::unique_ptr<PrintTemplate> tmpl_ = newPrintTemplate("Tiny");

  ProductionTest() {
    sheet_.symbols = std::make_shared<SymbolTable>();
    sheet_.symbols->owner = &sheet_;
    tmpl_->pages.clear();
  }

  TemplatePage& page(const char* name, PageType type = PageType::Normal) {
    auto p = std::make_unique<TemplatePage>();
    p->name = name;
    p->pageType = static_cast<std::uint32_t>(type);
    tmpl_->pages.push_back(std::move(p));
    return *tmpl_->pages.back();
  }
  /// A text box without outline, 1440 wide and `lines` lines high.
  TemplateObject& box(TemplatePage& p, const char* text, const char* tag, int lines = 3) {
    auto o = newTemplateObject(*tmpl_, ObjectKind::ExpandedText, {0, 0, 1440, 240 * lines});
    o->attributes.setOutline(false);
    o->attributes.setFill(false);
    if (text) o->text = text;
    if (tag) o->continuationTag = tag;
    p.objects.push_back(std::move(o));
    return *p.objects.back();
  }
  TemplateObject& continuation(TemplatePage& p, const char* tag, int lines = 3) {
    TemplateObject& o = box(p, nullptr, tag, lines);
    o.isContinuation = true;
    return o;
  }
  std::unique_ptr<OutputTemplate> produce() {
    return producePages(metrics_, *tmpl_, &sheet_, ProductionSettings{});
  }
  static std::string names(const OutputTemplate& out) {
    std::string s;
    for (const OutputPage& p : out.pages)
      s += (s.empty() ? "" : ", ") + p.name;
    return s;
  }
  /// The lines a laid-out box draws.
  std::vector<std::string> drawn(const TemplateObject& o) {
    RecordingCanvas canvas;
    drawObject(metrics_, canvas, &sheet_, o, RuleLines::FromPreference, {});
    return canvas.texts();
  }
  std::string lastMessage() const {
    return host_.transcript().empty() ? "" : host_.transcript().back();
  }
};

const char* kTenLines = "L-5\r\nL-4\r\nL-3\r\nL-2\r\nL-1\r\nL0\r\nL1\r\nL2\r\nL3\r\nL4\r\n";

TEST_F(ProductionTest, ContinuationPageRepeatsUntilTheTextIsUsedUp) {
  box(page("Page 1"), kTenLines, "T");
  continuation(page("More", PageType::Continuation), "T");
  auto out = produce();
  ASSERT_TRUE(out) << lastMessage();
  EXPECT_EQ(names(*out), "Page 1, More, More, More");
  using V = std::vector<std::string>;
  EXPECT_EQ(drawn(*out->pages[0].objects[0]), (V{"L-5", "L-4", "L-3"}));
  EXPECT_EQ(drawn(*out->pages[1].objects[0]), (V{"L-2", "L-1", "L0"}));
  EXPECT_EQ(drawn(*out->pages[2].objects[0]), (V{"L1", "L2", "L3"}));
  EXPECT_EQ(drawn(*out->pages[3].objects[0]), (V{"L4"}));
  EXPECT_FALSE(out->pages[3].objects[0]->hasMore());
  EXPECT_TRUE(out->pages[0].objects[0]->continued());
  EXPECT_TRUE(host_.transcript().empty());
}

TEST_F(ProductionTest, NoContinuationPageForATagIsReportedOnceAndTheRunGoesOn) {
  box(page("Page 1"), kTenLines, "T");
  box(page("Page 2"), "x", nullptr);
  continuation(page("More", PageType::Continuation), "Other");
  auto out = produce();
  ASSERT_TRUE(out);
  EXPECT_EQ(names(*out), "Page 1, Page 2");
  ASSERT_EQ(host_.transcript().size(), 1u);
  EXPECT_EQ(lastMessage(), "[Error] No continuation page found for tag: T");
}

TEST_F(ProductionTest, TheContinuationHoldingMostOpenTagsWins) {
  TemplatePage& first = page("Page 1");
  box(first, kTenLines, "A");
  box(first, kTenLines, "B");
  continuation(page("C1", PageType::Continuation), "A", 20);
  TemplatePage& c2 = page("C2", PageType::Continuation);
  continuation(c2, "A", 20);
  continuation(c2, "b", 20);
  auto out = produce();
  ASSERT_TRUE(out) << lastMessage();
  EXPECT_EQ(names(*out), "Page 1, C2");
}

TEST_F(ProductionTest, PageWalkChoosesPagesByTypeAndExpression) {
  struct Case {
    const char* what;
    std::vector<std::tuple<const char*, PageType, const char*>> pages;
    const char* result;  ///< the page names, or the last message when null pages
    const char* message;
  };
  const Case cases[] = {
      {"only optional pages that are false",
       {{"A", PageType::Optional, "0"}, {"B", PageType::Optional, "0"}},
       nullptr,
       "[Error] No pages were produced for printing."},
      {"optional true, background never, continuation without expression skipped",
       {{"A", PageType::Normal, nullptr},
        {"B", PageType::Optional, "1"},
        {"C", PageType::Background, nullptr},
        {"D", PageType::Continuation, nullptr},
        {"E", PageType::Optional, nullptr}},
       "A, B",
       ""},
      {"a continuation page with a true expression prints in the walk",
       {{"A", PageType::Normal, nullptr}, {"D", PageType::Continuation, "1"}},
       "A, D",
       ""},
      {"a bad expression skips the page and the run goes on",
       {{"A", PageType::Normal, nullptr}, {"B", PageType::Optional, "1+"}},
       "A",
       "[Error] Error parsing optional page expression: "},
      {"@notes of a sheet without notes",
       {{"A", PageType::Normal, nullptr}, {"N", PageType::Optional, "@notes"}},
       "A",
       ""},
  };
  for (const Case& c : cases) {
    tmpl_->pages.clear();
    host_.clearTranscript();
    for (auto& [name, type, expression] : c.pages) {
      TemplatePage& p = page(name, type);
      if (expression) p.expression = expression;
    }
    auto out = produce();
    if (c.result == nullptr) {
      EXPECT_FALSE(out) << c.what;
    } else {
      ASSERT_TRUE(out) << c.what;
      EXPECT_EQ(names(*out), c.result) << c.what;
    }
    if (*c.message == 0)
      EXPECT_TRUE(host_.transcript().empty()) << c.what << ": " << lastMessage();
    else
      EXPECT_EQ(lastMessage().substr(0, std::string(c.message).size()), c.message) << c.what;
  }
}

TEST_F(ProductionTest, NotesMakeTheNotesPage) {
  page("A");
  page("N", PageType::Optional).expression = "@Notes";
  sheet_.notes = "Owes the Ferryman.";
  auto out = produce();
  ASSERT_TRUE(out);
  EXPECT_EQ(names(*out), "A, N");
}

TEST_F(ProductionTest, BackgroundRingsStopAtTheRepeatAndLieFarthestFirst) {
  TemplatePage& a = page("A");
  a.backgroundPage = "b";
  box(a, "a", nullptr);
  TemplatePage& b = page("B", PageType::Background);
  b.backgroundPage = "C";
  b.objects.push_back(newTemplateObject(*tmpl_, ObjectKind::Rectangle, {0, 0, 1, 1}));
  TemplatePage& c = page("C", PageType::Background);
  c.backgroundPage = "B";
  c.objects.push_back(newTemplateObject(*tmpl_, ObjectKind::Ellipse, {0, 0, 1, 1}));
  auto out = produce();
  ASSERT_TRUE(out) << lastMessage();
  ASSERT_EQ(out->pages.size(), 1u);
  const auto& objects = out->pages[0].objects;
  ASSERT_EQ(objects.size(), 3u);
  EXPECT_EQ(objects[0]->kind, 2);  // C's
  EXPECT_EQ(objects[1]->kind, 1);  // B's
  EXPECT_EQ(objects[2]->kind, 13);
  EXPECT_TRUE(host_.transcript().empty());

  tmpl_->pages[0]->backgroundPage = "Nowhere";
  EXPECT_FALSE(produce());
  EXPECT_EQ(lastMessage(), "[Error] No such page: Nowhere");
}

TEST_F(ProductionTest, BoxTextGoesThroughTheRunnerWithThePageNumber) {
  for (const char* name : {"P1", "P2", "P3"})
    box(page(name), "Page %@pagenumber%", nullptr);
  ProductionSettings settings;
  settings.runText = [](FileInfo&, std::string_view text, int pageNumber) {
    std::string out(text);
    out.replace(out.find("%@pagenumber%"), 13, std::to_string(pageNumber));
    return std::optional<std::string>(out);
  };
  auto out = producePages(metrics_, *tmpl_, &sheet_, settings);
  ASSERT_TRUE(out);
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(drawn(*out->pages[i].objects[0]),
              std::vector<std::string>{"Page " + std::to_string(i + 1)});

  settings.runText = [](FileInfo&, std::string_view, int) { return std::optional<std::string>(); };
  EXPECT_FALSE(producePages(metrics_, *tmpl_, &sheet_, settings));
  EXPECT_EQ(lastMessage(), "[Error] No text object to display");
}

TEST_F(ProductionTest, TextEndingInLineEndsLeavesNoRestAndAnUntaggedContinuationStaysEmpty) {
  TemplatePage& p = page("Page 1");
  box(p, "Hi\r\n\r\n", "T", 3);
  continuation(p, nullptr);
  auto out = produce();
  ASSERT_TRUE(out);
  EXPECT_FALSE(out->pages[0].objects[0]->hasMore());
  EXPECT_FALSE(out->pages[0].objects[0]->restText);
  EXPECT_EQ(out->pages[0].objects[1]->fullText, nullptr);
  EXPECT_TRUE(drawn(*out->pages[0].objects[1]).empty());
}

TEST_F(ProductionTest, ACellsFontLineActsAlikeMeasuredOrOnlyDrawn) {
  // Each cell of a grid is a box of its own: a caption, a font line, the value. A box with a tag
  // is measured when its page is made; one without is laid out only when drawn. Both take the
  // font line as a directive and draw the value on one line, under the caption.
  const char* cell = "Might\r\n@font \"Times New Roman\" 20pt b\r\n10\r\n";
  TemplatePage& p = page("Page 1");
  box(p, cell, nullptr, 4).logical.right = 720;  // six characters wide
  box(p, cell, "Cell", 4).logical.right = 720;
  auto out = produce();
  ASSERT_TRUE(out) << lastMessage();
  using V = std::vector<std::string>;
  for (const TemplateObject* o : out->pages[0].objects) {
    RecordingCanvas canvas;
    drawObject(metrics_, canvas, &sheet_, *o, RuleLines::FromPreference, {});
    EXPECT_EQ(canvas.texts(), (V{"Might", "10"}));
    // "10" on the second line: the caption's line is 240 twips.
    EXPECT_EQ(canvas.calls.back(), "text 0 240 0 '10'");
  }
  EXPECT_FALSE(out->pages[0].objects[1]->hasMore());
  // The measured box ends in the run state of the 20-point font.
  EXPECT_EQ(out->pages[0].objects[1]->runState.fontHeight, 400);
  EXPECT_EQ(out->pages[0].objects[1]->runState.charStyle, kCharBold);
}

TEST_F(ProductionTest, IncludeFileMacrosExpandInBoxes) {
  TemplatePage& p = page("Page 1");
  box(p, "$(Realm) $$define Realm \"ignored\"\r\n", nullptr);
  tmpl_->includeFile = "missing.inc";
  EXPECT_FALSE(produce());
  EXPECT_EQ(lastMessage(), "[Error] Cannot open include file missing.inc");
}

// ---- layoutText ----

class LayoutTest : public ::testing::Test {
 protected:
  HeadlessHost host_{nullptr};
  HostInstallation installation_{host_};
  FixedWidthMetrics metrics_{100, 200};
  RecordingCanvas canvas_;
  TextProperties props_;

  std::vector<std::string> layout(std::string_view text, Rect32 rect,
                                  LayoutResult* result = nullptr) {
    canvas_.calls.clear();
    TextProperties state = props_;
    LayoutResult r = layoutText(metrics_, &canvas_, text, {rect, false, true}, state);
    if (result) *result = r;
    std::vector<std::string> out;
    for (const std::string& call : canvas_.calls)
      if (call.rfind("text", 0) == 0) out.push_back(call.substr(5));
    return out;
  }
};

TEST_F(LayoutTest, LinesBreakAtBlanksAndCutLongWords) {
  using V = std::vector<std::string>;
  // 10 characters to a line, 3 lines.
  EXPECT_EQ(layout("one two three four", {0, 0, 1000, 600}),
            (V{"0 0 0 'one two'", "0 200 0 'three four'"}));
  EXPECT_EQ(layout("abcdefghijklmno", {0, 0, 1000, 600}),
            (V{"0 0 0 'abcdefghij'", "0 200 0 'klmno'"}));
  // A bare line feed breaks nothing.
  EXPECT_EQ(layout("ab\ncd", {0, 0, 1000, 600}), (V{"0 0 0 'abcd'"}));
  LayoutResult result;
  layout("a\rb\rc\rd", {0, 0, 1000, 600}, &result);
  ASSERT_TRUE(result.stop);
  EXPECT_EQ(*result.stop, 6u);
}

TEST_F(LayoutTest, JustificationIndentsTabsAndColumns) {
  using V = std::vector<std::string>;
  props_.justification = 1;
  EXPECT_EQ(layout("abc", {0, 0, 1000, 600}), (V{"700 0 0 'abc'"}));
  props_.justification = 2;
  EXPECT_EQ(layout("abcd", {0, 0, 1000, 600}), (V{"300 0 0 'abcd'"}));
  props_.justification = 3;
  EXPECT_EQ(layout("ab cd ef gh", {0, 0, 1000, 600}),
            (V{"0 0 0 'ab'", "400 0 0 'cd'", "800 0 0 'ef'", "0 200 0 'gh'"}));
  props_.justification = 0;
  props_.firstIndent = 200;
  props_.leftIndent = 100;
  EXPECT_EQ(layout("aaaa bbbb cccc", {0, 0, 1000, 600}),
            (V{"200 0 0 'aaaa'", "100 200 0 'bbbb cccc'"}));
  props_ = {};
  props_.tabs = {{800, static_cast<std::uint16_t>(TabType::Right)}};
  EXPECT_EQ(layout("a\tbc", {0, 0, 1000, 600}), (V{"0 0 0 'a'", "600 0 0 'bc'"}));
  props_.tabs = {{600, static_cast<std::uint16_t>(TabType::Decimal)}};
  EXPECT_EQ(layout("a\t$12.50", {0, 0, 1000, 600}), (V{"0 0 0 'a'", "300 0 0 '$12.50'"}));
  props_.tabs = {};
  props_.tabWidth = 300;
  EXPECT_EQ(layout("a\tb", {0, 0, 1000, 600}), (V{"0 0 0 'a'", "300 0 0 'b'"}));
  props_ = {};
  props_.columns = 2;
  props_.columnSpacing = 200;
  EXPECT_EQ(layout("a\rb\rc", {0, 0, 1000, 400}), (V{"0 0 0 'a'", "0 200 0 'b'", "600 0 0 'c'"}));
  props_.columnSpacing = 1440;
  LayoutResult result;
  layout("a", {0, 0, 1000, 400}, &result);
  EXPECT_TRUE(result.failed);
  EXPECT_EQ(host_.transcript().back(), "[Error] Zero column width");
}

TEST_F(LayoutTest, RotationAndDirectives) {
  using V = std::vector<std::string>;
  props_.rotation = 900;
  // Lines run up the left side: the first starts at the bottom left.
  EXPECT_EQ(layout("ab\rcd", {0, 0, 600, 1000}), (V{"0 1000 900 'ab'", "200 1000 900 'cd'"}));
  props_ = {};
  EXPECT_EQ(layout("@bold\r\n@leftindent 300\rab\r@unknown\r", {0, 0, 1000, 600}),
            (V{"0 0 0 'ab'", "0 200 0 '@unknown'"}));
  LayoutResult result;
  layout("a\r@need 3l\rb", {0, 0, 1000, 600}, &result);
  ASSERT_TRUE(result.stop);
  EXPECT_EQ(*result.stop, 2u);
}

// ---- drawObject ----

class DrawTest : public ::testing::Test {
 protected:
  HeadlessHost host_{nullptr};
  HostInstallation installation_{host_};
  FixedWidthMetrics metrics_{100, 200};
  RecordingCanvas canvas_;
  std::unique_ptr<PrintTemplate> tmpl_ = newPrintTemplate("Tiny");

  TemplateObject& add(ObjectKind kind, Rect32 rect) {
    tmpl_->pages[0]->objects.push_back(newTemplateObject(*tmpl_, kind, rect));
    return *tmpl_->pages[0]->objects.back();
  }
  std::vector<std::string> draw(TemplateObject& o, const FileInfo* sheet = nullptr,
                                RuleLines rules = RuleLines::FromPreference) {
    computeDeviceGeometry(*tmpl_, metrics_.pixelsPerInch());
    canvas_.calls.clear();
    drawObject(metrics_, canvas_, sheet, o, rules, {});
    return canvas_.calls;
  }
};

TEST_F(DrawTest, CellLinesShowWithoutOutline) {
  TemplateObject& o = add(ObjectKind::Rectangle, {0, 0, 1000, 500});
  o.attributes.setOutline(false);
  o.attributes.setFill(false);
  o.attributes.setHorizontalCells(4);
  o.attributes.lineWidth = 0;
  using V = std::vector<std::string>;
  EXPECT_EQ(draw(o), (V{"brush none", "pen none", "pen 0 0", "line 250 0 250 500",
                        "line 500 0 500 500", "line 750 0 750 500"}));
  o.attributes.setHorizontalCells(0);
  EXPECT_TRUE(draw(o).empty());
}

TEST_F(DrawTest, ShapesLinesAndPictures) {
  using V = std::vector<std::string>;
  TemplateObject& round = add(ObjectKind::RoundBox, {0, 0, 1000, 500});
  round.cornerWidth = 200;
  round.cornerHeight = 100;
  EXPECT_EQ(draw(round), (V{"brush FFFFFF", "pen 5 0", "roundrect 0 0 1000 500 200 100"}));
  TemplateObject& wide = add(ObjectKind::HorizontalLine, {100, 100, 900, 100});
  wide.attributes.lineWidth = 40;
  EXPECT_EQ(draw(wide), (V{"fill 80 80 920 120 0"}));
  TemplateObject& square = add(ObjectKind::Polygon, {0, 0, 200, 200});
  square.sides = 4;
  square.attributes.setOutline(false);
  EXPECT_EQ(draw(square), (V{"brush FFFFFF", "pen none", "polygon 200,100 100,0 0,100 100,200"}));
  TemplateObject& picture = add(ObjectKind::PictureReference, {0, 0, 5000, 400});
  EXPECT_EQ(draw(picture).back(), "text 350 100 0 'Double-click here to set picture reference.'");
  TemplateObject& metafile = add(ObjectKind::Metafile, {0, 0, 10, 10});
  EXPECT_EQ(draw(metafile).back(), "rect 0 0 10 10");
  TemplateObject& bad = add(ObjectKind::Rectangle, {0, 0, 10, 10});
  bad.kind = 8;
  draw(bad);
  EXPECT_EQ(host_.transcript().back(), "[Error] Object type missing from drawObject");
}

TEST_F(DrawTest, RuleLinesFollowTheAskAndTheBit) {
  TemplateObject& o = add(ObjectKind::Label, {0, 0, 1000, 400});
  o.attributes.setOutline(false);
  o.attributes.setFill(false);
  o.attributes.setRuleLines(true);
  o.textProperties.lineHeight = 200;
  o.text = "";
  using V = std::vector<std::string>;
  EXPECT_TRUE(draw(o).empty());
  EXPECT_EQ(draw(o, nullptr, RuleLines::Shown),
            (V{"pen 5 0", "line 0 200 1000 200", "line 0 400 1000 400"}));
}

}  // namespace
}  // namespace zv
