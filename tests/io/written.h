// What a writer writes, as a text.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "base/file_stream.h"

namespace kelvo::test {

/// `write` writes to a stream and returns a Status, or nothing.
template <class Write>
std::string written(Write write) {
  const std::string path = ::testing::TempDir() + "kelvo_written_" + std::to_string(getpid());
  FileStream stream;
  EXPECT_TRUE(open_output(path.c_str(), false, stream).ok());
  if constexpr (std::is_void_v<decltype(write(stream))>) {
    write(stream);
  } else {
    EXPECT_TRUE(write(stream).ok());
  }
  EXPECT_TRUE(close_file(stream).ok());
  std::ifstream file(path, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  std::remove(path.c_str());
  return text.str();
}

}  // namespace kelvo::test
