#include "core/ini_file.h"

#include <fstream>
#include <iterator>
#include <system_error>

#include "core/atomic_file.h"
#include "core/text.h"

namespace zv {

namespace {

bool isBlank(char c) {
  return c == ' ' || c == '\t';
}

bool hasLineBreak(std::string_view text) {
  return text.find_first_of("\r\n") != std::string_view::npos;
}

/// The value part of an entry line as a reader sees it.
std::string entryValue(std::string_view raw) {
  std::string value = trim(raw.substr(raw.find('=') + 1));
  if (value.size() >= 2 && value.front() == '"' && value.back() == '"') {
    value = value.substr(1, value.size() - 2);
  }
  return value;
}

/// The text written after "=" so that entryValue() gives `value` back.
std::string encodeValue(std::string_view value) {
  bool needsQuotes = !value.empty() && (isBlank(value.front()) || isBlank(value.back()));
  if (value.size() >= 2 && value.front() == '"' && value.back() == '"') needsQuotes = true;
  if (!needsQuotes) return std::string(value);
  std::string quoted(1, '"');
  quoted.append(value);
  quoted += '"';
  return quoted;
}

}  // namespace

IniFile::Line IniFile::classify(std::string raw) {
  Line line;
  std::string text = trim(raw);
  if (!text.empty() && text.front() == '[') {
    size_t close = text.find(']');
    if (close != std::string::npos) {
      line.kind = Kind::Section;
      line.name = trim(std::string_view(text).substr(1, close - 1));
    }
  } else if (!text.empty() && text.front() != ';') {
    size_t equals = text.find('=');
    if (equals != std::string::npos) {
      line.kind = Kind::Entry;
      line.name = trim(std::string_view(text).substr(0, equals));
    }
  }
  line.raw = std::move(raw);
  return line;
}

bool IniFile::load(const std::filesystem::path& path) {
  lines_.clear();
  crlf_ = false;
  std::error_code ec;
  if (!std::filesystem::exists(path, ec)) return !ec;
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) return false;
  parse(text);
  return true;
}

void IniFile::parse(std::string_view text) {
  lines_.clear();
  crlf_ = false;
  size_t start = 0;
  while (start < text.size()) {
    size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    std::string_view raw = text.substr(start, end - start);
    if (!raw.empty() && raw.back() == '\r') {
      raw.remove_suffix(1);
      crlf_ = true;
    }
    lines_.push_back(classify(std::string(raw)));
    start = end + 1;
  }
}

std::string IniFile::text() const {
  std::string out;
  const char* newline = crlf_ ? "\r\n" : "\n";
  for (const Line& line : lines_) {
    out += line.raw;
    out += newline;
  }
  return out;
}

bool IniFile::save(const std::filesystem::path& path) const {
  return writeFileAtomically(path, text());
}

template <typename Visit>
void IniFile::forEachEntryIn(std::string_view section, Visit visit) const {
  const std::string wanted = trim(section);
  bool inSection = false;
  for (size_t i = 0; i < lines_.size(); ++i) {
    const Line& line = lines_[i];
    if (line.kind == Kind::Section) {
      inSection = equalsIgnoringCase(line.name, wanted);
    } else if (inSection && line.kind == Kind::Entry) {
      if (!visit(i, line)) return;
    }
  }
}

std::optional<std::string> IniFile::get(std::string_view section, std::string_view key) const {
  std::string name = trim(key);
  std::optional<std::string> found;
  forEachEntryIn(section, [&](size_t, const Line& line) {
    if (!equalsIgnoringCase(line.name, name)) return true;
    found = entryValue(line.raw);
    return false;
  });
  return found;
}

bool IniFile::set(std::string_view section, std::string_view key, std::string_view value) {
  std::string sectionName = trim(section);
  std::string name = trim(key);
  if (name.empty() || name.front() == '[' || name.front() == ';' ||
      name.find('=') != std::string::npos || hasLineBreak(key) ||
      sectionName.find(']') != std::string::npos || hasLineBreak(section) || hasLineBreak(value)) {
    return false;
  }
  const std::string encoded = encodeValue(value);

  std::optional<size_t> existing;
  forEachEntryIn(sectionName, [&](size_t i, const Line& line) {
    if (!equalsIgnoringCase(line.name, name)) return true;
    existing = i;
    return false;
  });
  if (existing) {
    // Keep the key as the file spells it, and any blanks around "=".
    Line& line = lines_[*existing];
    std::string prefix = line.raw.substr(0, line.raw.find('=') + 1);
    size_t afterEquals = prefix.size();
    while (afterEquals < line.raw.size() && isBlank(line.raw[afterEquals])) {
      prefix += line.raw[afterEquals++];
    }
    line.raw = prefix + encoded;
    return true;
  }

  // A new entry goes after the last entry of the first section of that name.
  std::optional<size_t> insertAfter;
  for (size_t i = 0; i < lines_.size(); ++i) {
    if (lines_[i].kind != Kind::Section || !equalsIgnoringCase(lines_[i].name, sectionName)) {
      continue;
    }
    insertAfter = i;
    for (size_t j = i + 1; j < lines_.size() && lines_[j].kind != Kind::Section; ++j) {
      if (lines_[j].kind == Kind::Entry) insertAfter = j;
    }
    break;
  }
  Line entry = classify(name + "=" + encoded);
  if (insertAfter) {
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(*insertAfter + 1), entry);
  } else {
    lines_.push_back(classify("[" + sectionName + "]"));
    lines_.push_back(entry);
  }
  return true;
}

bool IniFile::remove(std::string_view section, std::string_view key) {
  std::string name = trim(key);
  std::vector<size_t> doomed;
  forEachEntryIn(section, [&](size_t i, const Line& line) {
    if (equalsIgnoringCase(line.name, name)) doomed.push_back(i);
    return true;
  });
  for (auto it = doomed.rbegin(); it != doomed.rend(); ++it) {
    lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(*it));
  }
  return !doomed.empty();
}

bool IniFile::removeSection(std::string_view section) {
  const std::string wanted = trim(section);
  bool removed = false;
  bool inSection = false;
  std::vector<Line> kept;
  for (Line& line : lines_) {
    if (line.kind == Kind::Section) inSection = equalsIgnoringCase(line.name, wanted);
    if (inSection) {
      removed = true;
    } else {
      kept.push_back(std::move(line));
    }
  }
  lines_ = std::move(kept);
  return removed;
}

std::vector<std::string> IniFile::sections() const {
  std::vector<std::string> names;
  for (const Line& line : lines_) {
    if (line.kind != Kind::Section) continue;
    bool seen = false;
    for (const std::string& name : names)
      seen = seen || equalsIgnoringCase(name, line.name);
    if (!seen) names.push_back(line.name);
  }
  return names;
}

std::vector<std::string> IniFile::keys(std::string_view section) const {
  std::vector<std::string> names;
  forEachEntryIn(section, [&](size_t, const Line& line) {
    bool seen = false;
    for (const std::string& name : names)
      seen = seen || equalsIgnoringCase(name, line.name);
    if (!seen) names.push_back(line.name);
    return true;
  });
  return names;
}

}  // namespace zv
