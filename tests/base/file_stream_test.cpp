#include "base/file_stream.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "base/line_reader.h"
#include "support/temporary_folder.h"

namespace kelvo {
namespace {

namespace fs = std::filesystem;

class FileStreamTest : public ::testing::Test, protected TemporaryFolder {
 protected:
  static std::string read_back(const std::string& name, int* code = nullptr) {
    FileStream stream;
    std::string text;
    Status status = open_input(name.c_str(), nullptr, stream);
    char block[1000];
    while (const std::size_t got = stream.read(block, sizeof(block))) text.append(block, got);
    if (status.ok()) status = close_file(stream);
    if (code != nullptr) {
      *code = status.code();
    } else {
      EXPECT_TRUE(status.ok()) << name;
    }
    return text;
  }
};

TEST_F(FileStreamTest, WhatIsWrittenIsReadBackUnderEverySuffix) {
  std::string text;
  for (int i = 0; i < 40000; ++i) text += "line " + std::to_string(i * 7919) + "\n";
  struct Case {
    const char* name;
    const char* first_bytes;  // of the file on disk
  };
  for (const Case& c :
       {Case{"plain.mps", "line 0"}, Case{"a.mps.gz", "\x1f\x8b"}, Case{"A.MPS.GZ", "\x1f\x8b"},
        Case{"a.Bz2", "BZh"}, Case{"a.mps.Z", "\x1f\x8b"}, Case{"-cd.gz", "\x1f\x8b"},
        Case{"two words; touch 'x' \"y\" $(z).gz", "\x1f\x8b"}}) {
    SCOPED_TRACE(c.name);
    FileStream stream;
    ASSERT_TRUE(open_output(path(c.name).c_str(), true, stream).ok());
    stream.write(text);
    stream.print("%d %s\n", 42, "end");
    ASSERT_TRUE(close_file(stream).ok());
    EXPECT_EQ(text_of(c.name).substr(0, std::string(c.first_bytes).size()), c.first_bytes);
    EXPECT_EQ(read_back(path(c.name)), text + "42 end\n");
  }
  FileStream stream;
  ASSERT_TRUE(open_output(path("small.z").c_str(), true, stream).ok());
  stream.write("plain");
  ASSERT_TRUE(close_file(stream).ok());
  EXPECT_EQ(text_of("small.z"), "plain");
}

TEST_F(FileStreamTest, BrokenCompressedDataIsAFailure) {
  FileStream stream;
  ASSERT_TRUE(open_output(path("good.gz").c_str(), true, stream).ok());
  for (int i = 0; i < 5000; ++i) stream.print("%d\n", i * i);
  ASSERT_TRUE(close_file(stream).ok());
  const std::string whole = text_of("good.gz");
  put("cut.gz", whole.substr(0, whole.size() / 2));
  put("cut_checksum.gz", whole.substr(0, whole.size() - 4));
  put("text.gz", "NAME\n");
  put("text.bz2", "NAME\n");
  put("empty.gz", "");
  for (const char* name : {"cut.gz", "cut_checksum.gz", "text.gz", "text.bz2"}) {
    SCOPED_TRACE(name);
    int code = 0;
    read_back(path(name), &code);
    EXPECT_EQ(code, 1423);
  }
  // A reader that has seen all it wants still learns that the end is missing.
  ASSERT_TRUE(open_input(path("cut_checksum.gz").c_str(), nullptr, stream).ok());
  char block[100];
  EXPECT_EQ(stream.read(block, sizeof(block)), sizeof(block));
  EXPECT_EQ(close_file(stream).code(), 1423);
}

TEST_F(FileStreamTest, OpenFailuresAndDefaultExtension) {
  FileStream stream;
  for (const char* name : {"missing", "missing.gz", ""}) {
    EXPECT_EQ(open_input(path(name).c_str(), nullptr, stream).code(), 1423) << name;
    EXPECT_FALSE(stream.is_open());
  }
  EXPECT_EQ(open_output(path("no/such/folder.gz").c_str(), true, stream).code(), 1422);
  EXPECT_EQ(open_output(path("").c_str(), true, stream).code(), 1422);
  put("model.prm", "text");
  EXPECT_TRUE(open_input(path("model").c_str(), ".prm", stream).ok());
  EXPECT_TRUE(close_file(stream).ok());
  EXPECT_TRUE(close_file(stream).ok());
}

TEST_F(FileStreamTest, AFullDiskIsAFailureAndNoSignal) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  fs::create_symlink("/dev/full", path("full.gz"));
  fs::create_symlink("/dev/full", path("full"));
  for (const char* name : {"full", "full.gz"}) {
    SCOPED_TRACE(name);
    FileStream stream;
    ASSERT_TRUE(open_output(path(name).c_str(), true, stream).ok());
    unsigned state = 1;
    for (int i = 0; i < 200000; ++i) stream.print("%u\n", state = state * 1103515245u + 12345u);
    EXPECT_EQ(close_file(stream).code(), 1422);
    EXPECT_TRUE(waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD) << "a process is left";
  }
}

TEST_F(FileStreamTest, WorksWhenStandardInputIsClosed) {
  FileStream stream;
  ASSERT_TRUE(open_output(path("a.gz").c_str(), true, stream).ok());
  stream.write("text");
  ASSERT_TRUE(close_file(stream).ok());
  const int kept = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10);
  ::close(STDIN_FILENO);
  int code = -1;
  const std::string text = read_back(path("a.gz"), &code);
  if (kept >= 0) {
    dup2(kept, STDIN_FILENO);
    ::close(kept);
  }
  EXPECT_EQ(code, 0);
  EXPECT_EQ(text, "text");
}

