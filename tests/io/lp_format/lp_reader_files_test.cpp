// Public LP files against the sizes listed for them; skipped without the data folder.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "base/file_stream.h"
#include "io/lp_format/lp_reading.h"
#include "io/lp_format/reader/lp_reader.h"

namespace kelvo {
namespace {

struct Listed {
  std::string name;
  std::string rows, columns, nonzeros;  // a number or "?"
};

std::vector<Listed> listed_files(const std::string& folder) {
  std::vector<Listed> files;
  std::ifstream manifest(folder + "/manifest.tsv");
  for (std::string line; std::getline(manifest, line);) {
    std::istringstream fields(line);
    std::string kind;
    Listed file;
    fields >> kind >> file.name >> file.rows >> file.columns >> file.nonzeros;
    if (kind == "lpformat") files.push_back(file);
  }
  return files;
}

/// Files outside the grammar and the error that says why.
const std::set<std::pair<std::string, int>> kRefused = {
    {"highs-1448", 1436},      // no model at all
    {"highs-1449a", 1603},     // all sections on one line
    {"highs-1449b", 1603},     //
    {"ex1263", 1614},          // products written without '*'
    {"estein1_t4Nr22", 1617},  // names that read as exponents
    {"estein4_data1", 1617},   //
    {"estein5_data1", 1617},   //
    {"pyo-ef_SIZES3", 1447},   // a row name given twice
    {"pyo-ef_SIZES10", 1447},  //
    {"pyo-ef_farmer", 1447},   //
    {"pyo-ef_finance", 1447},  //
};

TEST(LpReaderFiles, SizesOfPublicFiles) {
  const char* const folder = std::getenv("KELVO_BENCH_DATA");
  if (folder == nullptr) GTEST_SKIP() << "KELVO_BENCH_DATA is not set";
  const std::vector<Listed> files = listed_files(folder);
  if (files.empty()) GTEST_SKIP() << "no LP files listed in " << folder;
  for (const Listed& file : files) {
    SCOPED_TRACE(file.name);
    const std::string path = std::string(folder) + "/lpformat/" + file.name + ".lp.gz";
    FileStream stream;
    ASSERT_TRUE(open_input(path.c_str(), nullptr, stream).ok());
    LineReader lines(stream);
    test::RecordingSink sink;
    Model model;
    const Status status = LpReader(lines, {}, sink).read(model);
    if (!status.ok()) {
      EXPECT_TRUE(kRefused.contains({file.name, status.code()})) << sink[Channel::error];
      continue;
    }
    ASSERT_TRUE(close_file(stream).ok());
    EXPECT_EQ(sink[Channel::warning], "");
    const auto agrees = [](const std::string& listed, std::int64_t count) {
      return listed == "?" || listed == std::to_string(count);
    };
    EXPECT_TRUE(agrees(file.rows, model.num_rows)) << model.num_rows;
    EXPECT_TRUE(agrees(file.columns, model.num_cols)) << model.num_cols;
    EXPECT_TRUE(agrees(file.nonzeros, model.matrix.num_nonzeros()));
  }
}

}  // namespace
}  // namespace kelvo
