// The host: everything outside the program that the program uses, as three services. Whoever
// creates the services (a main function, a test) owns them and keeps them alive as long as the
// program.
#pragma once

#include "core/host/file_service.h"
#include "core/host/system_service.h"
#include "core/host/user_service.h"

namespace morvex {

struct Host {
  FileService& files;
  SystemService& system;
  UserService& user;
};

}  // namespace morvex
