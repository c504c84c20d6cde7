// Writes the findings of a check, as lines for people or as one JSON document.
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

// The tree that is checked and the list that it is checked against.
struct CheckSubject {
  std::string version;  // of the program
  std::string tree;
  std::string list;
  const SubstitutionTables& tables;
  const ListReview& review;
  Encoding list_encoding = Encoding::kUtf8;
  bool all_rows = true;  // false: some rows of the list could not be checked
};

// A count of files, of folders, or of entries whose name alone was searched.
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

// Call Entry for each entry of the tree, then End once.
class FindingsOutput {
 public:
  virtual ~FindingsOutput() = default;
  virtual void Entry(const CheckedEntry& entry) = 0;
  virtual void End(const CheckTotals& totals) = 0;
};

// Returns the kind of an entry whose name alone was searched, as text; null for a file or folder.
const char* NameAloneText(CheckedKind kind);

// Returns an output that writes one line per finding.
std::unique_ptr<FindingsOutput> FindingsAsLines(const CheckSubject& subject, std::ostream& output,
                                                MessageColours colours);
std::unique_ptr<FindingsOutput> FindingsAsJson(const CheckSubject& subject, std::ostream& output);

}  // namespace morvex
