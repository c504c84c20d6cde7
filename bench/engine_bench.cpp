// morvex-bench measures the speed of the engine on named inputs and, for comparison, the speed of
// memcpy and of the literal engine (literal_substitution.h). bench/README.md explains the output.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "bench/inputs.h"
#include "core/engine/matching/bytes_in_memory.h"
#include "core/engine/matching/substitution.h"
#include "tests/reference/literal_substitution.h"

namespace morvex::bench {
namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;
constexpr std::size_t kTextSize = 128 * kMiB;
constexpr std::size_t kWorstSize = 10'000'000;
constexpr std::size_t kLiteralSize = 2 * kMiB;
constexpr std::size_t kTinySize = 4096;
constexpr int kRepetitions = 5;

// A sink in memory. Reserve writes to all of it in advance, so that no measured run pays for page
// faults.
class Buffer : public ByteSink {
 public:
  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override {
    const auto at = static_cast<std::size_t>(offset);
    if (at + bytes.size() > bytes_.size()) bytes_.resize(2 * (at + bytes.size()), 'x');
    std::memcpy(bytes_.data() + at, bytes.data(), bytes.size());
    return ErrorNumber::kNone;
  }
  ErrorNumber Close() override { return ErrorNumber::kNone; }
  char* data() { return bytes_.data(); }
  void Reserve(std::size_t size) {
    if (bytes_.size() < size) bytes_.resize(size, 'x');
  }

 private:
  std::vector<char> bytes_;
};

class Watcher : public SubstitutionWatcher {
 public:
  void OnHits(std::int64_t count) override { hits += count; }
  bool KeepGoing(std::uint64_t) override { return true; }
  std::int64_t hits = 0;
};

// An input and its tables. Load keeps only the last one in memory, because inputs are large.
struct Loaded {
  Input input;
  SubstitutionTables tables;
};

const Loaded& Load(const std::string& name, std::size_t size) {
  static std::unique_ptr<Loaded> loaded;
  static std::size_t loaded_size = 0;
  if (loaded && loaded->input.name == name && loaded_size == size) return *loaded;
  loaded.reset();
  loaded = std::make_unique<Loaded>();
  loaded_size = size;
  loaded->input = MakeInput(name, size);
  ReplacementList list;
  for (const auto& [left, right] : loaded->input.rows) {
    list.rows.push_back({left, right});
    const char joker = loaded->input.joker;
    Set_Joker(loaded->tables, "Left", static_cast<std::int64_t>(list.rows.size()) - 1,
              joker != 0 && left.find(joker) != std::string::npos);
  }
  FillArrays(list, static_cast<std::uint8_t>(loaded->input.joker), loaded->tables);
  return *loaded;
}

Buffer& Output() {
  static Buffer buffer;
  return buffer;
}

void Count(benchmark::State& state, std::size_t bytes, std::int64_t hits) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
  state.counters["hits"] = static_cast<double>(hits);
}

void Copy(benchmark::State& state) {
  const Loaded& loaded = Load("prose-10", kTextSize);
  Output().Reserve(kTextSize + kMiB);
  for (auto _ : state) {
    std::memcpy(Output().data(), loaded.input.text.data(), loaded.input.text.size());
    benchmark::ClobberMemory();
  }
  Count(state, loaded.input.text.size(), 0);
}

void Engine(benchmark::State& state, const std::string& name, std::size_t size, Kernel kernel,
            std::size_t piece) {
  const Loaded& loaded = Load(name, size);
  Substitution engine(loaded.tables, static_cast<std::uint8_t>(loaded.input.joker), kernel);
  InputWindow input;
  PositionedOutput output;
  Output().Reserve(loaded.input.text.size() + kMiB);
  const std::string_view text = loaded.input.text;
  std::int64_t hits = 0;
  for (auto _ : state) {
    Watcher watcher;
    for (std::size_t from = 0; from < text.size(); from += piece) {
      MemorySource file(text.substr(from, piece));
      CaptureState captures;
      input.Open(file);
      output.Open(Output());
      engine.Run(input, output, captures, watcher);
      output.Finish();
    }
    hits = watcher.hits;
  }
  Count(state, text.size(), hits);
}

void Literal(benchmark::State& state, const std::string& name) {
  const Loaded& loaded = Load(name, IsWorstCase(name) ? kWorstSize : kTextSize);
  InputWindow input;
  PositionedOutput output;
  // The literal engine gets only a part of the text: with all of it, the slowest list would take
  // hours.
  std::size_t size = kLiteralSize;
  if (loaded.input.rows.size() >= 1000) size /= 16;
  if (IsWorstCase(name)) size = std::min<std::size_t>(size, 64 << 10);
  const std::string_view text = std::string_view(loaded.input.text).substr(0, size);
  std::int64_t hits = 0;
  for (auto _ : state) {
    Watcher watcher;
    MemorySource file(text);
    test::LiteralState captures;
    test::LiteralSubstitution literal(loaded.tables, static_cast<std::uint8_t>(loaded.input.joker),
                                      captures);
    input.Open(file);
    output.Open(Output());
    literal.Run(input, output, watcher);
    output.Finish();
    hits = watcher.hits;
  }
  Count(state, text.size(), hits);
}

