// A picture of a part of the disk, held in memory: every folder with its own listing order, every
// file with its bytes, permission bits and modification time. A test takes one before a run, lets
// the model change it as a run should, and compares it with one taken afterwards.

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
  // A file's bytes; the text of a link; empty for a folder.
  std::string bytes;
  // Names in a folder in the order in which the file system lists them; empty otherwise.
  std::vector<std::string> listing;
  // The nine permission bits and the time in nanoseconds since 1970. Absent: any value will do.
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

  // Creates one folder; the first one of an empty picture is its root. False when something of that
  // name exists or the parent is no folder.
  bool MakeFolder(const std::string& path);
  // Puts a whole file there, in place of an older one. False when the parent is no folder or a
  // folder has that name.
  bool PutFile(const std::string& path, Node file);
  // Removes a file; nothing happens when there is none.
  void RemoveFile(const std::string& path);

  // For a system that lists every folder in an order of its own.
  void SortListings(bool (*comes_before)(const std::string&, const std::string&));
  // For a system that has no such bits: any will do.
  void ForgetPermissions();

  const std::map<std::string, Node>& nodes() const { return nodes_; }

 private:
  void Read(const std::string& path);
  void Add(const std::string& path, Node node);
  std::map<std::string, Node> nodes_;
};

// The absolute path that a text names for a program in `current_folder`: "." and ".." resolved,
// doubled separators reduced, no separator at the end but the root's. An empty text names nothing
// and gives an empty path.
std::string LookedUpPath(std::string_view text, const std::string& current_folder);

std::string ParentPath(const std::string& path);
std::string NameOf(const std::string& path);

// Bytes as printable text: letters and punctuation as they are, the rest as \n, \r, \t or \xHH.
std::string Escaped(std::string_view bytes);

// One line for each difference between what should lie on the disk and what does lie there, with
// the bytes round the first difference of a file; empty when they agree.
std::string Differences(const Disk& expected, const Disk& actual);

// Whole files and folders on the real disk. A failure is a failure of the machine, not of the
// program under test, and throws std::runtime_error.
std::string ReadWholeFile(const std::string& path);
void WriteWholeFile(const std::string& path, std::string_view bytes);
void MakeFolders(const std::string& path);
void SetPermissions(const std::string& path, unsigned permissions);
void SetModified(const std::string& path, std::int64_t modified_ns);

}  // namespace morvex::whole_run

#endif  // MORVEX_TESTS_WHOLE_RUN_DISK_H_