TEST_F(FileStreamTest, LinesComeOutAsWritten) {
  std::string text;
  std::vector<std::string> lines;
  for (int i = 0; i < 30000; ++i) {
    lines.push_back(
        std::string(static_cast<std::size_t>(i * 31 % 97), static_cast<char>('a' + i % 26)));
    text += lines.back() + "\n";
  }
  lines.push_back("no line feed at the end");
  text += lines.back();
  put("lines", text);
  FileStream stream;
  ASSERT_TRUE(open_input(path("lines").c_str(), nullptr, stream).ok());
  LineReader from_file(stream);
  LineReader from_memory(text);
  EXPECT_EQ(from_memory.peek(100), std::string_view(text).substr(0, 100));
  EXPECT_EQ(from_file.peek(100), std::string_view(text).substr(0, 100));
  for (LineReader* reader : {&from_file, &from_memory}) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
      ASSERT_EQ(reader->next(559), LineReader::Outcome::line);
      ASSERT_EQ(reader->text(), lines[i]);
      ASSERT_EQ(*(reader->text().data() + reader->text().size()), '\n');
      ASSERT_EQ(reader->line_number(), static_cast<int>(i) + 1);
    }
    EXPECT_EQ(reader->next(559), LineReader::Outcome::end);
    EXPECT_EQ(reader->line_number(), static_cast<int>(lines.size()));
  }
}

TEST(LineReader, LinesTakenInBulkAreCounted) {
  LineReader reader("one\ntwo\nthree\nfour\n");
  std::string_view lines[3];
  ASSERT_EQ(reader.next(10), LineReader::Outcome::line);
  EXPECT_EQ(reader.take_ready(lines, 2, 10), 2);
  EXPECT_EQ(lines[1], "three");
  EXPECT_EQ(reader.line_number(), 3);
  ASSERT_EQ(reader.next(10), LineReader::Outcome::line);
  EXPECT_EQ(reader.line_number(), 4);
}

TEST(LineReader, LongLinesComeInPieces) {
  LineReader reader("abcdef\nabc\n\nabcd");
  using Outcome = LineReader::Outcome;
  struct Step {
    Outcome outcome;
    const char* text;
    int line;
  };
  for (const Step& step :
       {Step{Outcome::piece, "abc", 1}, Step{Outcome::line, "def", 1},
        Step{Outcome::line, "abc", 2}, Step{Outcome::line, "", 3}, Step{Outcome::piece, "abc", 4},
        Step{Outcome::line, "d", 4}, Step{Outcome::end, "", 4}}) {
    ASSERT_EQ(reader.next(3), step.outcome);
    EXPECT_EQ(reader.text(), step.text);
    EXPECT_EQ(reader.line_number(), step.line);
  }
}

}  // namespace
}  // namespace kelvo
