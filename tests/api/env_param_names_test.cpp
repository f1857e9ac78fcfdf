// The parameters that the header names and those that the library knows are the same.
#include <fstream>

#include "env_fixture.h"

namespace {

TEST_F(EnvironmentTest, TheHeaderAndTheLibraryNameTheSameParameters) {
  std::ifstream header(KELVO_HEADER);
  int in_header = 0, in_library = 0;
  char found_name[512];
  for (std::string word, name; header >> word;) {
    int number = 0, found = 0;
    if (word != "#define" || !(header >> name) || name.rfind("KLV_PARAM_", 0) != 0) continue;
    ASSERT_TRUE(header >> number) << name;
    EXPECT_EQ(KLVgetparamnum(env, name.c_str(), &found), 0) << name;
    EXPECT_EQ(found, number) << name;
    EXPECT_EQ(KLVgetparamname(env, number, found_name), 0);
    EXPECT_EQ(found_name, name);
    ++in_header;
  }
  for (int number = 0; number < 7000; ++number) {
    found_name[0] = '\0';
    in_library += KLVgetparamname(env, number, found_name) == 0 && found_name[0] != '\0';
  }
  EXPECT_GT(in_header, 100);
  EXPECT_EQ(in_header, in_library);
}

}  // namespace
