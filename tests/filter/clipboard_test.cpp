#include "filter/rich/clipboard.h"

#include <gtest/gtest.h>

#include "filter_test_support.h"

namespace zv {
namespace {

using test::QuietHost;

FilterDocument withClipFormat(const char* format) {
  FilterDocument document;
  document.clipFormat = format;
  return document;
}

std::vector<std::string> formatsOf(const ClipboardContents& contents) {
  std::vector<std::string> names;
  for (const ClipboardEntry& entry : contents.entries)
    names.push_back(entry.format);
  return names;
}

/// The number behind "name:" in a wrapped page's header.
int headerNumber(const std::string& wrapped, const std::string& name) {
  std::size_t at = wrapped.find(name + ":");
  return at == std::string::npos ? -1 : std::stoi(wrapped.substr(at + name.size() + 1, 6));
}

TEST(HtmlClipboard, WrapperOffsetsPointAtTheirPlaces) {
  const std::string page = "<html><BODY bgcolor=\"#fff\">\r\n  <p>Hi</p>\r\n</Body></html>";
  auto wrapped = wrapHtmlForClipboard(page);
  ASSERT_TRUE(wrapped);
  EXPECT_EQ(wrapped->substr(0, 39), "Version:0.9\r\nStartHTML:000089\r\nEndHTML:");
  EXPECT_EQ(headerNumber(*wrapped, "StartHTML"), 89);
  EXPECT_EQ(headerNumber(*wrapped, "EndHTML"), static_cast<int>(wrapped->size()));
  const int start = headerNumber(*wrapped, "StartFragment");
  const int end = headerNumber(*wrapped, "EndFragment");
  EXPECT_EQ(wrapped->substr(89, 29), "<html><BODY bgcolor=\"#fff\">\r\n");
  EXPECT_EQ(wrapped->substr(static_cast<std::size_t>(start) - 22, 22), "<!--StartFragment-->\r\n");
  // The fragment ends one byte before "</body>", here between CR and LF.
  EXPECT_EQ(wrapped->substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)),
            "<p>Hi</p>\r");
  EXPECT_EQ(wrapped->substr(static_cast<std::size_t>(end)),
            "<!--EndFragment-->\r\n\n</Body></html>");
  EXPECT_EQ(wrapped->size(), 89 + page.size() + 22 + 20);
}

TEST(HtmlClipboard, HighBytesAreReencoded) {
  auto wrapped = wrapHtmlForClipboard("<body>\xBD\xE9\r\n</body>");
  ASSERT_TRUE(wrapped);
  EXPECT_NE(wrapped->find("\xC2\x3D\xC3\x29"), std::string::npos);
  EXPECT_EQ(wrapped->find('\xBD'), std::string::npos);
}

TEST(HtmlClipboard, BodyMissing) {
  QuietHost host;
  for (const char* page : {"Hi\n", "<body>Hi", "<body Hi</p>", "</body><body>"}) {
    host.clear();
    EXPECT_FALSE(wrapHtmlForClipboard(page)) << page;
    EXPECT_EQ(host.lastShown(),
              "[Error] HTML is not properly formatted. <body> or </body> missing.")
        << page;
  }
  host.clear();
  EXPECT_FALSE(wrapHtmlForClipboard("<body>" + std::string(1000000, 'x') + "</body>"));
  EXPECT_EQ(host.lastShown(), "[Error] Memory error creating HTML clipboard format.");
}

TEST(ClipboardChoice, ByClipFormat) {
  QuietHost host;
  struct Case {
    const char* clipFormat;
    const char* block;
    std::vector<std::string> formats;
    const char* plain;
    const char* message;
  };
  const Case cases[] = {
      {"HTML Format",
       "<html><body>\r\n<p>x</p>\r\n</body></html>\r\n",
       {"HTML Format", "Text"},
       "<html><body>\r\n<p>x</p>\r\n</body></html>\r\n",
       ""},
      {"HTML Format",
       "Hi\n",
       {"Text"},
       "Hi\n",
       "[Error] HTML is not properly formatted. <body> or </body> missing."},
      {"html format", "Hi\n", {"html format"}, nullptr, ""},
      {"rich text format", "{\\rtf1 x\\par}", {"Text", "Rich Text Format"}, "x\r\n", ""},
      {"Rich Text Format", "{\\rtf1 x", {"Text"}, "{\\rtf1 x", ""},
      {"Csv", "a,b\n", {"Csv"}, nullptr, ""},
      {"", "Hi\n", {"Text"}, "Hi\n", ""},
      {"", "\\@bold\nHi\n", {"Text"}, "\\@bold\nHi\n", ""},
      {"", "@bold\nHi\n", {"Text", "Rich Text Format"}, "Hi\r\n", ""},
      {"",
       "@font 'A' 1pt z\nHi\n",
       {"Text"},
       "@font 'A' 1pt z\nHi\n",
       "[Filter Error] Unknown font style: z\\n\\nLine: 1"},
  };
  for (const Case& c : cases) {
    host.clear();
    ClipboardContents contents = clipboardContentsFor(withClipFormat(c.clipFormat), c.block);
    EXPECT_EQ(formatsOf(contents), c.formats) << c.clipFormat << " " << c.block;
    for (const ClipboardEntry& entry : contents.entries) {
      if (entry.format == kPlainTextFormat && c.plain != nullptr) {
        EXPECT_EQ(entry.bytes, c.plain) << c.clipFormat << " " << c.block;
      }
      if (entry.format == "Csv" || entry.format == "html format") {
        EXPECT_EQ(entry.bytes, c.block);
      }
    }
    EXPECT_EQ(host.lastShown(), c.message) << c.clipFormat << " " << c.block;
  }
  ClipboardContents rich = clipboardContentsFor(FilterDocument(), "@bold\nHi\n");
  EXPECT_EQ(rich.entries[1].bytes, "{\\rtf\\ansi\\ansicpg1252\\plain\\b Hi\\par\r\n\r\n}");
  ClipboardContents page = clipboardContentsFor(withClipFormat("HTML Format"), "<body>\xBD</body>");
  EXPECT_EQ(page.html, "<body>\xBD</body>");
}

class RecordingClipboard : public ClipboardSink {
 public:
  bool busy = false;
  std::vector<ClipboardContents> puts;
  int closes = 0;
  bool open() override { return !busy; }
  void put(const ClipboardContents& contents) override { puts.push_back(contents); }
  void close() override { ++closes; }
};

TEST(ClipboardChoice, PutOnClipboard) {
  QuietHost host;
  RecordingClipboard clipboard;
  EXPECT_TRUE(putOnClipboard(clipboard, FilterDocument(), "Hi"));
  ASSERT_EQ(clipboard.puts.size(), 1u);
  EXPECT_EQ(clipboard.puts[0].entries, (std::vector<ClipboardEntry>{{"Text", "Hi"}}));
  EXPECT_EQ(clipboard.closes, 1);
  clipboard.busy = true;
  EXPECT_FALSE(putOnClipboard(clipboard, FilterDocument(), "Hi"));
  EXPECT_EQ(host.lastShown(), "[Error] Can't open clipboard");
  EXPECT_EQ(clipboard.puts.size(), 1u);
}

}  // namespace
}  // namespace zv
