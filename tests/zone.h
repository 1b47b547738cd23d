#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

/// Another time zone (the value of `TZ`, nullptr for none) until the object ends.
class Zone {
 public:
  explicit Zone(const char* name) {
    if (const char* before = getenv("TZ")) before_ = before;
    set(name);
  }
  ~Zone() { set(before_ ? before_->c_str() : nullptr); }
  Zone(const Zone&) = delete;
  Zone& operator=(const Zone&) = delete;

 private:
  static void set(const char* name) {
    name == nullptr ? unsetenv("TZ") : setenv("TZ", name, 1);
    tzset();
  }

  std::optional<std::string> before_;
};
