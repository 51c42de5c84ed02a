#include "filter/rich/clipboard.h"

#include "core/messages.h"
#include "core/text.h"
#include "filter/rich/filter_text.h"
#include "filter/rich/rich_writers.h"
#include "filter/rich/rtf_reader.h"

namespace zv {

namespace {

bool isSpace(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}

constexpr std::string_view kStartComment = "<!--StartFragment-->\r\n";
constexpr std::string_view kEndComment = "<!--EndFragment-->\r\n";

}  // namespace

std::optional<std::string> wrapHtmlForClipboard(std::string_view html) {
  std::string page;
  page.reserve(html.size() + 64);
  for (char c : html) {
    const unsigned char b = static_cast<unsigned char>(c);
    if (b & 0x80) {
      page += static_cast<char>((b >> 6) | 0xC0);
      page += static_cast<char>(b & 0x3F);
    } else {
      page += c;
    }
  }
  const std::size_t bodyTag = findIgnoringCase(page, "<body");
  std::size_t start = bodyTag == std::string::npos ? std::string::npos : page.find('>', bodyTag);
  std::size_t close = std::string::npos;
  if (start != std::string::npos) {
    ++start;
    while (start < page.size() && isSpace(page[start]))
      ++start;
    close = findIgnoringCase(page, "</body>", start);
  }
  if (close == std::string::npos) {
    showError("HTML is not properly formatted. <body> or </body> missing.");
    return std::nullopt;
  }
  const std::size_t end = close > start ? close - 1 : start;
  std::string body = page.substr(0, start);
  body += kStartComment;
  const std::size_t fragmentStart = body.size();
  body.append(page, start, end - start);
  const std::size_t fragmentEnd = body.size();
  body += kEndComment;
  body.append(page, end, std::string::npos);

  const std::size_t headerLength = std::string_view(
                                       "Version:0.9\r\nStartHTML:000000\r\nEndHTML:000000\r\n"
                                       "StartFragment:000000\r\nEndFragment:000000\r\n")
                                       .size();
  const std::size_t total = headerLength + body.size();
  if (total > 999999) {
    showError("Memory error creating HTML clipboard format.");
    return std::nullopt;
  }
  std::string out = strprintf(
      "Version:0.9\r\nStartHTML:%06d\r\nEndHTML:%06d\r\nStartFragment:%06d\r\nEndFragment:%06d\r\n",
      static_cast<int>(headerLength), static_cast<int>(total),
      static_cast<int>(headerLength + fragmentStart), static_cast<int>(headerLength + fragmentEnd));
  out += body;
  return out;
}

ClipboardContents clipboardContentsFor(const FilterDocument& document, std::string_view block) {
  ClipboardContents contents;
  const std::string& format = document.clipFormat.str();
  auto plainOnly = [&contents, block] {
    contents.entries = {{std::string(kPlainTextFormat), std::string(block)}};
  };
  if (!format.empty()) {
    if (format == kHtmlFormat) {
      std::optional<std::string> wrapped = wrapHtmlForClipboard(block);
      if (!wrapped) {
        plainOnly();
        return contents;
      }
      contents.entries = {{std::string(kHtmlFormat), std::move(*wrapped)},
                          {std::string(kPlainTextFormat), std::string(block)}};
      contents.html = std::string(block);
    } else if (equalsIgnoringCase(format, kRichTextFormat)) {
      RichText parsed;
      if (parseRichText(block, parsed) != kRichOk) {
        plainOnly();
        return contents;
      }
      contents.entries = {{std::string(kPlainTextFormat), textOf(parsed)},
                          {std::string(kRichTextFormat), std::string(block)}};
    } else {
      contents.entries = {{format, std::string(block)}};
    }
    return contents;
  }
  RichText parsed;
  bool rich = false;
  if (!parseFilterText(block, &document, parsed, rich) || !rich) {
    plainOnly();
    return contents;
  }
  contents.entries = {{std::string(kPlainTextFormat), textOf(parsed)},
                      {std::string(kRichTextFormat), rtfOf(parsed)}};
  return contents;
}

bool putOnClipboard(ClipboardSink& clipboard, const FilterDocument& document,
                    std::string_view block) {
  if (!clipboard.open()) {
    showError("Can't open clipboard");
    return false;
  }
  clipboard.put(clipboardContentsFor(document, block));
  clipboard.close();
  return true;
}

}  // namespace zv
