#pragma once

#include <cstdlib>
#include <ctime>
#include <string>

/// Another time zone (the value of `TZ`, empty for none) until the object ends.
class Zone {
 public:
  explicit Zone(const std::string& name) { set(name); }
  ~Zone() { set(before_); }
  Zone(const Zone&) = delete;
  Zone& operator=(const Zone&) = delete;

 private:
  static void set(const std::string& name) {
    name.empty() ? unsetenv("TZ") : setenv("TZ", name.c_str(), 1);
    tzset();
  }
  const std::string before_ = getenv("TZ") == nullptr ? "" : getenv("TZ");
};
