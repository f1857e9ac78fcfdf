// Every public instance reads, writes as LP and as MPS, and reads back to the same model; skipped
// without the data folder.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "io/lp_format/lp_reading.h"
#include "io/lp_format/lp_writer.h"
#include "io/lp_format/reader/lp_reader.h"
#include "io/model_description.h"
#include "io/mps/mps_reader.h"
#include "io/mps/mps_writer.h"

namespace kelvo {
namespace {

namespace fs = std::filesystem;
using test::Description;
using test::Format;
using test::RecordingSink;

/// Files outside the grammar: the error that says where and why.
const std::map<std::string, std::string> kRefused = {
    // No model.
    {"highs-1448.lp.gz", "KELVO Error  1436: Max or Min missing.\n"},
    // The entries of a column in two places.
    {"jso-rim_obj.qps.gz",
     "KELVO Error  1446: Column 'c1' repeats.\nKELVO Error  1446: Column 'c2' repeats.\n"},
    // A row name given twice.
    {"pyo-ef_SIZES10.lp.gz", "KELVO Error  1447: Line 3339: Row 'c_e_ONE_VAR_CONSTANT' repeats.\n"},
    {"pyo-ef_SIZES3.lp.gz", "KELVO Error  1447: Line 1153: Row 'c_e_ONE_VAR_CONSTANT' repeats.\n"},
    {"pyo-ef_farmer.lp.gz", "KELVO Error  1447: Line 117: Row 'c_e_ONE_VAR_CONSTANT' repeats.\n"},
    {"pyo-ef_finance.lp.gz", "KELVO Error  1447: Line 404: Row 'c_e_ONE_VAR_CONSTANT' repeats.\n"},
    // All sections on one line.
    {"highs-1449a.lp.gz", "KELVO Error  1603: Line 1: RHS sense in objective.\n"},
    {"highs-1449b.lp.gz", "KELVO Error  1603: Line 1: RHS sense in objective.\n"},
    // Products without '*'.
    {"ex1263.lp.gz", "KELVO Error  1614: Line 5: Expected '^' or '*'.\n"},
    // Names that read as exponents.
    {"estein1_t4Nr22.lp.gz", "KELVO Error  1617: Line 4: 'e0_1' not valid identifier.\n"},
    {"estein4_data1.lp.gz", "KELVO Error  1617: Line 4: 'e0_1' not valid identifier.\n"},
    {"estein5_data1.lp.gz", "KELVO Error  1617: Line 5: 'e0_1' not valid identifier.\n"},
};

std::string file_of(const std::string& instance, Format format) {
  return instance + (format == Format::lp ? " as LP" : " as MPS");
}

Status read(const std::string& path, Format format, MessageSink& sink, Model& model) {
  FileStream stream;
  KELVO_TRY(open_input(path.c_str(), nullptr, stream));
  LineReader lines(stream);
  KELVO_TRY(format == Format::lp ? LpReader(lines, {}, sink).read(model)
                                 : read_mps(lines, {}, sink, model));
  return close_file(stream);
}

Status write(const Model& model, bool generic, const std::string& path, Format format,
             MessageSink& sink) {
  FileStream stream;
  KELVO_TRY(open_output(path.c_str(), false, stream));
  KELVO_TRY(format == Format::lp ? write_lp(model, {generic, true, false}, sink, stream)
                                 : write_mps(model, {generic, true}, sink, stream));
  return close_file(stream);
}

bool contains(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

/// The sizes that the folder's manifest lists for an instance: rows, columns, nonzeros, integers;
/// "?" or nothing where it does not know.
std::vector<std::string> listed_sizes(const fs::path& data, const std::string& kind,
                                      const std::string& file) {
  std::ifstream manifest(data / "manifest.tsv");
  for (std::string line; std::getline(manifest, line);) {
    std::istringstream fields(line);
    std::string found, name;
    std::vector<std::string> sizes(4, "?");
    fields >> found >> name;
    if (found != kind || file.substr(0, file.find('.')) != name) continue;
    for (std::string& size : sizes) fields >> size;
    return sizes;
  }
  return {};
}

void expect_listed_sizes(const std::vector<std::string>& listed, const Model& model) {
  std::int64_t integers = 0;
  for (const char type : model.column_type) integers += type == 'I' || type == 'B' || type == 'N';
  const std::int64_t sizes[] = {model.num_rows, model.num_cols, model.matrix.num_nonzeros(),
                                integers};
  for (std::size_t k = 0; k < listed.size(); ++k) {
    if (listed[k] == "?" || listed[k] == "-") continue;
    EXPECT_EQ(listed[k], std::to_string(sizes[k])) << "size " << k;
  }
}

/// Forgets all names, as writing with generic ones does.
void drop_names(Model& model) {
  for (NameStore* names :
       {&model.col_names, &model.row_names, &model.sos.names, &model.quadratic_names,
        &model.user_cuts.names, &model.lazy_constraints.names, &model.indicators.rows.names}) {
    names->clear();
  }
}

/// Every `parts`-th file of a folder, from the `part`-th on.
struct Chunk {
  const char* folder;
  std::size_t part = 0;
  std::size_t parts = 1;
};

/// The files of a folder by name.
std::vector<fs::path> sorted_files(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

class InstanceFiles : public ::testing::TestWithParam<Chunk> {
 protected:
  void round_trip(const std::string& instance, Model& model, Format format) {
    const std::string file = file_of(instance, format);
    SCOPED_TRACE(file);
    const std::string path = ::testing::TempDir() + "kelvo_instance_" + std::to_string(getpid());
    RecordingSink sink;
    ASSERT_TRUE(write(model, false, path, format, sink).ok());
    const bool renamed = contains(sink[Channel::warning], "Output names have been modified");
    if (renamed) {
      sink = RecordingSink();
      drop_names(model);
      ASSERT_TRUE(write(model, true, path, format, sink).ok());
    }
    std::string told = sink[Channel::warning];
    for (std::size_t at; (at = told.find("Default ")) != std::string::npos;) {
      told.erase(at, told.find('\n', at) + 1 - at);
    }
    EXPECT_EQ(told, "") << "something is lost";
    if (told.empty()) {
      Model back;
      RecordingSink reading;
      ASSERT_TRUE(read(path, format, reading, back).ok()) << reading[Channel::error];
      EXPECT_EQ(test::difference(Description(model, format), Description(back, format)), "");
      ++num_compared_;
    }
    std::remove(path.c_str());
  }

  int num_compared_ = 0;
};

TEST_P(InstanceFiles, ReadBackFromBothFormats) {
  const char* const folder = std::getenv("KELVO_BENCH_DATA");
  if (folder == nullptr) GTEST_SKIP() << "KELVO_BENCH_DATA is not set";
  const Chunk chunk = GetParam();
  const fs::path instances = fs::path(folder) / chunk.folder;
  if (!fs::is_directory(instances)) GTEST_SKIP() << "no folder " << instances;
  int refused = 0;
  const std::vector<fs::path> files = sorted_files(instances);
  for (std::size_t k = chunk.part; k < files.size(); k += chunk.parts) {
    const std::string path = files[k].string();
    const std::string name = files[k].filename().string();
    const Format format = contains(name, ".lp") ? Format::lp : Format::mps;
    SCOPED_TRACE(name);
    Model model;
    RecordingSink sink;
    if (!read(path, format, sink, model).ok()) {
      const auto known = kRefused.find(name);
      EXPECT_EQ(sink[Channel::error], known == kRefused.end() ? "" : known->second) << name;
      ++refused;
      continue;
    }
    EXPECT_FALSE(kRefused.contains(name));
    expect_listed_sizes(listed_sizes(folder, chunk.folder, name), model);
    round_trip(name, model, Format::lp);
    // Names may be gone now.
    Model again;
    ASSERT_TRUE(read(path, format, sink, again).ok());
    round_trip(name, again, Format::mps);
  }
  std::printf("%s: %d files read back, %d instances refused\n", chunk.folder, num_compared_,
              refused);
}

INSTANTIATE_TEST_SUITE_P(Long, InstanceFiles,
                         ::testing::Values(Chunk{"lp", 0, 4}, Chunk{"lp", 1, 4}, Chunk{"lp", 2, 4},
                                           Chunk{"lp", 3, 4}, Chunk{"lp-infeas"}, Chunk{"mip"},
                                           Chunk{"qp"}, Chunk{"lpformat"}),
                         [](const auto& chunk) {
                           std::string name = chunk.param.folder;
                           for (char& c : name) c = c == '-' ? '_' : c;
                           if (chunk.param.parts > 1) name += std::to_string(chunk.param.part + 1);
                           return name;
                         });

}  // namespace
}  // namespace kelvo
