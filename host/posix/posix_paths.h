// Paths as bytes: what is no path at all, the two parts of one, and its absolute form.
#pragma once

#include <string>

#include "core/host/error.h"
#include "host/posix/posix_errors.h"

namespace morvex::posix {

// Refuses what the system would take for another path: the empty one (53 or 76) and one that holds
// a NUL byte (52).
ErrorNumber CheckPath(const std::string& path, Missing missing);

struct PathParts {
  std::string folder;  // "." for a bare name; no separator at its end but a root's
  std::string name;    // what follows the last separator, so it can be empty
};
PathParts SplitPath(const std::string& path);

// `path` from the root on, without ".", "..", doubled separators and a separator at its end. Links
// stay in it, except that ".." behind a link leads to where the link's target lies. The path has to
// lead somewhere and must have passed CheckPath.
Result<std::string> AbsolutePath(const std::string& path);

// Where `path`, which has to lead somewhere, leads when every link in it is followed.
Result<std::string> ResolvedPath(const std::string& path);

// What stands in the link at `path`.
Result<std::string> ReadLink(const std::string& path);

// Where the chain of links that starts at `path` ends; `path` itself when it is no link. The end
// need not exist.
Result<std::string> FollowLinks(const std::string& path);

}  // namespace morvex::posix
