#include "ui/commands/check_tree.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace morvex {
namespace {

// So many entries are under way at a time: enough for every thread, few enough to remember. With
// more findings than this among those that are done, none is begun but the one that all wait for.
constexpr std::size_t kMostWaiting = 256;
constexpr std::size_t kMostFindings = 2 * CheckedEntry::kMostKept;
constexpr unsigned kMostThreads = 16;

void Keep(CheckedEntry& entry, const Leftover& leftover, bool in_name) {
  if (entry.findings.size() == CheckedEntry::kMostKept) {
    ++entry.not_kept;
    return;
  }
  Finding finding{leftover, std::string(leftover.around), in_name};
  finding.leftover.around = {};
  entry.findings.push_back(std::move(finding));
}

// Those of the name first, then by place, then by row.
bool InOrder(const Finding& a, const Finding& b) {
  if (a.in_name != b.in_name) return a.in_name;
  return std::pair(a.leftover.offset, a.leftover.row) <
         std::pair(b.leftover.offset, b.leftover.row);
}

void CheckEntry(FileService& files, LeftoverSearch& search, CheckedEntry& entry) {
  BytesAsFile name_bytes(entry.name);
  search.Run(name_bytes, [&](const Leftover& leftover) { Keep(entry, leftover, true); });
  if (!entry.is_folder) {
    const Result<std::unique_ptr<InputFile>> file = files.OpenForReading(entry.path);
    entry.error = file.error;
    if (file) {
      entry.error =
          search.Run(*file.value, [&](const Leftover& leftover) { Keep(entry, leftover, false); });
      entry.bytes = search.size();
    }
  }
  std::stable_sort(entry.findings.begin(), entry.findings.end(), InOrder);
}

// Entries are handed out to threads in turn and given back in the order in which they came.
class EntryQueue {
 public:
  EntryQueue(FileService& files, const Sought& sought, const TakeEntry& take)
      : files_(files), sought_(sought), take_(take) {
    const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 1U, kMostThreads);
    for (unsigned i = 0; i < threads; ++i) threads_.emplace_back([this] { Work(); });
  }
  ~EntryQueue() {
    {
      const std::lock_guard lock(mutex_);
      closed_ = true;
    }
    something_waits_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }
  EntryQueue(const EntryQueue&) = delete;
  EntryQueue& operator=(const EntryQueue&) = delete;

  void Add(CheckedEntry entry) {
    {
      const std::lock_guard lock(mutex_);
      entries_.push_back(std::make_unique<Slot>());
      entries_.back()->entry = std::move(entry);
    }
    something_waits_.notify_one();
    GiveBack(kMostWaiting);
  }

  // Waits until no more than so many entries are under way.
  void GiveBack(std::size_t most_left) {
    std::unique_lock lock(mutex_);
    while (!entries_.empty() && (entries_.size() > most_left || entries_.front()->done)) {
      something_is_done_.wait(lock, [this] { return entries_.front()->done; });
      const std::unique_ptr<Slot> slot = std::move(entries_.front());
      entries_.pop_front();
      --next_;
      findings_ -= slot->entry.findings.size();
      something_waits_.notify_all();
      lock.unlock();
      take_(slot->entry);
      lock.lock();
    }
  }

 private:
  struct Slot {
    CheckedEntry entry;
    bool done = false;
  };

  bool MayBegin() const {
    return next_ < entries_.size() && (next_ == 0 || findings_ < kMostFindings);
  }

  void Work() {
    LeftoverSearch search(sought_);
    std::unique_lock lock(mutex_);
    for (;;) {
      something_waits_.wait(lock, [this] { return MayBegin() || closed_; });
      if (next_ == entries_.size()) return;
      Slot& slot = *entries_[next_++];
      lock.unlock();
      CheckEntry(files_, search, slot.entry);
      lock.lock();
      slot.done = true;
      findings_ += slot.entry.findings.size();
      something_is_done_.notify_one();
    }
  }

  FileService& files_;
  const Sought& sought_;
  const TakeEntry& take_;
  std::mutex mutex_;  // for what follows
  std::condition_variable something_waits_;
  std::condition_variable something_is_done_;
  std::deque<std::unique_ptr<Slot>> entries_;
  std::size_t next_ = 0;      // the first that no thread has taken
  std::size_t findings_ = 0;  // of the entries that are done
  bool closed_ = false;
  std::vector<std::thread> threads_;
};

class Walk {
 public:
  Walk(FileService& files, EntryQueue& queue) : files_(files), queue_(queue) {}

  // `folder` is as it was looked up at `path`. Trees can be deeper than the process's stack.
  void Folder(const std::string& path, const std::string& name, const Result<FolderInfo>& folder) {
    Enter(path, name, folder);
    while (!levels_.empty()) {
      Level& level = levels_.back();
      if (level.next == level.listing.size()) {
        levels_.pop_back();
        continue;
      }
      const FolderEntry entry = std::move(level.listing[level.next++]);
      const std::string below = level.path + entry.name;
      if (entry.kind == EntryKind::kFolder) {
        Enter(below, entry.name, files_.LookUpFolder(below));
      } else if (entry.kind == EntryKind::kFile) {
        File(below, entry.name);
      }
    }
  }

  void File(const std::string& path, const std::string& name) {
    CheckedEntry entry;
    entry.path = path;
    entry.name = name;
    queue_.Add(std::move(entry));
  }

 private:
  struct Level {
    FileIdentity identity;
    std::string path;  // with a separator at its end
    std::vector<FolderEntry> listing;
    std::size_t next = 0;
  };

  bool IsOnTheWay(const FileIdentity& identity) const {
    return std::any_of(levels_.begin(), levels_.end(),
                       [&](const Level& level) { return level.identity == identity; });
  }

  void Enter(const std::string& path, const std::string& name, const Result<FolderInfo>& folder) {
    CheckedEntry entry;
    entry.path = path;
    entry.name = name;
    entry.is_folder = true;
    entry.error = folder.error;
    const bool loops = folder && IsOnTheWay(folder.value.identity);
    Result<std::vector<FolderEntry>> listing;
    if (folder && !loops) {
      listing = files_.ListFolder(path);
      entry.error = listing.error;
    }
    queue_.Add(std::move(entry));
    if (!folder || loops || !listing) return;
    std::sort(listing.value.begin(), listing.value.end(),
              [](const FolderEntry& a, const FolderEntry& b) { return a.name < b.name; });
    const bool is_root = path.ends_with(files_.Separator());
    levels_.push_back({folder.value.identity, is_root ? path : path + files_.Separator(),
                       std::move(listing.value)});
  }

  FileService& files_;
  EntryQueue& queue_;
  std::vector<Level> levels_;  // the folders that lead to the present one
};

}  // namespace

void CheckTree(FileService& files, const std::string& tree, const Sought& sought,
               const TakeEntry& take) {
  EntryQueue queue(files, sought, take);
  Walk walk(files, queue);
  const Result<FolderInfo> folder = files.LookUpFolder(tree);
  const Result<FileInfo> file = files.LookUpFile(tree);
  if (!folder && file) {
    walk.File(tree, file.value.name);
  } else {
    const std::string& path = folder.value.path;
    walk.Folder(tree, path.substr(path.rfind(files.Separator()) + 1), folder);
  }
  queue.GiveBack(0);
}

}  // namespace morvex
