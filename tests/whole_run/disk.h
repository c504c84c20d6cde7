// A snapshot of a part of the disk, held in memory: every folder with its listing order, every file
// with its bytes, permission bits and modification time. A test takes a snapshot before a run and
// lets the model change this snapshot as the run should change the disk. Then the test compares the
// changed snapshot with one taken after the run.

#ifndef MORVEX_TESTS_WHOLE_RUN_DISK_H_
#define MORVEX_TESTS_WHOLE_RUN_DISK_H_

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvex::whole_run {

enum class NodeKind { kFolder, kFile, kLink };

struct Node {
  NodeKind kind = NodeKind::kFile;
  // A file's bytes, or the path that a link holds; empty for a folder.
  std::string bytes;
  // The names in a folder, in the order in which the file system lists them; empty for files and
  // links.
  std::vector<std::string> listing;
  // The nine permission bits, and the modification time in nanoseconds since 1970. A value that is
  // absent is not compared.
  std::optional<unsigned> permissions;
  std::optional<std::int64_t> modified_ns;
};

class Disk {
 public:
  // Reads `root` and everything below it. Links are recorded, not followed.
  static Disk Snapshot(const std::string& root);

  // Paths are absolute, without "." and "..", without a separator at the end.
  const Node* Find(const std::string& path) const;
  bool IsFile(const std::string& path) const;
  bool IsFolder(const std::string& path) const;

  // Creates a folder. The first folder created in an empty snapshot is its root. Returns false if
  // the name is taken or the parent is no folder.
  bool MakeFolder(const std::string& path);
  // Creates or replaces a file. Returns false if the parent is no folder or a folder has that name.
  bool PutFile(const std::string& path, Node file);
  // Removes a file, if it exists.
  void RemoveFile(const std::string& path);

  // Sorts the listing of every folder. `comes_before` is the order in which the tested system lists
  // folders.
  void SortListings(bool (*comes_before)(const std::string&, const std::string&));
  // Removes the permission bits of every entry, so that Differences does not compare them. Called
  // for systems without such bits.
  void ForgetPermissions();

  const std::map<std::string, Node>& nodes() const { return nodes_; }

 private:
  void Read(const std::string& path);
  void Add(const std::string& path, Node node);
  std::map<std::string, Node> nodes_;
};

// Returns the absolute path by which a program in `current_folder` looks up the path `text`. The
// returned path has no ".", no ".." and no doubled separators. Only the root has a separator at the
// end. For an empty text, the path is empty.
std::string LookedUpPath(std::string_view text, const std::string& current_folder);

std::string ParentPath(const std::string& path);
std::string NameOf(const std::string& path);

// Returns bytes as printable text: printable ASCII as it is, a backslash doubled, the rest as \n,
// \r, \t or \xHH.
std::string Escaped(std::string_view bytes);

// Returns one line for each difference between two snapshots. For a file whose bytes differ, the
// line shows the bytes around the first difference. Returns an empty text if the snapshots agree.
std::string Differences(const Disk& expected, const Disk& actual);

// These functions read and change the real disk. They throw std::runtime_error on failure, because
// the machine and not the tested program causes such a failure.
std::string ReadWholeFile(const std::string& path);
void WriteWholeFile(const std::string& path, std::string_view bytes);
void MakeFolders(const std::string& path);
void SetPermissions(const std::string& path, unsigned permissions);
void SetModified(const std::string& path, std::int64_t modified_ns);

}  // namespace morvex::whole_run

#endif  // MORVEX_TESTS_WHOLE_RUN_DISK_H_
