#include "print/produce/page_production.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "core/fileinfo.h"
#include "core/messages.h"
#include "core/text.h"
#include "expr/compiler.h"
#include "expr/expr_error.h"
#include "formats/macro/macro_context.h"
#include "print/produce/draw_object.h"
#include "print/produce/layout_text.h"
#include "print/produce/print_symbols.h"

namespace zv {

// ---- Macro definitions of a template ----

struct TemplateMacros::Definitions {
  std::vector<MacroDef> macros;
  std::vector<MacroArgType> argTypes;
  std::vector<MacroDefine> defines;
};

TemplateMacros::TemplateMacros() : definitions_(std::make_unique<Definitions>()) {}
TemplateMacros::~TemplateMacros() = default;
TemplateMacros::TemplateMacros(TemplateMacros&&) noexcept = default;
TemplateMacros& TemplateMacros::operator=(TemplateMacros&&) noexcept = default;

namespace {

/// Runs `text` through a macro context of its own that starts with `definitions`; the expanded
/// text, or nullopt after a failure was shown. The definitions made by the text are kept.
template <typename Definitions>
std::optional<std::string> runMacros(std::string_view text, const std::filesystem::path& source,
                                     const std::filesystem::path& dataDir,
                                     Definitions& definitions) {
  MacroContext context;
  context.setExpressionEvaluator(standardMacroExpressionEvaluator());
  context.macroStartText(source, text, dataDir);
  MacroContext::State state = context.takeState();
  state.macros = definitions.macros;
  state.argTypes = definitions.argTypes;
  state.defines = definitions.defines;
  context.restoreState(std::move(state));
  std::string out;
  for (int c = context.macroNextChar(); c >= 0; c = context.macroNextChar())
    out.push_back(static_cast<char>(c));
  if (context.failed()) return std::nullopt;
  state = context.takeState();
  definitions.macros = std::move(state.macros);
  definitions.argTypes = std::move(state.argTypes);
  definitions.defines = std::move(state.defines);
  return out;
}

}  // namespace

bool TemplateMacros::readIncludeFile(const std::string& name,
                                     const std::filesystem::path& sourceDirectory) {
  std::filesystem::path path = sourceDirectory / name;
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    showError(strprintf("Cannot open include file %s", name));
    return false;
  }
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  return runMacros(bytes, path, sourceDirectory, *definitions_).has_value();
}

std::optional<std::string> TemplateMacros::expand(
    std::string_view text, const std::filesystem::path& sourceDirectory) const {
  // A box's own definitions don't outlive it.
  Definitions scratch = *definitions_;
  return runMacros(text, sourceDirectory / "print", sourceDirectory, scratch);
}

// ---- Producing pages ----

namespace {

/// A guard against templates whose continuation pages never use their text up.
constexpr std::size_t kMaxOutputPages = 20000;

class PageProducer {
 public:
  PageProducer(TextMetrics& metrics, PrintTemplate& tmpl, FileInfo* sheet,
               const ProductionSettings& settings, OutputTemplate& output)
      : metrics_(metrics), tmpl_(tmpl), sheet_(sheet), settings_(settings), output_(output) {}

  bool run();

 private:
  enum class Evaluation { False, True, Failed };
  Evaluation evaluate(const std::string& expression);
  bool nameInOutput(std::string_view name) const;
  bool produceWithContinuations(std::size_t index);
  bool makePage(std::size_t index);
  bool placeObjects(const TemplatePage& page, OutputPage& out);
  bool placeText(const TemplateObject& source, OutputPage& out);
  bool measure(TemplateObject& box, bool continuing);
  bool followLinks(OutputPage& page);
  std::vector<std::string> openTags() const;
  TemplateObject* lastOpenBox(std::string_view tag) const;
  /// The index of the best continuation page; none when there is none; Failed stops the run.
  std::optional<std::size_t> bestContinuation(const std::vector<std::string>& tags, bool& failed);

