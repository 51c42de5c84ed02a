#include "rules/requirements/prereq_dialog.h"

#include "core/engine_context.h"
#include "core/messages.h"
#include "rules/requirements/prereq_satisfy.h"
#include "rules/value/level.h"

namespace zv {

namespace {

std::string& currentItemUnderTest() {
  static std::string name;
  return name;
}

/// How often a headless dialog may be answered Satisfy before it is taken as cancelled.
constexpr int kMostSatisfyRounds = 16;

PrereqDialogAnswer askHost(RequirementsDialog& dialog, const PlaceItem& place) {
  for (int round = 0; round < kMostSatisfyRounds; ++round) {
    ChoiceRequest request;
    request.title = dialog.title();
    request.prompt = dialog.rowsText();
    if (!dialog.note().empty()) request.prompt += "\r\n" + dialog.note();
    request.choices = {"OK", "Satisfy", "Cancel"};
    request.initial = {0};
    const std::vector<int> chosen = host().choose(request);
    if (chosen.empty() || chosen.front() == 2) return PrereqDialogAnswer::Cancel;
    if (chosen.front() == 0) return PrereqDialogAnswer::Ok;
    dialog.satisfy(place);
  }
  return PrereqDialogAnswer::Cancel;
}

}  // namespace

RequirementsDialog::RequirementsDialog(FileInfo& sheet, ListInfo* list, Item& item, bool adding,
                                       const RuleSetContext* rules)
    : sheet_(sheet), list_(list), item_(item), adding_(adding), rules_(rules), title_(item.name) {
  PrereqContext context{&sheet, list, &item, true, false};
  std::optional<std::vector<Prereq>> parsed = parsePrereqs(context, item.prereq);
  readable_ = parsed.has_value();
  if (parsed) prereqs_ = std::move(*parsed);
  refresh();
}

void RequirementsDialog::refresh() {
  rows_.clear();
  if (std::optional<Prereq> exclusion = findExclusion(sheet_, item_)) {
    rows_.push_back(PrereqRow{PrereqRow::Kind::Requirement, prereqText(*exclusion, &item_)});
  }
  std::string message;
  if (checkLevel(item_, item_.level.empty() ? "0" : item_.level, message) == 0) {
    Prereq check;
    check.kind = PrereqKind::MessageOnly;
    check.message = levelRefusalText(item_, item_.level, message);
    rows_.push_back(PrereqRow{PrereqRow::Kind::Requirement, prereqText(check, &item_)});
  }
  for (const Prereq& prereq : prereqs_) {
    rows_.push_back(PrereqRow{PrereqRow::Kind::Requirement, prereqText(prereq, &item_),
                              testPrereq(sheet_, list_, item_, prereq), prereq.satisfiedByUser});
    if (prereq.connector == PrereqConnector::Or) {
      rows_.push_back(PrereqRow{PrereqRow::Kind::Or, "--- OR ---"});
    } else if (prereq.connector == PrereqConnector::Then) {
      rows_.push_back(PrereqRow{PrereqRow::Kind::Then, "--- THEN ---"});
    }
  }
}

std::string RequirementsDialog::note() const {
  return engine().preferences.disallowIfNotSatisfied ? std::string(kCheckedWhenFirstAddedNote)
                                                     : std::string();
}

bool RequirementsDialog::satisfied() const {
  return readable_ &&
         prereqSatisfied(sheet_, list_, item_, PrereqMode{true, adding_}, item_.prereq);
}

int RequirementsDialog::satisfy(const PlaceItem& place) {
  SatisfyContext context{sheet_, place, rules_, nullptr};
  const SatisfyLink self{item_.name, list_, nullptr};
  context.chain = &self;
  const int satisfied = satisfyPrereqs(context, list_, item_, prereqs_);
  refresh();
  return satisfied;
}

bool RequirementsDialog::accept() const {
  return satisfied() || !adding_ || !engine().preferences.disallowIfNotSatisfied;
}

std::string RequirementsDialog::rowsText() const {
  std::string out;
  for (const PrereqRow& row : rows_) {
    if (!out.empty()) out += "\r\n";
    if (row.kind == PrereqRow::Kind::Requirement) out += row.met ? "[x] " : "[ ] ";
    out += row.text;
  }
  return out;
}

bool runRequirementsDialog(RequirementsDialog& dialog, const PlaceItem& place) {
  const auto& run = engine().dialogs.runRequirementsDialog;
  const PrereqDialogAnswer answer = run ? run(dialog, place) : askHost(dialog, place);
  return answer == PrereqDialogAnswer::Ok && dialog.accept();
}

const std::string& itemUnderTest() {
  return currentItemUnderTest();
}

ItemUnderTestScope::ItemUnderTestScope(std::string name)
    : previous_(std::exchange(currentItemUnderTest(), std::move(name))) {}

ItemUnderTestScope::~ItemUnderTestScope() {
  currentItemUnderTest() = std::move(previous_);
}

}  // namespace zv
