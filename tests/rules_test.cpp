#include <gtest/gtest.h>

#include <cstring>

#include "lang/lang_text.h"
#include "schedule/jobs.h"
#include "tests/tables.h"
#include "ups/type_code.h"

namespace {

TEST(TypeCode, TellsTheProductLineAndTheSpeed) {
  for (const Line& line : read_table("type_codes.txt")) {
    SCOPED_TRACE(line[0]);
    const bool known = line[1] != "255";
    EXPECT_EQ(FindUpsModelTxt(line[0].c_str()), known ? &FindModel : nullptr);
    EXPECT_EQ(FindModel.text, known ? line[0] : "Unknow model");
    EXPECT_EQ(std::to_string(FindModel.number) + ' ' + std::to_string(FindModel.flag) + ' ' +
                  std::to_string(FindModel.baud),
              line[1] + ' ' + line[2] + ' ' + line[3]);
  }
}

TEST(JobDefaults, FollowTheEvent) {
  ASSERT_EQ(AllocText(), 0);
  for (char* text : LangText) text[0] = '\x1b';  // stored as the language file holds it
  for (const Line& line : read_table("job_defaults.txt")) {
    Job job;
    std::memset(&job, 0xEE, sizeof job);
    JobToDefault(job, std::stoi(line[0]), std::stoi(line[1]));
    Job expected = {};
    expected.Log = expected.LocalMessage = 1;
    expected.LocalMessageInterval = static_cast<std::uint16_t>(std::stoi(line[2]));
    expected.Message.assign("\x1b" + line[3].substr(1));
    EXPECT_EQ(std::memcmp(&job, &expected, sizeof job), 0) << line[0] << job.Message.view();
  }
  FreeText();
}

}  // namespace
