#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// What is to be done to one language file of the service, and doing it.

enum class Change : std::uint8_t {
  none,   // the file has our section as it should be
  copy,   // there is no such file
  add,    // the file has sections of other programs only
  renew,  // the file has an older section [Harrier]
  leave,  // the file must stay as it is
};

struct Renewal {
  std::string path = {};   // of the file, with a folder
  std::string model = {};  // a file whose owner and permissions a new file gets
  Change change = Change::none;
  std::string reason = {};    // of `leave`
  int texts = 0;              // that `renew` changes
  std::string contents = {};  // of the file afterwards
};

/// Finds out what is to be done so that the file `renewal.path` has the section [Harrier] of the
/// file `source`, and sets the rest of `renewal`. Returns 0, or EIO after a sentence on standard
/// error when one of the two cannot be read.
int plan(const std::string& source, Renewal& renewal);

/// Does it, for anything but `none` and `leave`: the whole change or nothing. Signals wait
/// meanwhile. Returns 0, or EIO after a sentence on standard error.
int carry_out(const Renewal& renewal);
