// Sets an environment variable until the object is destroyed.
#pragma once

#include <QByteArray>
#include <QtGlobal>

namespace morvex::test {

class Variable {
 public:
  Variable(const char* name, const QByteArray& value) : name_(name), before_(qgetenv(name)) {
    was_set_ = qEnvironmentVariableIsSet(name);
    qputenv(name, value);
  }
  ~Variable() {
    if (was_set_) {
      qputenv(name_, before_);
    } else {
      qunsetenv(name_);
    }
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
  QByteArray before_;
  bool was_set_ = false;
};

}  // namespace morvex::test
