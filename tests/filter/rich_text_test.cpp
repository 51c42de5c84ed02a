#include <gtest/gtest.h>

#include "filter/rich/filter_text.h"
#include "filter/rich/rich_writers.h"
#include "filter/rich/rtf_reader.h"
#include "filter_test_support.h"

namespace zv {
namespace {

using test::QuietHost;

RichText parsed(std::string_view rtf) {
  RichText rich;
  EXPECT_EQ(parseRichText(rtf, rich), kRichOk) << rtf;
  return rich;
}

std::string html(std::string_view rtf) {
  return htmlOf(parsed(rtf)).value_or("(failed)");
}

TEST(RtfReader, TextOfStories) {
  struct Case {
    const char* rtf;
    const char* text;
  };
  const Case cases[] = {
      {"{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Times New Roman;}}\\plain Hello \\b bold\\b0  "
       "end\\par}",
       "Hello bold end\r\n"},
      {"{\\rtf1 {\\*\\foo hidden}shown}", "shown"},
      {"{\\rtf1 {\\colortbl;\\red255\\green0\\blue0;}x}", "x"},
      {"{\\rtf1 a\\line b\\tab c}", "a\rb\tc"},
      {"{\\rtf1 \\ldblquote q\\rdblquote  \\{x\\} \\\\}", "\"q\" {x} \\"},
      {"{\\rtf1 caf\\'e9 \\'BD}", "caf\xE9 \xBD"},
      {"{\\rtf1 a{\\info{\\title T}{\\author A}}b{\\pict\\bin3 }}}}c}", "abc"},
      {"{\\rtf1 x\\unknownword y}", "xy"},
      {"{\\rtf1 \\u8364?}", "?"},
      {"{\\rtf1\r\n a\r\nb}", " ab"},
      {"{\\rtf1 {\\header H}{\\footnote F}{\\*\\generator G;}T}", "T"},
      {"{\\rtf1 x\\-y\\~z}", "xyz"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(textOf(parsed(c.rtf)), c.text) << c.rtf;
}

TEST(RtfReader, FailuresGiveTheirCodeAndNoText) {
  struct Case {
    const char* rtf;
    int result;
  };
  const Case cases[] = {
      {"{\\rtf1 a}}", kRichStackUnderflow},
      {"{\\rtf1 {a}", kRichUnmatchedBrace},
      {"{\\rtf1 \\'zz}", kRichInvalidHex},
      {"}", kRichStackUnderflow},
  };
  for (const Case& c : cases) {
    RichText rich;
    rich.text = "old";
    EXPECT_EQ(parseRichText(c.rtf, rich), c.result) << c.rtf;
    EXPECT_EQ(rich.text, "") << c.rtf;
  }
  std::string deep(kMaxRichGroupDepth + 1, '{');
  RichText rich;
  EXPECT_EQ(parseRichText(deep, rich), kRichStackOverflow);
  std::string fine(kMaxRichGroupDepth, '{');
  fine += std::string(kMaxRichGroupDepth, '}');
  EXPECT_EQ(parseRichText(fine, rich), kRichOk);
}

TEST(RtfReader, PropertiesRunsAndParagraphs) {
  RichText rich = parsed(
      "{\\rtf1\\ansi\\deff1{\\fonttbl{\\f0\\froman\\fcharset0{\\*\\panose 0202}Times New "
      "Roman;}{\\f1\\fswiss Arial;}}\\margl1000\\paperw11906\\landscape"
      "\\pard\\li1440\\qc\\sa120 A\\i B{\\b\\ul C}\\f0\\fs32 D\\par\\pard E}");
  EXPECT_EQ(rich.text, "ABCD\r\nE");
  ASSERT_EQ(rich.fonts.size(), 2u);
  EXPECT_EQ(rich.fontName(0), "Times New Roman");
  EXPECT_EQ(rich.fontName(1), "Arial");
  EXPECT_EQ(rich.fontName(7), "");
  EXPECT_EQ(rich.defaultFont, 1);
  EXPECT_EQ(rich.page.marginLeft, 1000);
  EXPECT_EQ(rich.page.marginRight, 1800);
  EXPECT_EQ(rich.page.paperWidth, 11906);
  EXPECT_TRUE(rich.page.landscape);
  EXPECT_EQ(rich.characterAt(0), (RichCharacter{false, false, false, 1, 24}));
  EXPECT_EQ(rich.characterAt(1), (RichCharacter{false, true, false, 1, 24}));
  EXPECT_EQ(rich.characterAt(2), (RichCharacter{true, true, true, 1, 24}));
  EXPECT_EQ(rich.characterAt(3), (RichCharacter{false, true, false, 0, 32}));
  EXPECT_EQ(rich.runs.size(), 4u);
  EXPECT_EQ(rich.paragraphAt(0).leftIndent, 1440);
  EXPECT_EQ(rich.paragraphAt(0).justification, kJustifyCentre);
  EXPECT_EQ(rich.paragraphAt(0).spaceAfter, 120);
  EXPECT_EQ(rich.paragraphAt(6), RichParagraphFormat());
  EXPECT_EQ(rich.paragraphs.size(), 2u);
  EXPECT_GT(richKeywordCount(), 80);
}

// Stories as rich text editors write them: a word processor's with its information, style sheet
// and generator groups, and a small editor's with a colour table and Unicode escapes.
TEST(RtfReader, StoriesOfEditors) {
  const char* wordProcessor =
      "{\\rtf1\\ansi\\deff3\\adeflang1025\r\n"
      "{\\fonttbl{\\f0\\froman\\fprq2\\fcharset0 Times New Roman;}{\\f1\\froman\\fprq2\\fcharset2 "
      "Symbol;}{\\f3\\froman\\fprq2\\fcharset0 Liberation Serif{\\*\\falt Times New Roman};}}\r\n"
      "{\\colortbl;\\red0\\green0\\blue0;\\red128\\green128\\blue128;}\r\n"
      "{\\stylesheet{\\s0\\snext0\\ql\\widctlpar\\hyphpar0\\ltrpar\\cf0\\dbch\\af7\\langfe2052"
      "\\dbch\\af8\\afs24\\alang1081\\loch\\f3\\fs24\\lang2057 Normal;}}\r\n"
      "{\\*\\generator LibreOffice/7.4;}{\\info{\\creatim\\yr2024\\mo3\\dy5\\hr10\\min2}}"
      "\\deftab709\r\n"
      "\\paperw11906\\paperh16838\\margl1134\\margr1134\\margt1134\\margb1134\r\n"
      "\\pgndec\\pard\\plain \\s0\\ql\\widctlpar\\ltrpar\\loch\\f3\\fs24\\lang2057"
      "{\\rtlch \\ltrch\\loch Took the oath at the }{\\b\\rtlch \\ltrch\\loch Drowned Bell}"
      "{\\rtlch \\ltrch\\loch .}\r\n"
      "\\par \\pard\\plain \\s0\\qc\\li720{\\i\\rtlch \\ltrch\\loch Owes the Ferryman "
      "\\u189\\'bd silver.}\r\n"
      "\\par }";
  RichText rich = parsed(wordProcessor);
  EXPECT_EQ(rich.text, "Took the oath at the Drowned Bell.\r\nOwes the Ferryman \xBD silver.\r\n");
  EXPECT_EQ(rich.fontName(3), "Liberation Serif");
  EXPECT_EQ(rich.page.paperHeight, 16838);
  EXPECT_EQ(htmlOf(rich).value_or(""),
            "<p>Took the oath at the <b>Drowned Bell</b>.</p>\r\n"
            "<blockquote><p align=\"center\"><i>Owes the Ferryman &frac12; silver.</i></p>\r\n"
            "</blockquote>");

  const char* smallEditor =
      "{\\rtf1\\ansi\\ansicpg1252\\deff0\\nouicompat{\\fonttbl{\\f0\\fnil\\fcharset0 "
      "Calibri;}}\r\n{\\colortbl ;\\red255\\green0\\blue0;}\r\n{\\*\\generator Riched20 "
      "10.0.19041}\\viewkind4\\uc1 \r\n\\pard\\sa200\\sl276\\slmult1\\f0\\fs22\\lang9 Vigor "
      "\\cf1\\b 19\\cf0\\b0  and \\ul Dread\\ulnone  12\\par\r\n}\r\n";
  rich = parsed(smallEditor);
  EXPECT_EQ(rich.text, "Vigor 19 and Dread 12\r\n");
  EXPECT_EQ(htmlOf(rich).value_or(""),
            "<p><font>Vigor <b>19</b> and <u>Dread</u> 12</p>\r\n</font>");
}

TEST(HtmlWriter, ParagraphsRunsAndCharacters) {
  struct Case {
    const char* rtf;
    const char* html;
  };
  const Case cases[] = {
      {"{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Times New Roman;}}\\plain Hello \\b bold\\b0  "
       "end\\par}",
       "<p>Hello <b>bold</b> end</p>\r\n"},
      {"{\\rtf1 \\par\\par}", "<p></p>\r\n<p></p>\r\n"},
      {"{\\rtf1\\li1440 Hi\\par}",
       "<blockquote><blockquote><p>Hi</p>\r\n</blockquote></blockquote>"},
      {"{\\rtf1 a<b & c\\'bd\\'d7\\'bc\\'be>}",
       "<p>a&lt;b &amp; c&frac12;&times;&frac14;&frac34;&gt;</p>\r\n"},
      {"{\\rtf1 Big\\fs32 X}", "<p>Big<font size=\"5\">X</font></p>\r\n"},
      {"{\\rtf1\\fs24 twelve}", "<p>twelve</p>\r\n"},
      {"{\\rtf1\\qc c\\par\\qr r\\par\\qj j\\par\\ql l}",
       "<p align=\"center\">c</p>\r\n<p align=\"right\">r</p>\r\n<p align=\"left\">j</p>\r\n"
       "<p>l</p>\r\n"},
      {"{\\rtf1 a\\line b\\line}", "<p>a<br>\r\nb<br></p>\r\n"},
      {"{\\rtf1 a\\tab b \"q\"}", "<p>a b \"q\"</p>\r\n"},
      {"{\\rtf1{\\fonttbl{\\f0 A;}{\\f1 Bee;}}\\f1\\fs20 x\\f0\\fs24 y}",
       "<p><font size=\"2\" face=\"Bee\">x</font>y</p>\r\n"},
      {"{\\rtf1{\\b\\i\\ul all}none}", "<p><b><i><u>all</b></i></u>none</p>\r\n"},
      {"{\\rtf1 caf\\'e9}", "<p>caf\xE9</p>\r\n"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(html(c.rtf), c.html) << c.rtf;
  const int sizes[][2] = {{16, 1}, {17, 2}, {20, 2}, {21, 3}, {24, 3}, {25, 4},
                          {28, 4}, {29, 5}, {36, 5}, {37, 6}, {48, 6}, {49, 7}};
  for (const auto& s : sizes)
    EXPECT_EQ(htmlFontSize(s[0]), s[1]) << s[0];
}

TEST(HtmlWriter, InconsistentModelIsRefused) {
  QuietHost host;
  RichText rich;
  rich.text = "ab";
  rich.runs.push_back({5, {}});
  EXPECT_FALSE(htmlOf(rich));
  EXPECT_EQ(host.lastShown(), "[Error] Unable to emit HTML");
}

TEST(RtfWriter, CleanedRtf) {
  struct Case {
    const char* rtf;
    const char* out;
  };
  const Case cases[] = {
      {"{\\rtf1 a<b & c\\'bd\\'d7}", "{\\rtf\\ansi\\ansicpg1252\\plain a<b & c\\'BD\\'D7\r\n}"},
      {"{\\rtf1 \\{x\\}\\tab y\\\\}", "{\\rtf\\ansi\\ansicpg1252\\plain\\{x\\}\\tab y\\\\\r\n}"},
      {"{\\rtf1{\\fonttbl{\\f2 Arial;}{\\f5 Serif;}}\\f2 A\\par\\qc\\fi-20\\li40\\ri60\\keep\\sa5"
       "\\sb7\\b\\i\\ul\\f5\\fs30 B\\line C}",
       "{\\rtf\\ansi\\ansicpg1252\\deff2\r\n{\\fonttbl\r\n{\\f2\\fnil\\fcharset0 Arial;}"
       "{\\f5\\fnil\\fcharset0 Serif;}}\r\n\\plain A\\par\r\n"
       "\\pard\\qc\\fi-20\\li40\\ri60\\keep\\sa5\\sb7\\f5\\fs30\\b\\i\\ul B\\line\r\nC\r\n}"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(rtfOf(parsed(c.rtf)), c.out) << c.rtf;
}

TEST(RtfWriter, FontNamesAreEscaped) {
  // A font table left open takes the rest of the story as a font name, braces included.
  RichText rich = parsed("{\\rtf1{\\fonttbl{\\f1 Arial;}x\\f0 Odd \\{name\\} \\'e9}}");
  EXPECT_EQ(rich.fontName(0), "Odd {name} \xE9");
  const std::string rtf = rtfOf(rich);
  EXPECT_NE(rtf.find("{\\f0\\fnil\\fcharset0 Odd \\{name\\} \\'E9;}"), std::string::npos) << rtf;
  EXPECT_EQ(parsed(rtf).fontName(0), "Odd {name} \xE9");
}

TEST(RtfWriter, ReadsBackToTheSameStory) {
  RichText first = parsed(
      "{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1 Serif;}}\\qr Right \\b bold\\b0  \\ul under\\ulnone\\par"
      "\\pard\\li720\\f1\\fs20 small \\'bd\\tab end}");
  RichText second = parsed(rtfOf(first));
  EXPECT_EQ(second.text, first.text);
  for (std::size_t i = 0; i < first.text.size(); ++i) {
    EXPECT_EQ(second.characterAt(i), first.characterAt(i)) << i;
    EXPECT_EQ(second.paragraphAt(i), first.paragraphAt(i)) << i;
  }
}

TEST(FilterText, StyleCommandsBecomeRunsAndParagraphs) {
  QuietHost host;
  RichText rich;
  bool formatted = false;
  ASSERT_TRUE(
      parseFilterText("Hi\n@bold\nBold line\r\n@plain\n@leftindent 1in\nIndented\n"
                      "@font 'Arial' 14pt i\nBig\n@foreach(x)\n",
                      nullptr, rich, formatted));
  EXPECT_TRUE(formatted);
  EXPECT_EQ(rich.text, "Hi\r\nBold line\r\nIndented\r\nBig\r\n@foreach(x)\r\n");
  EXPECT_FALSE(rich.characterAt(0).bold);
  EXPECT_TRUE(rich.characterAt(4).bold);
  EXPECT_EQ(rich.paragraphAt(15).leftIndent, 1440);
  EXPECT_EQ(rich.characterAt(25), (RichCharacter{false, true, false, 0, 28}));
  EXPECT_EQ(rich.fontName(0), "Arial");
  EXPECT_EQ(rtfOf(rich),
            "{\\rtf\\ansi\\ansicpg1252\\deff0\r\n{\\fonttbl\r\n{\\f0\\fnil\\fcharset0 Arial;}}\r\n"
            "\\plain Hi\\par\r\n\\b Bold line\\par\r\n\\pard\\li1440\\b0 Indented\\par\r\n"
            "\\fs28\\i Big\\par\r\n@foreach(x)\\par\r\n\r\n}");

  ASSERT_TRUE(parseFilterText("Plain\nlines", nullptr, rich, formatted));
  EXPECT_FALSE(formatted);
  EXPECT_EQ(rich.text, "Plain\r\nlines");

  FilterDocument document;
  document.style.face = "Serif";
  document.style.size = 200;
  document.marginLeft = 720;
  ASSERT_TRUE(parseFilterText("@tabs 2 1in\nA\tB\n", &document, rich, formatted));
  EXPECT_EQ(rich.characterAt(0), (RichCharacter{false, false, false, 0, 20}));
  EXPECT_EQ(rich.paragraphAt(0).tabs, (std::vector<std::uint32_t>{richTab(kTabRight, 1440)}));
  EXPECT_EQ(rich.page.marginLeft, 720);

  EXPECT_FALSE(parseFilterText("@font 'A' 12pt q\nX\n", nullptr, rich, formatted));
  EXPECT_EQ(host.lastShown(), "[Filter Error] Unknown font style: q\\n\\nLine: 1");
}

}  // namespace
}  // namespace zv
