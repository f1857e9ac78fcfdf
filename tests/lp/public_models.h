// Models of the data folder that KELVO_BENCH_DATA names, and solving one from scratch.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "base/file_stream.h"
#include "io/mps/mps_reader.h"
#include "lp/solve/driver.h"
#include "lp/solve/presolved_lp.h"

namespace kelvo::test {

/// The folder, or null when the variable is not set: then a test is skipped.
inline const char* data_folder() {
  return std::getenv("KELVO_BENCH_DATA");
}

inline Model read_model(const std::string& path) {
  Model model;
  FileStream stream;
  EXPECT_TRUE(open_input(path.c_str(), nullptr, stream).ok());
  LineReader lines(stream);
  SilentSink sink;
  EXPECT_TRUE(read_mps(lines, {}, sink, model).ok());
  return model;
}

/// From scratch and without presolve.
inline LpAnswer solve_as_it_stands(const Model& model, LpMethod method) {
  Owned<WorkingLp> working;
  SilentSink sink;
  NeverStop never;
  return solve_without_presolve(model, working, StoredBasis(), method, DriverSettings(),
                                {sink, never, nullptr});
}

/// From scratch and by way of presolve.
inline LpAnswer solve_presolved(const Model& model, LpMethod method) {
  Owned<WorkingLp> working;
  Owned<PresolvedLp> presolved;
  SilentSink sink;
  NeverStop never;
  return solve_lp(model, working, StoredBasis(), method, DriverSettings(), {sink, never, nullptr},
                  presolved);
}

}  // namespace kelvo::test
