#pragma once
// An option of an item (its kind, name, expression and value texts). The fields and the rules of
// options come with the option engine; items already own their options, so the record exists here.
// Copying an Option must copy it deeply: items are copied from master lists by value.

namespace zv {

struct Option {};

}  // namespace zv
