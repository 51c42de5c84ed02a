#include "formats/data_sheet_merge.h"

#include <optional>

#include "core/host.h"
#include "core/messages.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "formats/file_recognition.h"
#include "formats/sheet/sheet_output.h"

namespace zv {

namespace {

/// The text form of an item (without `original`) or an option, to tell identical entries.
std::string itemText(const Item& item) {
  std::unique_ptr<Item> copy = item.clone();
  copy->original.clear();
  MemoryByteStream bytes;
  TokenStream stream;
  stream.setStream(&bytes);
  stream.beginWrite();
  SheetOut out(stream);
  writeItemBlock(out, *copy);
  out.flush();
  return bytes.data();
}

std::string optionText(const Option& option) {
  MemoryByteStream bytes;
  TokenStream stream;
  stream.setStream(&bytes);
  stream.beginWrite();
  SheetOut out(stream);
  writeOptionEntry(out, option);
  out.flush();
  return bytes.data();
}

class Merger {
 public:
  /// Entries new to the document's root are tied to its list.
  explicit Merger(ListInfo& root) : root_(root) {}

  /// False when the user cancelled.
  bool mergeItems(ItemChain& target, Item* parent, const ItemChain& source);
  bool mergeOptions(OptionTree& target, const OptionTree& source);
  int changes() const { return changes_; }

 private:
  std::optional<MergeChoice> ask(std::string_view name);
  void append(ItemChain& target, Item* parent, const Item& item);

  ListInfo& root_;
  std::optional<MergeChoice> forAll_;
  int changes_ = 0;
};

std::optional<MergeChoice> Merger::ask(std::string_view name) {
  if (forAll_) return forAll_;
  ChoiceRequest request;
  request.title = "Merge Conflict";
  request.prompt = strprintf("'%s' differs from the entry of the same name.", std::string(name));
  request.choices = mergeChoiceLabels();
  request.initial = {0};
  std::vector<int> picked = host().choose(request);
  if (picked.empty()) return std::nullopt;
  auto choice = static_cast<MergeChoice>(picked.front());
  switch (choice) {
    case MergeChoice::KeepOldForAll:
      forAll_ = MergeChoice::KeepOld;
      break;
    case MergeChoice::TakeNewForAll:
      forAll_ = MergeChoice::TakeNew;
      break;
    case MergeChoice::KeepBothForAll:
      forAll_ = MergeChoice::KeepBoth;
      break;
    default:
      return choice;
  }
  return forAll_;
}

void Merger::append(ItemChain& target, Item* parent, const Item& item) {
  std::unique_ptr<Item> copy = item.clone();
  if (parent != nullptr) {
    parent->appendChild(std::move(copy));
  } else if (&target == &root_.items) {
    root_.appendItem(std::move(copy));
  } else {
    ZV_INTERNAL_ERROR();
    return;
  }
  ++changes_;
}

bool Merger::mergeItems(ItemChain& target, Item* parent, const ItemChain& source) {
  for (const auto& item : source) {
    auto found = std::find_if(target.begin(), target.end(), [&](const std::unique_ptr<Item>& old) {
      return old->kind == item->kind && equalsIgnoringCase(old->name, item->name);
    });
    if (found == target.end()) {
      append(target, parent, *item);
      continue;
    }
    if (item->isSublist()) {
      if (!mergeItems((*found)->children, found->get(), item->children)) return false;
      continue;
    }
    if (itemText(**found) == itemText(*item)) continue;
    std::optional<MergeChoice> choice = ask(item->name);
    if (!choice) return false;
    if (*choice == MergeChoice::KeepOld) continue;
    if (*choice == MergeChoice::TakeNew) target.erase(found);
    append(target, parent, *item);
  }
  renumberPositions(target);
  return true;
}

bool Merger::mergeOptions(OptionTree& target, const OptionTree& source) {
  for (const OptionTreeEntry& entry : source) {
    auto found = std::find_if(target.begin(), target.end(), [&](const OptionTreeEntry& old) {
      if (old.isGroup() != entry.isGroup() || !equalsIgnoringCase(old.name, entry.name))
        return false;
      return entry.isGroup() ? old.groupKind == entry.groupKind
                             : old.option->kind == entry.option->kind;
    });
    if (entry.isGroup()) {
      if (found == target.end()) {
        OptionTreeEntry group;
        group.groupKind = entry.groupKind;
        group.name = entry.name;
        group.depth = entry.depth;
        found = target.begin() + (&insertOptionEntry(target, std::move(group)) - target.data());
        ++changes_;
      }
      if (!mergeOptions(found->entries, entry.entries)) return false;
      continue;
    }
    if (found != target.end()) {
      if (optionText(*found->option) == optionText(*entry.option)) continue;
      std::optional<MergeChoice> choice = ask(entry.name);
      if (!choice) return false;
      if (*choice == MergeChoice::KeepOld) continue;
      if (*choice == MergeChoice::TakeNew) target.erase(found);
    }
    OptionTreeEntry leaf;
    leaf.name = entry.name;
    leaf.depth = entry.depth;
    leaf.sourceId = entry.sourceId;
    leaf.option = std::make_unique<Option>(*entry.option);
    insertOptionEntry(target, std::move(leaf));
    ++changes_;
  }
  return true;
}

}  // namespace

const std::vector<std::string>& mergeChoiceLabels() {
  static const std::vector<std::string> labels = {"Keep Old",         "Take New",
                                                  "Keep Both",        "Keep Old for All",
                                                  "Take New for All", "Keep Both for All"};
  return labels;
}

int mergeDataSheetFile(DataSheetDocument& document, const std::filesystem::path& path,
                       const std::filesystem::path& dataDir) {
  const int code = recogniseFile(path.string()).code;
  if (code == kFileReportedAlready) return -1;
  if (code != kFileDataSheet) {
    showError(strprintf("'%s' is not a data sheet file", path.string()));
    return -1;
  }
  std::unique_ptr<DataSheetDocument> incoming = openDataSheetDocument(path, dataDir);
  if (!incoming) return -1;
  const std::string current(document.record().gameSystemName.str());
  const std::string selected(incoming->record().gameSystemName.str());
  if (!equalsIgnoringCase(selected, current)) {
    showError(strprintf(
        "The selected data sheet uses the '%s' game system. The current data sheet uses '%s.'",
        selected, current));
    return -1;
  }
  Merger merger(document.root());
  bool finished = merger.mergeItems(document.root().items, nullptr, incoming->root().items);
  if (finished && document.gameSystem() != nullptr && incoming->gameSystem() != nullptr)
    finished = merger.mergeOptions(document.gameSystem()->options, incoming->gameSystem()->options);
  if (merger.changes() > 0) document.record().setChangedFlag(true);
  return finished ? merger.changes() : -1;
}

int mergeDataSheetCommand(DataSheetDocument& document, const std::filesystem::path& directory,
                          const std::filesystem::path& dataDir) {
  FileRequest request;
  request.mode = FileRequest::Mode::Open;
  request.title = "Merge Data Sheet";
  request.directory = directory.string();
  request.filters = {{"Data Sheet", "*.cds"}};
  std::vector<std::string> files = host().chooseFiles(request);
  if (files.empty()) return -1;
  return mergeDataSheetFile(document, files.front(), dataDir);
}

}  // namespace zv
