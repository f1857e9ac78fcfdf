// What a writer writes, as a text.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "base/file_stream.h"
#include "support/temporary_folder.h"

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
  const std::string text = text_of_file(path);
  std::remove(path.c_str());
  return text;
}

}  // namespace kelvo::test