// Measures how long it takes to compile a list of 100,000 rows.
void Compile(benchmark::State& state) {
  static SubstitutionTables tables;
  if (tables.PairCount == 0) {
    const Input input = MakeInput("prose-100000", kMiB);
    ReplacementList list;
    for (const auto& [left, right] : input.rows) {
      list.rows.push_back({left, right});
      Set_Joker(tables, "Left", static_cast<std::int64_t>(list.rows.size()) - 1, false);
    }
    FillArrays(list, 0, tables);
  }
  for (auto _ : state) {
    const Substitution engine(tables, 0);
    benchmark::DoNotOptimize(&engine);
  }
  state.counters["rows"] = static_cast<double>(tables.PairCount);
}

// Keeps the medians for the table at the end.
class Medians : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.aggregate_name != "median") continue;
      const auto rate = run.counters.find("bytes_per_second");
      const std::string name = run.run_name.function_name;
      if (rate != run.counters.end()) rates[name] = rate->second.value / 1e6;
      seconds[name] = run.GetAdjustedRealTime() / 1e3;
    }
  }

  std::map<std::string, double> rates;  // MB/s
  std::map<std::string, double> seconds;
};

double Ratio(const std::map<std::string, double>& values, const std::string& a,
             const std::string& b) {
  const auto above = values.find(a);
  const auto below = values.find(b);
  return above == values.end() || below == values.end() ? 0 : above->second / below->second;
}

std::string Shown(double value, const char* form) {
  char text[32];
  std::snprintf(text, sizeof text, form, value);
  return value == 0 ? "-" : text;
}

void PrintTable(const Medians& medians) {
  const auto rate = [&](const std::string& name) {
    const auto found = medians.rates.find(name);
    return Shown(found == medians.rates.end() ? 0 : found->second, "%.0f");
  };
  std::printf("\nMedians of %d, MB/s. memcpy: %s MB/s\n\n", kRepetitions, rate("memcpy").c_str());
  std::printf("%-22s %9s %9s %9s %9s %10s %9s\n", "input", "engine", "/memcpy", "portable",
              "literal", "/literal", "2x text");
  for (const std::string& name : InputNames()) {
    std::printf("%-22s %9s %9s %9s %9s %10s %9s\n", name.c_str(), rate("engine/" + name).c_str(),
                Shown(Ratio(medians.rates, "engine/" + name, "memcpy"), "%.2f").c_str(),
                rate("portable/" + name).c_str(), rate("literal/" + name).c_str(),
                Shown(Ratio(medians.rates, "engine/" + name, "literal/" + name), "%.0f").c_str(),
                Shown(Ratio(medians.seconds, "double/" + name, "engine/" + name), "%.2f").c_str());
  }
  std::printf("%-22s %9s\n", "tiny-files", rate("engine/tiny-files").c_str());
}

void Register() {
  const auto settle = [](benchmark::internal::Benchmark* made) {
    made->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(kRepetitions);
    made->ReportAggregatesOnly()->MinTime(0.1);
  };
  settle(benchmark::RegisterBenchmark("memcpy", Copy));
  for (const std::string& name : InputNames()) {
    const std::size_t size = IsWorstCase(name) ? kWorstSize : kTextSize;
    const std::size_t whole = ~std::size_t{0} / 4;
    settle(benchmark::RegisterBenchmark(("engine/" + name).c_str(), Engine, name, size,
                                        BestKernel(), whole));
    settle(benchmark::RegisterBenchmark(("portable/" + name).c_str(), Engine, name, size,
                                        Kernel::kPortable, whole));
    settle(benchmark::RegisterBenchmark(("literal/" + name).c_str(), Literal, name));
    if (!IsWorstCase(name)) continue;
    settle(benchmark::RegisterBenchmark(("double/" + name).c_str(), Engine, name, 2 * size,
                                        BestKernel(), whole));
  }
  settle(benchmark::RegisterBenchmark("engine/tiny-files", Engine, "prose-1000", kTextSize,
                                      BestKernel(), kTinySize));
  settle(benchmark::RegisterBenchmark("compile-100000-rows", Compile));
}

}  // namespace
}  // namespace morvex::bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  morvex::bench::Register();
  morvex::bench::Medians medians;
  benchmark::RunSpecifiedBenchmarks(&medians);
  morvex::bench::PrintTable(medians);
  return 0;
}
