#include "ui/commands/check_tree.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

#include "core/engine/matching/bytes_in_memory.h"
#include "core/engine/passes/file_bytes.h"

namespace morvex {
namespace {

// The most entries in the queue: enough to keep every thread busy, few enough for the memory.
constexpr std::size_t kMostWaiting = 256;
// While the finished entries in the queue hold this many findings or more, threads begin only the
// queue's first entry.
constexpr std::size_t kMostFindings = 2 * CheckedEntry::kMostKept;
constexpr unsigned kMostThreads = 16;

void Keep(CheckedEntry& entry, const Leftover& leftover, Within within) {
  if (entry.findings.size() == CheckedEntry::kMostKept) {
    ++entry.not_kept;
    return;
  }
  Finding finding{leftover, std::string(leftover.around), within};
  finding.leftover.around = {};
  entry.findings.push_back(std::move(finding));
}

// Whether `a` comes before `b`. Findings are sorted by the part of the entry that they are in, then
// by offset, then by row.
bool InOrder(const Finding& a, const Finding& b) {
  if (a.within != b.within) return a.within < b.within;
  return std::pair(a.leftover.offset, a.leftover.row) <
         std::pair(b.leftover.offset, b.leftover.row);
}

// Searches one entry. Returns false when `keep_going` ended the search.
bool CheckEntry(FileService& files, LeftoverSearch& search, const KeepGoing& keep_going,
                CheckedEntry& entry) {
  const auto keep_as = [&entry](Within within) {
    return [&entry, within](const Leftover& leftover) { Keep(entry, leftover, within); };
  };
  MemorySource name(entry.name);
  search.Run(name, keep_as(Within::kName));
  if (entry.is_link) {
    const Result<std::string> text = files.LinkText(entry.path);
    if (text) entry.link_text = text.value;
    if (entry.error == ErrorNumber::kNone) entry.error = text.error;
    MemorySource link(entry.link_text);
    search.Run(link, keep_as(Within::kLink));
  }
  if (entry.kind == CheckedKind::kFile) {
    const Result<std::unique_ptr<InputFile>> file = files.OpenForReading(entry.path);
    if (!file) entry.error = file.error;
    if (file) {
      FileSource bytes(*file.value);
      const ErrorNumber error = search.Run(bytes, keep_as(Within::kContents), keep_going);
      if (error != ErrorNumber::kNone) entry.error = error;
      entry.bytes = search.size();
    }
  }
  std::stable_sort(entry.findings.begin(), entry.findings.end(), InOrder);
  return !keep_going || keep_going();
}

// Hands entries to threads, which search them, and passes the searched entries to `take` in the
// order in which they were added.
class EntryQueue {
 public:
  EntryQueue(FileService& files, const Sought& sought, const KeepGoing& keep_going,
             const TakeEntry& take)
      : files_(files), sought_(sought), keep_going_(keep_going), take_(take) {
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

  // Passes finished entries on to `take_`; waits until at most `most_left` entries are queued.
  void GiveBack(std::size_t most_left) {
    std::unique_lock lock(mutex_);
    while (!entries_.empty() && (entries_.size() > most_left || entries_.front()->done)) {
      something_is_done_.wait(lock, [this] { return entries_.front()->done; });
      const std::unique_ptr<Slot> slot = std::move(entries_.front());
      entries_.pop_front();
      --next_;
      findings_ -= slot->entry.findings.size();
      something_waits_.notify_all();
      if (stopped_) continue;
      lock.unlock();
      take_(slot->entry);
      lock.lock();
    }
  }

  // Asks `keep_going_`. Once `keep_going_` has returned false, no further entry is passed on.
  bool MayGoOn() {
    const std::lock_guard lock(mutex_);
    if (keep_going_ && !keep_going_()) stopped_ = true;
    return !stopped_;
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
      const bool whole = CheckEntry(files_, search, keep_going_, slot.entry);
      lock.lock();
      if (!whole) stopped_ = true;
      slot.done = true;
      findings_ += slot.entry.findings.size();
      something_is_done_.notify_one();
    }
  }

  FileService& files_;
  const Sought& sought_;
  const KeepGoing& keep_going_;
  const TakeEntry& take_;
  std::mutex mutex_;  // guards all members below but threads_
  std::condition_variable something_waits_;
  std::condition_variable something_is_done_;
  std::deque<std::unique_ptr<Slot>> entries_;
  std::size_t next_ = 0;      // the index of the first entry that no thread has taken
  std::size_t findings_ = 0;  // findings in the finished entries of the queue
  bool closed_ = false;
  bool stopped_ = false;
  std::vector<std::thread> threads_;
};

CheckedKind KindOf(EntryKind kind) {
  switch (kind) {
    case EntryKind::kFolder:
      return CheckedKind::kFolder;
    case EntryKind::kBrokenLink:
      return CheckedKind::kBrokenLink;
    case EntryKind::kSpecial:
      return CheckedKind::kSpecial;
    case EntryKind::kFile:
      break;
  }
  return CheckedKind::kFile;
}

class Walk {
 public:
  // `root` is the tree's path with all links resolved.
  Walk(FileService& files, EntryQueue& queue, const std::string& root)
      : files_(files), queue_(queue), root_(WithSeparator(root)) {}