  TextMetrics& metrics_;
  PrintTemplate& tmpl_;
  FileInfo* sheet_;
  const ProductionSettings& settings_;
  OutputTemplate& output_;
  TemplateMacros macros_;
  /// Tags whose text found no continuation page: reported once, then left out.
  std::vector<std::string> abandoned_;
};

bool containsIgnoringCase(const std::vector<std::string>& names, std::string_view name) {
  return std::any_of(names.begin(), names.end(),
                     [&](const std::string& n) { return equalsIgnoringCase(n, name); });
}

PageProducer::Evaluation PageProducer::evaluate(const std::string& expression) {
  Value value;
  if (sheet_ == nullptr || !sheet_->symbols ||
      parseExp(sheet_->symbols.get(), expression, value) != 0) {
    showError("Error parsing optional page expression: " + expressionErrorText());
    return Evaluation::Failed;
  }
  return integerOf(value) != 0 ? Evaluation::True : Evaluation::False;
}

bool PageProducer::nameInOutput(std::string_view name) const {
  return std::any_of(output_.pages.begin(), output_.pages.end(),
                     [&](const OutputPage& p) { return equalsIgnoringCase(p.name, name); });
}

bool PageProducer::measure(TemplateObject& box, bool continuing) {
  const std::string& text = *box.fullText;
  const Rect32 space = box.attributes.outline()
                           ? Rect32{box.device.left + box.attributes.deviceLineWidth / 2 + 1,
                                    box.device.top + box.attributes.deviceLineWidth / 2 + 1,
                                    box.device.right - box.attributes.deviceLineWidth / 2 - 1,
                                    box.device.bottom - box.attributes.deviceLineWidth / 2 - 1}
                           : box.device;
  box.setFlow(kFlowStartsMidParagraph,
              continuing && box.textStart > 0 && text[box.textStart - 1] != '\n');
  box.runState = box.textProperties;
  LayoutBox layout{space, box.startsMidParagraph(), false};
  LayoutResult result = layoutText(metrics_, nullptr, std::string_view(text).substr(box.textStart),
                                   layout, box.runState);
  if (result.failed) return false;
  box.restText.reset();
  box.setFlow(kFlowHasMore, false);
  if (result.stop) {
    std::size_t rest = box.textStart + *result.stop;
    while (rest < text.size() && (text[rest] == '\r' || text[rest] == '\n'))
      ++rest;
    if (rest < text.size()) {
      box.restText = rest;
      box.setFlow(kFlowHasMore, true);
      box.setFlow(kFlowContinued, false);
    }
  }
  return true;
}

TemplateObject* PageProducer::lastOpenBox(std::string_view tag) const {
  for (auto page = output_.pages.rbegin(); page != output_.pages.rend(); ++page)
    for (TemplateObject* o : page->objects)
      if (o->kind == 13 && o->hasMore() && !o->continued() && o->continuationTag &&
          equalsIgnoringCase(*o->continuationTag, tag))
        return o;
  return nullptr;
}

bool PageProducer::placeText(const TemplateObject& source, OutputPage& out) {
  auto box = std::make_unique<TemplateObject>(source);
  box->kind = 13;
  box->setFlow(kFlowIsContinuation, source.isContinuation);
  TemplateObject* placed = box.get();
  output_.laidOut.push_back(std::move(box));
  out.objects.push_back(placed);
  if (!source.isContinuation) {
    std::optional<std::string> expanded =
        macros_.expand(source.text.value_or(""), settings_.sourceDirectory);
    std::optional<std::string> block;
    if (expanded) {
      block = settings_.runText && sheet_
                  ? settings_.runText(*sheet_, *expanded, static_cast<int>(output_.pages.size()))
                  : expanded;
    }
    if (!block) {
      showError("No text object to display");
      return false;
    }
    output_.handles.push_back(std::make_unique<std::string>(std::move(*block)));
    placed->fullText = output_.handles.back().get();
    if (source.continuationTag || source.nextLink != 0) return measure(*placed, false);
    return true;
  }
  if (!source.continuationTag) return true;
  TemplateObject* open = lastOpenBox(*source.continuationTag);
  if (open == nullptr || containsIgnoringCase(abandoned_, *source.continuationTag)) return true;
  placed->textProperties = open->runState;
  placed->textProperties.columns = source.textProperties.columns;
  placed->textProperties.columnSpacing = source.textProperties.columnSpacing;
  placed->textProperties.rotation = source.textProperties.rotation;
  placed->fullText = open->fullText;
  placed->textStart = *open->restText;
  open->setFlow(kFlowContinued, true);
  return measure(*placed, true);
}

bool PageProducer::placeObjects(const TemplatePage& page, OutputPage& out) {
  for (const auto& object : page.objects) {
    if (object->kind != 6) {
      out.objects.push_back(object.get());
    } else if (!placeText(*object, out)) {
      return false;
    }
  }
  return true;
}

bool PageProducer::followLinks(OutputPage& page) {
  auto pending = [&] {
    return std::any_of(page.objects.begin(), page.objects.end(), [](const TemplateObject* o) {
      return o->kind == 13 && o->nextLink != 0 && o->hasMore();
    });
  };
  // Boxes hand their rest on by number. The test reads "hasMore clear", as it was built; the
  // passes stop once a pass changes nothing.
  for (std::size_t pass = 0; pending() && pass <= page.objects.size(); ++pass) {
    bool changed = false;
    for (TemplateObject* o : page.objects) {
      if (o->kind != 13 || o->hasMore() || o->nextLink == 0 || o->continued() || !o->fullText)
        continue;
      auto target = std::find_if(page.objects.begin(), page.objects.end(), [&](TemplateObject* t) {
        return t->kind == 13 && t->objectId == o->nextLink;
      });
      if (target == page.objects.end()) {
        showError("Unable to find continuation text object");
        return false;
      }
      (*target)->fullText = o->fullText;
      (*target)->textStart = o->restText.value_or(o->fullText->size());
      o->setFlow(kFlowContinued, true);
      if (!measure(**target, true)) return false;
      changed = true;
    }
    if (!changed) break;
  }
  return true;
}

bool PageProducer::makePage(std::size_t index) {
  const TemplatePage& source = *tmpl_.pages[index];
  output_.pages.push_back(OutputPage{source.displayName(index), {}});
  // The background chain, farthest first; a name met before ends it.
  std::vector<const TemplatePage*> chain;
  std::vector<std::string> seen{source.displayName(index)};
  const TemplatePage* page = &source;
  while (page->backgroundPage && !page->backgroundPage->empty()) {
    const TemplatePage* background = tmpl_.findPage(*page->backgroundPage);
    if (background == nullptr) {
      showError(strprintf("No such page: %s", *page->backgroundPage));
      return false;
    }
    if (containsIgnoringCase(seen, *page->backgroundPage)) break;
    seen.push_back(*page->backgroundPage);
    chain.push_back(background);
    page = background;
  }
  for (auto it = chain.rbegin(); it != chain.rend(); ++it)
    if (!placeObjects(**it, output_.pages.back())) return false;
  if (!placeObjects(source, output_.pages.back())) return false;
  return followLinks(output_.pages.back());
}

std::vector<std::string> PageProducer::openTags() const {
  std::vector<std::string> tags;
  for (const OutputPage& page : output_.pages)
    for (const TemplateObject* o : page.objects)
      if (o->kind == 13 && o->continuationTag && o->hasMore() && !o->continued() &&
          !containsIgnoringCase(tags, *o->continuationTag) &&
          !containsIgnoringCase(abandoned_, *o->continuationTag))
        tags.push_back(*o->continuationTag);
  return tags;
}

std::optional<std::size_t> PageProducer::bestContinuation(const std::vector<std::string>& tags,
                                                          bool& failed) {
  std::optional<std::size_t> best;
  std::size_t bestCount = 0;
  for (std::size_t i = 0; i < tmpl_.pages.size(); ++i) {
    const TemplatePage& page = *tmpl_.pages[i];
    if (page.pageType != static_cast<std::uint32_t>(PageType::Continuation)) continue;
    if (page.expression) {
      if (nameInOutput(page.displayName(i))) continue;
      Evaluation e = evaluate(*page.expression);
      if (e == Evaluation::Failed) {
        failed = true;
        return std::nullopt;
      }
      if (e == Evaluation::False) continue;
    }
    std::size_t count = 0;
    for (const auto& o : page.objects)
      if (o->kind == 6 && o->isContinuation && o->continuationTag &&
          containsIgnoringCase(tags, *o->continuationTag))
        ++count;
    if (count > bestCount) {
      bestCount = count;
      best = i;
    }
  }
  return best;
}

bool PageProducer::produceWithContinuations(std::size_t index) {
  if (!makePage(index)) return false;
  while (output_.pages.size() < kMaxOutputPages) {
    std::vector<std::string> tags = openTags();
    if (tags.empty()) return true;
    bool failed = false;
    std::optional<std::size_t> next = bestContinuation(tags, failed);
    if (failed) return false;
    if (!next) {
      showError(strprintf("No continuation page found for tag: %s", tags.front()));
      abandoned_.insert(abandoned_.end(), tags.begin(), tags.end());
      return true;
    }
    if (!makePage(*next)) return false;
  }
  return true;
}

bool PageProducer::run() {
  PrintSymbolHook hook(sheet_);
  if (tmpl_.includeFile && !tmpl_.includeFile->empty() &&
      !macros_.readIncludeFile(*tmpl_.includeFile, settings_.sourceDirectory))
    return false;
  for (std::size_t i = 0; i < tmpl_.pages.size(); ++i) {
    const TemplatePage& page = *tmpl_.pages[i];
    bool produce = false;
    switch (static_cast<PageType>(page.pageType)) {
      case PageType::Normal:
        produce = true;
        break;
      case PageType::Continuation:
      case PageType::Optional:
        if (page.expression) {
          produce = evaluate(*page.expression) == Evaluation::True &&
                    !(page.pageType == static_cast<std::uint32_t>(PageType::Continuation) &&
                      nameInOutput(page.displayName(i)));
        }
        break;
      default:
        break;
    }
    if (produce && !produceWithContinuations(i)) return false;
  }
  if (output_.pages.empty()) {
    showError("No pages were produced for printing.");
    return false;
  }
  return true;
}

}  // namespace

std::unique_ptr<OutputTemplate> producePages(TextMetrics& metrics, PrintTemplate& tmpl,
                                             FileInfo* sheet, const ProductionSettings& settings) {
  auto output = std::make_unique<OutputTemplate>();
  if (!redoPages(metrics, tmpl, sheet, settings, *output)) return nullptr;
  return output;
}

bool redoPages(TextMetrics& metrics, PrintTemplate& tmpl, FileInfo* sheet,
               const ProductionSettings& settings, OutputTemplate& output) {
  clearOutput(output);
  output.source = &tmpl;
  computeDeviceGeometry(tmpl, metrics.pixelsPerInch());
  PageProducer producer(metrics, tmpl, sheet, settings, output);
  if (producer.run()) return true;
  clearOutput(output);
  return false;
}

void clearOutput(OutputTemplate& output) {
  output.pages.clear();
  output.laidOut.clear();
  output.handles.clear();
}

}  // namespace zv
