// Reads the public instances, when they are there, and checks their sizes.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "base/file_stream.h"
#include "io/mps/mps_reader.h"

namespace kelvo {
namespace {

constexpr int kMostNonzeros = 30000;

TEST(MpsReaderData, SizesOfPublicInstances) {
  const char* const folder = std::getenv("KELVO_BENCH_DATA");
  if (folder == nullptr) GTEST_SKIP() << "KELVO_BENCH_DATA names no folder of instances";
  std::ifstream manifest(std::filesystem::path(folder) / "manifest.tsv");
  if (!manifest) GTEST_SKIP() << "no manifest.tsv in " << folder;
  std::string line;
  int instances = 0;
  while (std::getline(manifest, line)) {
    std::istringstream row(line);
    std::string kind, name;
    int rows, columns, nonzeros, integers;
    if (!(row >> kind >> name >> rows >> columns >> nonzeros >> integers)) continue;
    if ((kind != "lp" && kind != "lp-infeas" && kind != "mip") || nonzeros > kMostNonzeros)
      continue;
    SCOPED_TRACE(kind + "/" + name);
    const auto path = std::filesystem::path(folder) / kind / (name + ".mps.gz");
    FileStream stream;
    ASSERT_TRUE(open_input(path.c_str(), nullptr, stream).ok());
    LineReader lines(stream);
    SilentSink sink;
    Model model;
    ASSERT_TRUE(read_mps(lines, {}, sink, model).ok());
    ASSERT_TRUE(close_file(stream).ok());
    EXPECT_EQ(model.num_rows, rows);
    EXPECT_EQ(model.num_cols, columns);
    EXPECT_EQ(model.matrix.num_nonzeros(), nonzeros);
    int found = 0;
    for (const char type : model.column_type) found += type == 'I' || type == 'B' || type == 'N';
    EXPECT_EQ(found, integers);
    ++instances;
  }
  EXPECT_GT(instances, 0);
}

}  // namespace
}  // namespace kelvo
