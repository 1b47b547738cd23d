#include "tui/columns.h"

#include <gtest/gtest.h>

namespace {

struct Cut {
  const char* text;
  int width;
  bool goes_on;
  const char* shown;
};

constexpr Cut cuts[] = {
    {"abcd", 5, true, "abcd"},
    {"abcde", 5, false, "abcde"},
    {"abcde", 5, true, "abcd>"},  // otherwise nothing would say that more was there
    {"abcdef", 5, false, "abcd>"},
    {"abcde   ", 5, false, "abcde"},  // only blanks are lost
    {"abcd    ", 5, true, "abcd>"},
    {"電電電", 6, false, "電電電"},
    {"電電電", 5, false, "電電>"},
    {"電電電", 4, false, "電 >"},  // the mark would split the second character
    {"a\u0301b\u0301c\u0301", 3, false, "a\u0301b\u0301c\u0301"},
    {"a\u0301b\u0301c\u0301", 2, false, "a\u0301>"},
    {"\xff\xff\xff", 2, false, "\xff>"},
    {"abc", 1, false, ">"},
    {"電", 1, false, ">"},
    {"abc", 0, true, ""},
    {"abc", -7, false, ""},
};

TEST(Columns, EndWithAMarkWhereATextIsCut) {
  for (const Cut& c : cuts) {
    EXPECT_EQ(cut_marked(c.text, c.width, c.goes_on), c.shown) << c.text << " " << c.width;
  }
}

}  // namespace
