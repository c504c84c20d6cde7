// Every call on the file system fails once, in run after run: whatever it is, the run comes to an
// end, the source keeps every byte, and no file of the target is half made.
#include <gtest/gtest.h>

#include <map>

#include "tests/core/run/run_program.h"

namespace morvex::test {
namespace {

constexpr int kMostCalls = 2000;

using Contents = std::map<std::string, std::string>;

// A tree with what makes trouble: folders in folders, links, and files of both kinds.
const Contents kSource = {{"/s/1.txt", "aca"},
                          {"/s/2.bin", "aca"},
                          {"/s/sub/3.txt", "aaaa"},
                          {"/s/sub/deep/4.bin", "aaaa"},
                          {"/s/other/3.txt", "other"}};

struct Scene {
  const char* name;
  std::string source;
  std::string target;
  std::map<std::string, std::string> links;
};

void PrintTo(const Scene& scene, std::ostream* out) { *out << scene.name; }

class FaultsTest : public ::testing::TestWithParam<Scene> {
 protected:
  // The `nth` call of the run fails with `error`. False when there are fewer calls.
  bool Run(int nth, ErrorNumber error) {
    const Scene& scene = GetParam();
    RunProgram test(scene.source, scene.target);
    for (const auto& [path, bytes] : kSource) test.files.AddFile(path, bytes);
    for (const auto& [path, leads_to] : scene.links) test.files.AddLink(path, leads_to);
    test.files.AddFolder(scene.target);
    test.Arm();
    int calls = 0;
    std::string failed;
    test.files.fail = [&](const std::string& call, const std::string& path) {
      if (++calls != nth) return ErrorNumber::kNone;
      failed = call;
      failed += " " + path;
      return error;
    };
    test.Go();
    test.files.fail = nullptr;
    SCOPED_TRACE(std::string(scene.name) + ", call " + std::to_string(nth) + ": " + failed +
                 ", error " + std::to_string(static_cast<int>(error)));
    EXPECT_FALSE(test.program.run.working);
    EXPECT_NE(test.program.run.end, RunEnd::kNone);
    ExpectSourceKept(test.files);
    ExpectTargetWhole(test.files, scene);
    if (!failed.starts_with("DeleteFile")) ExpectNoTemporaryFile(test.files);
    return calls >= nth;
  }

  static void ExpectSourceKept(MemoryFiles& files) {
    for (const auto& [path, bytes] : kSource) {
      ASSERT_TRUE(files.Has(path)) << path;
      EXPECT_EQ(files.Bytes(path), bytes) << path;
    }
  }
  static void ExpectNoTemporaryFile(MemoryFiles& files) {
    for (const std::string& path : files.Below("/")) {
      EXPECT_FALSE(path.ends_with("/tijdel.enc")) << path;
    }
  }
  // A file of the target is either the source's or its replacement.
  static void ExpectTargetWhole(MemoryFiles& files, const Scene& scene) {
    if (scene.target == scene.source) return;
    for (const auto& [path, bytes] : kSource) {
      const std::string copy = scene.target + path.substr(scene.source.size());
      if (!files.Has(copy)) continue;
      std::string replaced = bytes;
      std::replace(replaced.begin(), replaced.end(), 'a', 'b');
      EXPECT_EQ(files.Bytes(copy), path.ends_with(".txt") ? replaced : bytes) << copy;
    }
  }
};

TEST_P(FaultsTest, AnyCallMayFailOnce) {
  for (const ErrorNumber error :
       {ErrorNumber::kPermissionDenied, ErrorNumber::kDiskFull, ErrorNumber::kDeviceIo}) {
    int nth = 1;
    while (nth < kMostCalls && Run(nth, error)) ++nth;
    EXPECT_GT(nth, 20);
    EXPECT_LT(nth, kMostCalls);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Scenes, FaultsTest,
    ::testing::Values(Scene{"apart", "/s", "/t", {}}, Scene{"target_in_source", "/s", "/s/out", {}},
                      Scene{"target_is_source", "/s", "/s", {}},
                      Scene{"links_in_source", "/s", "/t", {{"/s/loop", "/s"}, {"/s/l", "/s/sub"}}},
                      Scene{"link_in_target", "/s", "/t", {{"/t/sub", "/s/other"}}}),
    [](const auto& scene) { return scene.param.name; });

}  // namespace
}  // namespace morvex::test
