// What a check has found, as lines for people or as one JSON document.
#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "core/list/list_review.h"
#include "core/tables/substitution_tables.h"
#include "ui/commands/check_tree.h"
#include "ui/commands/command_messages.h"

namespace morvex {

// What the findings are about.
struct CheckSubject {
  std::string version;  // of the program
  std::string tree;
  std::string list;
  const SubstitutionTables& tables;
  const ListReview& review;
  Encoding list_encoding = Encoding::kUtf8;
  bool all_rows = true;  // every row of the list was looked for
};

// Of files, of folders or of names alone.
struct CheckCount {
  std::uint64_t all = 0;
  std::uint64_t with_findings = 0;
};

struct CheckTotals {
  CheckCount files;
  CheckCount folders;
  CheckCount names;
  std::uint64_t bytes = 0;
  std::uint64_t findings = 0;
  std::uint64_t unreadable = 0;
  bool interrupted = false;
};

// In the order of calls: any number of entries, then the end.
class FindingsOutput {
 public:
  virtual ~FindingsOutput() = default;
  virtual void Entry(const CheckedEntry& entry) = 0;
  virtual void End(const CheckTotals& totals) = 0;
};

// What an entry is of which the name alone is looked at; null for a file or folder.
const char* NameAloneText(CheckedKind kind);

// A finding a line.
std::unique_ptr<FindingsOutput> FindingsAsLines(const CheckSubject& subject, std::ostream& output,
                                                MessageColours colours);
std::unique_ptr<FindingsOutput> FindingsAsJson(const CheckSubject& subject, std::ostream& output);

}  // namespace morvex
