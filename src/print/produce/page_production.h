#pragma once
// Page production: turns a print template and a character sheet into output pages. It decides
// which pages are produced, expands the text boxes against the sheet, and flows text that doesn't
// fit into continuation boxes on further pages. The output shares every object with the source
// except the laid-out text boxes, so it must not outlive the source.

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/record_types.h"
#include "print/produce/canvas.h"

namespace zv {

/// Runs the text of a print box, already through the macro processor, as a filter source for
/// the sheet; `pageNumber` is the output page being made. The output block, or nullopt after a
/// failure was shown.
using BoxTextRunner = std::function<std::optional<std::string>(
    FileInfo& sheet, std::string_view text, int pageNumber)>;

struct ProductionSettings {
  /// Where the template's include file is found.
  std::filesystem::path sourceDirectory;
  /// The filter step of box text. Empty: the text stands as the macro processor gives it.
  BoxTextRunner runText;
};

struct OutputPage {
  std::string name;
  /// In drawing order: source objects by reference and laid-out text boxes (kind 13).
  std::vector<TemplateObject*> objects;
};

struct OutputTemplate {
  PrintTemplate* source = nullptr;
  std::vector<OutputPage> pages;
  /// The text blocks of this run.
  std::vector<std::unique_ptr<std::string>> handles;
  /// The laid-out text boxes of this run.
  std::vector<std::unique_ptr<TemplateObject>> laidOut;
};

/// Produces the output pages, measuring with `metrics`. Null after the failure was shown
/// ("No pages were produced for printing." when no page was made). The device geometry of the
/// template's objects is computed for `metrics` on the way.
std::unique_ptr<OutputTemplate> producePages(TextMetrics& metrics, PrintTemplate& tmpl,
                                             FileInfo* sheet, const ProductionSettings& settings);

/// Empties `output` and produces it again (another device was chosen). False after a failure.
bool redoPages(TextMetrics& metrics, PrintTemplate& tmpl, FileInfo* sheet,
               const ProductionSettings& settings, OutputTemplate& output);

/// Frees the text blocks, the laid-out boxes and the pages of an output.
void clearOutput(OutputTemplate& output);

/// Runs a box's text through the macro processor with the definitions of `macros`, a state
/// that readIncludeFile filled (or an empty one). Nullopt after a failure was shown.
class TemplateMacros {
 public:
  TemplateMacros();
  ~TemplateMacros();
  TemplateMacros(TemplateMacros&&) noexcept;
  TemplateMacros& operator=(TemplateMacros&&) noexcept;
  /// Reads the include file named by the template, in `sourceDirectory`; false after "Cannot
  /// open include file %s" or a macro failure was shown.
  bool readIncludeFile(const std::string& name, const std::filesystem::path& sourceDirectory);
  std::optional<std::string> expand(std::string_view text,
                                    const std::filesystem::path& sourceDirectory) const;

 private:
  struct Definitions;
  std::unique_ptr<Definitions> definitions_;
};

}  // namespace zv
