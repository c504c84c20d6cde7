// Paths as bytes: checks, splitting, and the absolute form.
#pragma once

#include <string>

#include "core/host/error.h"
#include "host/posix/posix_errors.h"

namespace morvex::posix {

// Rejects paths that the system would misunderstand: the empty one (53 or 76) and one with a NUL
// byte (52).
ErrorNumber CheckPath(const std::string& path, Missing missing);

struct PathParts {
  std::string folder;  // "." for a bare name; ends in a separator only if it is a root
  std::string name;    // what follows the last separator; may be empty
};
PathParts SplitPath(const std::string& path);

// Returns `path` from the root on, without ".", "..", doubled separators and a separator at its
// end. Links stay, except that ".." after a link leads to the parent of the link's target. The path
// must exist and have passed CheckPath.
Result<std::string> AbsolutePath(const std::string& path);

// Returns `path`, which must exist, with every link in it followed.
Result<std::string> ResolvedPath(const std::string& path);

// Returns the text of the link at `path`.
Result<std::string> ReadLink(const std::string& path);

// Returns the end of the chain of links that starts at `path`, or `path` itself if it is not a
// link. The end need not exist.
Result<std::string> FollowLinks(const std::string& path);

}  // namespace morvex::posix