  // Searches the tree. `folder` is the result of looking up the tree's path. There is no recursion,
  // because a tree can be deeper than the stack of the process allows.
  void Folder(CheckedEntry tree, const Result<FolderInfo>& folder) {
    Enter(std::move(tree), folder, false);
    while (!levels_.empty() && queue_.MayGoOn()) {
      Level& level = levels_.back();
      if (level.next == level.listing.size()) {
        levels_.pop_back();
        continue;
      }
      const FolderEntry entry = std::move(level.listing[level.next++]);
      const std::string below = level.path + entry.name;
      if (entry.kind == EntryKind::kFolder && entry.is_link && LeadsIntoTree(below)) {
        Add({below, entry.name, CheckedKind::kFolderElsewhere, true});
      } else if (entry.kind == EntryKind::kFolder) {
        const bool by_link = entry.is_link || level.by_link;
        Enter({below, entry.name, CheckedKind::kFolder, entry.is_link}, files_.LookUpFolder(below),
              by_link);
      } else {
        Add({below, entry.name, KindOf(entry.kind), entry.is_link});
      }
    }
  }

  void Add(CheckedEntry entry) { queue_.Add(std::move(entry)); }

 private:
  struct Level {
    FileIdentity identity;
    bool by_link = false;  // the walk came to this folder through a link
    std::string path;      // ends in a separator
    std::vector<FolderEntry> listing;
    std::size_t next = 0;
  };

  std::string WithSeparator(const std::string& path) const {
    return path.ends_with(files_.Separator()) ? path : path + files_.Separator();
  }

  // Whether a link leads to a folder of the tree. The walk reaches that folder under its own path.
  bool LeadsIntoTree(const std::string& link) const {
    const Result<std::string> real = files_.RealPath(link);
    return real && WithSeparator(real.value).starts_with(root_);
  }

  bool IsOnTheWay(const FileIdentity& identity) const {
    return std::any_of(levels_.begin(), levels_.end(),
                       [&](const Level& level) { return level.identity == identity; });
  }

  void Enter(CheckedEntry entry, const Result<FolderInfo>& folder, bool by_link) {
    entry.error = folder.error;
    if (!folder) return Add(std::move(entry));
    const FileIdentity identity = folder.value.identity;
    const bool is_known = !entered_.emplace(identity.device, identity.number).second;
    if (is_known && (by_link || IsOnTheWay(identity))) {
      entry.kind = CheckedKind::kFolderElsewhere;
      return Add(std::move(entry));
    }
    const std::string path = entry.path;
    Result<std::vector<FolderEntry>> listing = files_.ListFolder(path);
    entry.error = listing.error;
    Add(std::move(entry));
    if (!listing) return;
    std::sort(listing.value.begin(), listing.value.end(),
              [](const FolderEntry& a, const FolderEntry& b) { return a.name < b.name; });
    levels_.push_back({identity, by_link, WithSeparator(path), std::move(listing.value)});
  }

  FileService& files_;
  EntryQueue& queue_;
  const std::string root_;     // ends in a separator
  std::vector<Level> levels_;  // the folders from the root down to the current one
  // Device and number of every folder entered.
  std::set<std::pair<std::uint64_t, std::uint64_t>> entered_;
};

}  // namespace

bool CheckTree(FileService& files, const std::string& tree, const Sought& sought,
               const KeepGoing& keep_going, const TakeEntry& take) {
  EntryQueue queue(files, sought, keep_going, take);
  const Result<std::string> root = files.RealPath(tree);
  Walk walk(files, queue, root ? root.value : tree);
  const Result<FolderInfo> folder = files.LookUpFolder(tree);
  const Result<FileInfo> file = files.LookUpFile(tree);
  const bool is_link = static_cast<bool>(files.LinkText(tree));
  if (!folder && file) {
    walk.Add({tree, file.value.name, CheckedKind::kFile, is_link});
  } else {
    const std::string& path = folder.value.path;
    walk.Folder({tree, path.substr(path.rfind(files.Separator()) + 1), CheckedKind::kFolder,
                 is_link && folder},
                folder);
  }
  queue.GiveBack(0);
  return queue.MayGoOn();
}

}  // namespace morvex
