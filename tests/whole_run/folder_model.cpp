// Handles files and folders in the order in which the disk listed them.

#include "folder_model.h"

#include <utility>

namespace morvex::whole_run {
namespace {

std::string UpperCased(std::string text) {
  for (char& letter : text) {
    if (letter >= 'a' && letter <= 'z') {
      letter = static_cast<char>(letter - 'a' + 'A');
    }
  }
  return text;
}

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::string LastCharacters(const std::string& text, std::size_t count) {
  return text.size() <= count ? text : text.substr(text.size() - count);
}

bool IsLeftOut(const std::string& path) {
  const std::string upper = UpperCased(path);
  return Contains(upper, "RECYCLER") || Contains(upper, "RECYCLED") ||
         Contains(upper, "SYSTEM VOLUME INFORMATION");
}

}  // namespace

std::string FileExtension(const std::string& name) {
  const std::size_t at = name.find('.');
  return at == std::string::npos ? std::string() : name.substr(at + 1);
}

FolderModel::FolderModel(const RunInput& input, const Settings& settings, EngineModel engine)
    : input_(input),
      settings_(settings),
      engine_(std::move(engine)),
      disk_(input.disk),
      target_root_(LookedUpPath(settings.target, input.current_folder)) {}

void FolderModel::Log(const std::string& text) { LogPattern(LogKind::kExact, text); }

void FolderModel::LogPattern(LogKind kind, const std::string& text) {
  if (settings_.logging_box == 1) {
    log_.push_back({kind, text});
  }
}

bool FolderModel::IsSelected(const std::string& key) const {
  for (const ExtensionEntry& entry : settings_.extensions) {
    if (entry.selected && entry.text == key) {
      return true;
    }
  }
  return false;
}

bool FolderModel::IsPassedOverSilently(const std::string& folder, const std::string& name) const {
  const std::size_t extension_length = FileExtension(name).size();
  const std::string base = name.substr(0, name.size() - extension_length - 1);
  const std::string upper_folder = UpperCased(folder);
  return base == "Morvex" || name == "Morvex.exe" || name == input_.executable_name + ".exe" ||
         Contains(upper_folder, "RECYCLED") || Contains(upper_folder, "RECYCLER") ||
         Contains(upper_folder, "_RESTORE") ||
         disk_.Find(folder + "/" + name)->modified_ns.value_or(0) >= input_.armed_ns;
}

ProcessedFile FolderModel::ProcessFile(const std::string& folder, const std::string& name) {
  if (IsPassedOverSilently(folder, name)) {
    return {};
  }
  if (LastCharacters(name, 3) == "cle") {
    Log("SKIP " + name);
    ++files_skipped_;
    return {};
  }
  if (disk_.IsFolder(folder + "/" + kTemporaryName)) {
    return {false, true, {}};
  }
  const std::string path = folder + "/" + name;
  const Substituted substituted = engine_.Process(disk_.Find(path)->bytes);
  hits_total_ += substituted.hits;
  total_files_caption_ =
      "Scanned: " + std::to_string(files_done_) + "\r\nSipped: " + std::to_string(files_skipped_);
  Log(path + "  ----  Hits: " + std::to_string(substituted.hits));
  return {true, false, substituted.bytes};
}

FolderModel::CopyError FolderModel::Copy(const std::string& source, const std::string& target,
                                         Node copy) {
  if (source == target) {
    return CopyError::kOntoItself;
  }
  return disk_.PutFile(target, std::move(copy)) ? CopyError::kNone : CopyError::kOther;
}

void FolderModel::LogFailedCopy(const std::string& path, const ProcessedFile& processed,
                                CopyError error) {
  Log(path);
  if (processed.no_room) {
    Log("Error 75: Path/File access error");
  } else if (!processed.made) {
    Log("Error 53: File not found");
  } else if (error == CopyError::kOntoItself) {
    Log("Error 75: Path/File access error");
  } else {
    LogPattern(LogKind::kErrorNumber, "");
  }
}

void FolderModel::HandleFile(const std::string& folder, const std::string& name,
                             const std::string& target, const std::string& key) {
  const std::string path = folder + "/" + name;
  const Node source = *disk_.Find(path);
  bytes_total_ += static_cast<std::int64_t>(source.bytes.size());
  if (IsSelected(key)) {
    ++files_done_;
    disk_.RemoveFile(folder + "/" + kTemporaryName);
    const ProcessedFile processed = ProcessFile(folder, name);
    Node copy;
    copy.bytes = processed.bytes;
    copy.permissions = source.permissions;
    const CopyError error =
        processed.made ? Copy(path, target + "/" + name, std::move(copy)) : CopyError::kOther;
    if (error != CopyError::kNone) {
      ++left_out_;
      ++missed_;
      LogFailedCopy(path, processed, error);
    } else {
      ++copies_;
    }
  } else {
    const bool copied = Copy(path, target + "/" + name, source) == CopyError::kNone;
    copies_ += copied ? 1 : 0;
    left_out_ += copied ? 0 : 1;
    missed_ += copied ? 0 : 1;
    ++files_skipped_;
  }
  total_files_caption_ =
      "Scanned: " + std::to_string(files_done_) + "\r\nSkipped: " + std::to_string(files_skipped_);
}

void FolderModel::HandleTopFiles(const std::string& source, const std::string& target) {
  if (!disk_.IsFolder(source)) {
    return;
  }
  const std::vector<std::string> listing = disk_.Find(source)->listing;
  for (const std::string& name : listing) {
    if (disk_.IsFolder(source + "/" + name)) {
      continue;
    }
    if (name == kTemporaryName) {
      ++left_out_;
    } else {
      HandleFile(source, name, target, "." + FileExtension(name));
    }
  }
}

void FolderModel::Walk(const std::string& source, const std::string& target) {
  if (!disk_.IsFolder(source)) {
    return;
  }
  disk_.MakeFolder(target);
  const std::vector<std::string> listing = disk_.Find(source)->listing;
  for (const std::string& folder_name : listing) {
    const std::string folder = source + "/" + folder_name;
    if (!disk_.IsFolder(folder)) {
      continue;
    }
    if (folder == target_root_) {
      ++left_out_;
      continue;
    }
    const std::string folder_target = target + "/" + folder_name;
    disk_.MakeFolder(folder_target);
    left_out_ += disk_.IsFolder(folder_target) ? 0 : 1;
    if (IsLeftOut(folder) || IsLeftOut(target)) {
      ++left_out_;
      ++missed_;
      continue;
    }
    const std::vector<std::string> names = disk_.Find(folder)->listing;
    for (const std::string& name : names) {
      if (disk_.IsFolder(folder + "/" + name)) {
        continue;
      }
      if (name == kTemporaryName) {
        ++left_out_;
      } else {
        HandleFile(folder, name, folder_target, LastCharacters(name, 4));
      }
    }
    Walk(folder, folder_target);
  }
}

}  // namespace morvex::whole_run
