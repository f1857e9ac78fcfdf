// Models of the data folder that KELVO_BENCH_DATA names, and solving one from scratch.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "base/file_stream.h"
#include "io/mps/mps_reader.h"
#include "lp/model_solver.h"

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
inline ModelAnswer solve_as_it_stands(const Model& model, LpMethod method) {
  ModelSolver solver;
  solver.settings.presolve.on = false;
  return solver.solve(model, method);
}

/// From scratch and by way of presolve.
inline ModelAnswer solve_presolved(const Model& model, LpMethod method) {
  return ModelSolver().solve(model, method);
}

}  // namespace kelvo::test
