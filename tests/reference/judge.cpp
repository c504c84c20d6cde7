#include "tests/reference/judge.h"

#include <cstdio>
#include <functional>
#include <random>

#include "core/engine/matching/bytes_in_memory.h"
#include "tests/support/byte_streams.h"

namespace morvex::test {
namespace {

class CountingWatcher : public SubstitutionWatcher {
 public:
  void OnHits(std::int64_t count) override { hits += count; }
  bool KeepGoing(std::uint64_t) override { return true; }

  std::int64_t hits = 0;
};

void Fill(const JudgedList& list, SubstitutionTables& tables) {
  ReplacementList rows;
  for (const auto& [left, right] : list.rows) {
    rows.rows.push_back({left, right});
    const auto index = static_cast<std::int64_t>(rows.rows.size()) - 1;
    const bool flag = list.flags != 0 && left.find(list.flags) != std::string::npos;
    Set_Joker(tables, "Left", index, flag);
  }
  FillArrays(rows, static_cast<std::uint8_t>(list.tails), tables);
  if (list.flagged_rows < tables.JokerLeft.size()) tables.JokerLeft.resize(list.flagged_rows);
}

// Random sizes of pieces, from 1 byte to a random maximum. The maximum is at most 9 bytes; in a
// file of more than 1000 bytes, it can be about the size of the file. Equal files get equal sizes.
class PieceSizes {
 public:
  explicit PieceSizes(const std::string& file)
      : random_(static_cast<std::minstd_rand::result_type>(std::hash<std::string>()(file))),
        most_(1 + random_() % 9 + (file.size() > 1000 ? random_() % file.size() : 0)) {}

  std::size_t operator()() { return 1 + random_() % most_; }

 private:
  std::minstd_rand random_;
  std::size_t most_;
};

std::string PrintChar(char byte) {
  char text[8];
  std::snprintf(text, sizeof text, "\\x%02X",
                static_cast<unsigned>(static_cast<unsigned char>(byte)));
  return text;
}

}  // namespace

std::string PrintBytes(const std::string& bytes) {
  std::string text = "\"";
  const std::size_t shown = bytes.size() > 400 ? 200 : bytes.size();
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (at == shown) {
      text += "\" ... (" + std::to_string(bytes.size()) + " bytes) ... \"";
      at = bytes.size() - 200;
    }
    const char byte = bytes[at];
    text += byte >= ' ' && byte < 127 && byte != '"' && byte != '\\' ? std::string(1, byte)
                                                                     : PrintChar(byte);
  }
  return text + "\"";
}

std::string Print(const JudgedList& list) {
  std::string text = "rows {";
  for (const auto& [left, right] : list.rows) {
    text += "{" + PrintBytes(left) + ", " + PrintBytes(right) + "}, ";
  }
  const auto wildcard = [](char byte) { return byte == 0 ? "none" : PrintBytes({byte}); };
  text += "} wildcard of flags " + wildcard(list.flags) + ", tails " + wildcard(list.tails) +
          ", run " + wildcard(list.run);
  if (list.flagged_rows < list.rows.size()) {
    text += ", flags for " + std::to_string(list.flagged_rows) + " rows";
  }
  return text;
}

Judge::Judge(const JudgedList& literal_list, const JudgedList& engine_list, Kernel kernel)
    : list_(literal_list), kernel_(kernel) {
  Fill(literal_list, literal_tables_);
  Fill(engine_list, tables_);
  literal_ = std::make_unique<LiteralSubstitution>(
      literal_tables_, static_cast<std::uint8_t>(literal_list.run), literal_state_);
  engine_ =
      std::make_unique<Substitution>(tables_, static_cast<std::uint8_t>(engine_list.run), kernel);
  by_automaton_ = std::make_unique<Substitution>(
      tables_, static_cast<std::uint8_t>(engine_list.run), kernel, SearchMethod::kAutomaton);
  in_pieces_ =
      std::make_unique<Substitution>(tables_, static_cast<std::uint8_t>(engine_list.run), kernel);
}

Judge::~Judge() = default;

Judge::Buffers& Judge::SharedBuffers() {
  static Buffers buffers;
  return buffers;
}

template <class Run>
Judge::Outcome Judge::RunThrough(ByteSource& input, Run run) {
  Outcome outcome;
  CountingWatcher watcher;
  MemorySink output;
  Buffers& buffers = SharedBuffers();
  buffers.input.Open(input);
  buffers.output.Open(output);
  outcome.end = run(buffers.input, buffers.output, watcher);
  buffers.output.Finish();
  outcome.bytes = output.bytes();
  outcome.hits = watcher.hits;
  return outcome;
}

std::string Judge::Differences(const std::string& file) {
  files_.push_back(file);
  MemorySource whole(file);
  const Outcome literal = RunThrough(whole, [this](auto& input, auto& output, auto& watcher) {
    return literal_->Run(input, output, watcher);
  });
  const Outcome engine = RunThrough(whole, [this](auto& input, auto& output, auto& watcher) {
    return engine_->Run(input, output, state_, watcher);
  });
  const Outcome automaton = RunThrough(whole, [this](auto& input, auto& output, auto& watcher) {
    return by_automaton_->Run(input, output, automaton_state_, watcher);
  });
  PieceSizes sizes(file);
  PiecesInput pieces(file, sizes);
  const Outcome paused = RunThrough(pieces, [this](auto& input, auto& output, auto& watcher) {
    return in_pieces_->Run(input, output, pieces_state_, watcher);
  });
  const auto agrees = [&](const Outcome& outcome, const CaptureState& state) {
    return outcome == literal && literal_state_.CaptureBuffer == state.CaptureBuffer &&
           !literal_state_.Joker_SET;
  };
  if (agrees(engine, state_) && agrees(automaton, automaton_state_) &&
      agrees(paused, pieces_state_)) {
    return "";
  }
  std::string text = Print(list_) + "\nkernel " + std::to_string(static_cast<int>(kernel_));
  for (const std::string& each : files_) text += "\nfile    " + PrintBytes(each);
  const auto add = [&text](const char* name, const Outcome& outcome, const CaptureState& state) {
    text += std::string("\n") + name + PrintBytes(outcome.bytes) + " hits " +
            std::to_string(outcome.hits) + " end " + std::to_string(static_cast<int>(outcome.end)) +
            " kept " +
            PrintBytes(std::string(state.CaptureBuffer.begin(), state.CaptureBuffer.end()));
  };
  add("literal ", literal, literal_state_);
  add("engine  ", engine, state_);
  add("by the automaton ", automaton, automaton_state_);
  add("in pieces ", paused, pieces_state_);
  return text;
}

void Judge::Forget() {
  literal_state_ = LiteralState();
  state_ = CaptureState();
  automaton_state_ = CaptureState();
  pieces_state_ = CaptureState();
  files_.clear();
}

std::vector<Kernel> SupportedKernels() {
  std::vector<Kernel> kernels;
  for (const Kernel kernel : {Kernel::kPortable, Kernel::kSsse3, Kernel::kAvx2}) {
    if (IsSupported(kernel)) kernels.push_back(kernel);
  }
  return kernels;
}

}  // namespace morvex::test
