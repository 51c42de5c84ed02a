#include "print/produce/layout_text.h"

#include <algorithm>
#include <string>
#include <vector>

#include "core/messages.h"
#include "print/produce/layout_directives.h"

namespace zv {

namespace {

bool rotated(int rotation) {
  return (rotation / 900) % 2 == 1;
}

/// Pixels per inch along the line and across the lines.
std::pair<int, int> alongAcross(int rotation, PixelsPerInch ppi) {
  return rotated(rotation) ? std::pair{ppi.y, ppi.x} : std::pair{ppi.x, ppi.y};
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

enum class LineEnd { Wrap, Paragraph, EndOfText };

struct Segment {
  int along = 0;
  std::string text;
};

class Layout {
 public:
  Layout(TextMetrics& metrics, Canvas* canvas, std::string_view text, const LayoutBox& box,
         TextProperties& state)
      : metrics_(metrics),
        canvas_(box.draw ? canvas : nullptr),
        text_(text),
        box_(box),
        state_(state),
        ppi_(metrics.pixelsPerInch()) {}

  LayoutResult run();

 private:
  int along(int twips) const { return twipsToDevice(twips, alongAcross(rotation_, ppi_).first); }
  int across(int twips) const { return twipsToDevice(twips, alongAcross(rotation_, ppi_).second); }
  int width(std::string_view text) { return metrics_.textWidth(font_, text); }
  void refreshFont() {
    font_ = fontFor(state_, ppi_);
    lineHeight_ = lineHeightOf(metrics_, state_);
  }
  int columnWidth() const {
    return column_ + 1 == geometry_.count ? geometry_.lineLength - columnStart() : geometry_.width;
  }
  int columnStart() const { return column_ * (geometry_.width + geometry_.gap); }

  /// Takes the directive lines at a paragraph start; false when one ends the box.
  bool takeDirectives();
  LineEnd buildLine();
  bool takeTab();
  void writeLine(bool lastOfParagraph);
  void drawText(int alongPos, std::string_view text);
  /// Moves to the next line place; false when there is no room left in the box.
  bool roomForLine();

  TextMetrics& metrics_;
  Canvas* canvas_;
  std::string_view text_;
  LayoutBox box_;
  TextProperties& state_;
  PixelsPerInch ppi_;
  int rotation_ = 0;
  ColumnGeometry geometry_;
  DeviceFont font_;
  int lineHeight_ = 0;

  std::size_t i_ = 0;
  int column_ = 0;
  int v_ = 0;
  bool taken_ = false;
  int pen_ = 0;
  int wordsOnLine_ = 0;
  bool tabOnLine_ = false;
  std::vector<Segment> line_;
};

bool Layout::takeDirectives() {
  while (i_ < text_.size()) {
    std::size_t end = text_.find('\r', i_);
    if (end == std::string_view::npos) end = text_.size();
    std::string_view line = text_.substr(i_, end - i_);
    DirectiveEffect effect;
    TextProperties before = state_;
    if (!applyLayoutDirective(line, state_, effect)) return true;
    if (effect.need && taken_) {
      int need = *effect.need < 0 ? -*effect.need * lineHeight_ : across(*effect.need);
      if (geometry_.depth - v_ < need) {
        state_ = before;
        return false;
      }
    }
    std::size_t next = end;
    if (next < text_.size()) ++next;
    if (next < text_.size() && text_[next] == '\n') ++next;
    i_ = next;
    refreshFont();
    if (effect.rule) {
      int thickness = std::max(1, across(effect.rule->width));
      int start = along(effect.rule->start);
      int stop = effect.rule->end > 0 ? along(effect.rule->end) : columnWidth();
      if (canvas_) {
        canvas_->setPen(Pen{thickness, state_.textColour});
        int y = v_ + thickness / 2;
        canvas_->line(boxPoint(box_.rect, rotation_, columnStart() + start, y),
                      boxPoint(box_.rect, rotation_, columnStart() + stop, y));
      }
      v_ += thickness + 1;
    }
  }
  return true;
}

bool Layout::takeTab() {
  const int lineWidth = columnWidth();
  int stop = -1;
  std::uint16_t type = static_cast<std::uint16_t>(TabType::Left);
  int best = 0;
  bool found = false;
  for (const TemplateTab& tab : state_.tabs) {
    int position = tab.position < 0 ? lineWidth + along(tab.position) : along(tab.position);
    if (position > pen_ && (!found || position < best)) {
      best = position;
      type = tab.type;
      found = true;
    }
  }
  if (found) {
    stop = best;
  } else {
    int distance = along(state_.tabWidth == 0 ? kDefaultTabWidth : state_.tabWidth);
    if (distance < 1) distance = 1;
    int base = along(state_.leftIndent);
    stop = pen_ < base ? base : base + ((pen_ - base) / distance + 1) * distance;
  }
  if (stop > lineWidth) {
    if (state_.wrapTabs && !line_.empty()) return false;
    stop = lineWidth;
  }
  ++i_;
  std::size_t end = i_;
  while (end < text_.size() && text_[end] != '\t' && text_[end] != '\r')
    ++end;
  std::string_view following = text_.substr(i_, end - i_);
  int next = stop;
  switch (static_cast<TabType>(type & 3)) {
    case TabType::Left:
      break;
    case TabType::Right:
      next = stop - width(following);
      break;
    case TabType::Centred:
      next = stop - width(following) / 2;
      break;
    case TabType::Decimal: {
      std::size_t d = 0;
      while (d < following.size() && !isDigit(following[d]))
        ++d;
      std::size_t e = d;
      while (e < following.size() && isDigit(following[e]))
        ++e;
      next = stop - width(following.substr(0, d < following.size() ? e : following.size()));
      break;
    }
  }
  pen_ = std::max(pen_, next);
  tabOnLine_ = true;
  line_.push_back({pen_, {}});
  return true;
}

LineEnd Layout::buildLine() {
  const int lineWidth = columnWidth();
  auto append = [&](std::string_view piece, int pieceWidth) {
    if (line_.empty()) line_.push_back({pen_, {}});
    line_.back().text.append(piece);
    pen_ += pieceWidth;
  };
  while (true) {
    if (i_ >= text_.size()) return LineEnd::EndOfText;
    char c = text_[i_];
    if (c == '\r') {
      ++i_;
      if (i_ < text_.size() && text_[i_] == '\n') ++i_;
      return LineEnd::Paragraph;
    }
    if (c == '\n') {  // a line feed alone neither ends a word nor a line, and isn't drawn
      ++i_;
      continue;
    }
    if (c == '\t') {
      if (!takeTab()) return LineEnd::Wrap;
      continue;
    }
    if (c == ' ') {
      std::size_t j = i_;
      while (j < text_.size() && text_[j] == ' ')
        ++j;
      std::string_view blanks = text_.substr(i_, j - i_);
      int w = width(blanks);
      i_ = j;
      if (pen_ + w > lineWidth) return LineEnd::Wrap;
      append(blanks, w);
      continue;
    }
    std::size_t j = i_;
    std::string word;
    while (j < text_.size() && text_[j] != ' ' && text_[j] != '\t' && text_[j] != '\r') {
      if (text_[j] != '\n') word.push_back(text_[j]);
      ++j;
    }
    int w = width(word);
    if (pen_ + w <= lineWidth) {
      append(word, w);
      ++wordsOnLine_;
      i_ = j;
      continue;
    }
    if (wordsOnLine_ > 0) return LineEnd::Wrap;
    // The first word of a line that doesn't fit is cut at what fits, one character at least.
    std::size_t fits = 1;
    while (fits < word.size() &&
           pen_ + width(std::string_view(word).substr(0, fits + 1)) <= lineWidth)
      ++fits;
    append(std::string_view(word).substr(0, fits), width(std::string_view(word).substr(0, fits)));
    ++wordsOnLine_;
    // Step over the characters taken, line feeds among them included.
    std::size_t taken = 0;
    while (i_ < j && taken < fits) {
      if (text_[i_] != '\n') ++taken;
      ++i_;
    }
    return LineEnd::Wrap;
  }
}

void Layout::drawText(int alongPos, std::string_view text) {
  if (!canvas_ || text.empty()) return;
  canvas_->text(boxPoint(box_.rect, rotation_, columnStart() + alongPos, v_), text, font_,
                state_.textColour, rotation_);
}

void Layout::writeLine(bool lastOfParagraph) {
  if (!canvas_) return;
  // Trailing blanks take no room at the line's end.
  while (!line_.empty()) {
    std::string& last = line_.back().text;
    while (!last.empty() && last.back() == ' ')
      last.pop_back();
    if (!last.empty() || line_.size() == 1) break;
    line_.pop_back();
  }
  if (line_.empty()) return;
  const int lineWidth = columnWidth();
  int end = line_.back().along + width(line_.back().text);
  int extra = std::max(0, lineWidth - end);
  int shift = 0;
  switch (static_cast<Justification>(state_.justification & 3)) {
    case Justification::Left:
      break;
    case Justification::Right:
      shift = extra;
      break;
    case Justification::Centred:
      shift = extra / 2;
      break;
    case Justification::Justified: {
      if (lastOfParagraph || tabOnLine_ || line_.size() != 1) break;
      // Spread the blanks between the words.
      const std::string& text = line_[0].text;
      std::size_t start = 0;
      while (start < text.size() && text[start] == ' ')
        ++start;
      int gaps = 0;
      for (std::size_t k = start + 1; k < text.size(); ++k)
        if (text[k] == ' ' && text[k - 1] != ' ') ++gaps;
      if (gaps == 0) break;
      int pos = line_[0].along + width(std::string_view(text).substr(0, start));
      int gapIndex = 0;
      std::size_t k = start;
      while (k < text.size()) {
        std::size_t wordEnd = text.find(' ', k);
        if (wordEnd == std::string::npos) wordEnd = text.size();
        std::string_view word = std::string_view(text).substr(k, wordEnd - k);
        drawText(pos, word);
        std::size_t next = wordEnd;
        while (next < text.size() && text[next] == ' ')
          ++next;
        if (next >= text.size()) break;
        int share = extra * (gapIndex + 1) / gaps - extra * gapIndex / gaps;
        ++gapIndex;
        pos += width(std::string_view(text).substr(k, next - k)) + share;
        k = next;
      }
      return;
    }
  }
  for (const Segment& segment : line_)
    drawText(segment.along + shift, segment.text);
}

bool Layout::roomForLine() {
  if (!taken_ || v_ + lineHeight_ <= geometry_.depth) return true;
  if (column_ + 1 < geometry_.count) {
    ++column_;
    v_ = 0;
    return true;
  }
  return false;
}

LayoutResult Layout::run() {
  LayoutResult result;
  rotation_ = (state_.rotation / 900 % 4) * 900;
  if (box_.rect.width() <= 0 || box_.rect.height() <= 0) return result;
  geometry_ = columnGeometry(state_, box_.rect, ppi_);
  if (geometry_.count == 0) {
    showError("Zero column width");
    result.failed = true;
    return result;
  }
  refreshFont();
  bool paragraphStart = !box_.midParagraph;
  while (true) {
    if (paragraphStart && !takeDirectives()) {
      result.stop = i_;
      break;
    }
    if (i_ >= text_.size() && taken_) break;
    if (!roomForLine()) {
      result.stop = i_;
      break;
    }
    line_.clear();
    wordsOnLine_ = 0;
    tabOnLine_ = false;
    pen_ = along(paragraphStart ? state_.firstIndent : state_.leftIndent);
    LineEnd end = buildLine();
    writeLine(end != LineEnd::Wrap);
    taken_ = true;
    v_ += lineHeight_;
    if (end == LineEnd::EndOfText) break;
    paragraphStart = end == LineEnd::Paragraph;
  }
  result.position = v_;
  return result;
}

}  // namespace

int lineHeightOf(TextMetrics& metrics, const TextProperties& properties) {
  const PixelsPerInch ppi = metrics.pixelsPerInch();
  const int acrossPpi = alongAcross(properties.rotation, ppi).second;
  if (properties.lineHeight >= 1)
    return std::max(1, twipsToDevice(properties.lineHeight, acrossPpi));
  return std::max(1, metrics.fontHeight(fontFor(properties, ppi)));
}

ColumnGeometry columnGeometry(const TextProperties& p, const Rect32& rect, PixelsPerInch ppi) {
  ColumnGeometry g;
  const bool turned = rotated(p.rotation);
  g.lineLength = turned ? rect.height() : rect.width();
  g.depth = turned ? rect.width() : rect.height();
  g.count = p.columns > 1 ? p.columns : 1;
  g.gap = g.count > 1 ? twipsToDevice(p.columnSpacing, alongAcross(p.rotation, ppi).first) : 0;
  g.width = (g.lineLength - g.gap * (g.count - 1)) / g.count;
  if (g.count > 1 && g.width < 1) g.count = 0;
  return g;
}

DevicePoint boxPoint(const Rect32& r, int rotation, int along, int across) {
  switch ((rotation / 900) % 4) {
    case 1:
      return {r.left + across, r.bottom - along};
    case 2:
      return {r.right - along, r.bottom - across};
    case 3:
      return {r.right - across, r.top + along};
    default:
      return {r.left + along, r.top + across};
  }
}

LayoutResult layoutText(TextMetrics& metrics, Canvas* canvas, std::string_view text,
                        const LayoutBox& box, TextProperties& runState) {
  Layout layout(metrics, canvas, text, box, runState);
  return layout.run();
}

}  // namespace zv
