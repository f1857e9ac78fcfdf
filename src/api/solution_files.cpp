// Solution files and MIP-start files.
#include <algorithm>
#include <cmath>
#include <utility>

#include "api/frame/problem_frame.h"
#include "api/frame/text_file.h"
#include "env/params/param_numbers.h"
#include "io/xml/solution_file.h"
#include "lp/solve/conversion.h"
#include "prob/solution_access.h"

namespace kelvo {
namespace {

WriteLevel write_level(const Environment& environment) {
  return static_cast<WriteLevel>(environment.get_int(param::WRITELEVEL));
}

Status check_mixed_integer(const Problem& problem) {
  return is_mixed_integer(problem) ? Status() : Status::failure(error::kNotMixedInteger);
}

/// A member of the solution pool. Problems have no pool yet, so only -1, the incumbent, exists.
Status check_pool_member(const Problem& problem, int soln) {
  constexpr int kIncumbent = -1;
  if (!is_mixed_integer(problem) || soln != kIncumbent) {
    return Status::failure(error::kNoSolutionPool);
  }
  return check_values(problem, Needs::primal);
}

Status write_stored_solution(Environment& environment, const Problem& problem,
                             const char* filename) {
  KELVO_TRY(check_file_name(filename));
  QualityTolerances tolerances;
  tolerances.integrality = environment.get_double(param::EPINT);
  tolerances.feasibility = environment.get_double(param::EPRHS);
  tolerances.optimality = environment.get_double(param::EPOPT);
  return write_text_file(filename, environment.messages(), [&](FileStream& stream) {
    write_solution(problem, stored_solution(problem), write_level(environment), tolerances, stream);
  });
}

Status write_incumbent_as_start(Environment& environment, const Problem& problem,
                                const char* filename) {
  KELVO_TRY(check_file_name(filename));
  return write_text_file(filename, environment.messages(), [&](FileStream& stream) {
    write_mip_start(problem.model(), stored_solution(problem), write_level(environment), stream);
  });
}

/// The older form, a line for each column.
Status write_plain_start(Environment& environment, const Problem& problem, const char* filename) {
  if (!problem.incumbent.present) return Status::failure(error::kNoMipStart);
  KELVO_TRY(check_values(problem, Needs::primal));
  KELVO_TRY(check_file_name(filename));
  MessageSink& sink = environment.messages();
  return write_text_file(filename, sink, [&](FileStream& stream) {
    write_plain_mip_start(problem.model(), problem.incumbent.x.data(), sink, stream);
  });
}

/// The values [count] of a list whose columns may be missing: the missing ones are where a nonbasic
/// column would be.
Vector<double> all_values(const Model& model, const MipStart& start) {
  Vector<double> x(model.num_cols);
  for (int j = 0; j < model.num_cols; ++j) {
    const double lower = std::max(model.lower[j], -kInfiniteBound);
    const double upper = std::min(model.upper[j], kInfiniteBound);
    x[j] = std::min(std::max(lower, 0.0), upper);
  }
  for (int p = 0; p < start.size(); ++p) x[start.column[p]] = start.value[p];
  return x;
}

bool all_given(const Vector<double>& values) {
  return std::none_of(values.begin(), values.end(), [](double value) { return std::isnan(value); });
}

/// The start of a continuous problem that a solution makes: its basis, or the one that its values
/// determine. Lists with gaps are not used, but for the values of columns.
StoredBasis start_basis(const Model& model, ReadSolution& read, bool with_basis, double tolerance) {
  const Vector<double> x = all_values(model, read.start);
  StoredBasis basis;
  if (with_basis) {
    basis.present = true;
    basis.col_status.swap(read.col_status);
    basis.row_status.swap(read.row_status);
    basis.x = x;
    return basis;
  }
  StartValues values;
  if (read.start.size() > 0) values.x = x.data();
  const bool complete = read.start.size() == model.num_cols;
  if (complete && all_given(read.slack)) values.slack = read.slack.data();
  if (all_given(read.reduced_cost)) values.dj = read.reduced_cost.data();
  if (all_given(read.dual)) values.pi = read.dual.data();
  return basis_from_values(model, values, tolerance);
}

/// Tells what becomes of a basis in the file; true when it is to be loaded.
bool takes_basis(Environment& environment, const ReadSolution& read) {
  if (!read.has_basis()) return false;
  MessageSink& sink = environment.messages();
  if (environment.get_int(param::ADVIND) != 0) {
    sink.send(Channel::warning, "Warning:  File contains basis.  Basis is loaded.\n");
    return true;
  }
  sink.send(Channel::warning, "Warning:  File contains basis.  Basis not loaded.\n");
  sink.send(Channel::warning, "Warning:  Advanced indicator is not set.\n");
  return false;
}

Status load_solution(Environment& environment, Problem& problem, ReadSolution& read) {
  const bool with_basis = takes_basis(environment, read);
  const bool mixed_integer = is_mixed_integer(problem);
  if (read.start.size() == 0 && !with_basis) {
    environment.messages().send(Channel::warning,
                                mixed_integer
                                    ? "Warning: no MIP start values read, no MIP start loaded.\n"
                                    : "Warning: no values read, no start loaded.\n");
    return Status();
  }
  if (!mixed_integer) {
    problem.store_start_basis(
        start_basis(problem.model(), read, with_basis, environment.get_double(param::EPRHS)));
    return Status();
  }
  StoredBasis basis;
  if (with_basis) basis = start_basis(problem.model(), read, true, 0.0);
  if (read.start.size() > 0) {
    Vector<MipStart> starts;
    starts.push_back(std::move(read.start));
    problem.mip_starts.append(std::move(starts));
  }
  if (with_basis) problem.store_start_basis(std::move(basis));
  return Status();
}

int read_starts_file(KLVenv env, KLVprob lp, const char* filename) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_file_name(filename));
    KELVO_TRY(check_mixed_integer(problem));
    problem.merge_pending();
    MessageSink& sink = environment.messages();
    Vector<MipStart> starts;
    KELVO_TRY(read_file(filename, ".mst", sink, [&](FileStream& stream) {
      return read_mip_starts(stream, problem.model(), sink, starts);
    }));
    if (starts.empty()) {
      sink.send(Channel::warning, "Warning: no MIP start values read, no MIP start loaded.\n");
    }
    problem.mip_starts.append(std::move(starts));
    return Status();
  });
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVsolwrite(KLVenv env, KLVprob lp, const char* filename) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_values(problem, Needs::primal));
    return write_stored_solution(environment, problem, filename);
  });
}

int KLVsolwritesolnpool(KLVenv env, KLVprob lp, int soln, const char* filename) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_pool_member(problem, soln));
    return write_stored_solution(environment, problem, filename);
  });
}

int KLVsolwritesolnpoolall(KLVenv env, KLVprob lp, const char* filename) {
  return api_read(env, lp, [&](Environment&, Problem&) -> Status {
    KELVO_TRY(check_file_name(filename));
    return Status::failure(error::kNoSolutionPool);
  });
}

int KLVmstwrite(KLVenv env, KLVprob lp, const char* filename) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_mixed_integer(problem));
    if (environment.get_int(param::XML_MIP_STARTS) == 0) {
      return write_plain_start(environment, problem, filename);
    }
    KELVO_TRY(check_values(problem, Needs::primal));
    return write_incumbent_as_start(environment, problem, filename);
  });
}

int KLVmstwritesolnpool(KLVenv env, KLVprob lp, int soln, const char* filename) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_mixed_integer(problem));
    KELVO_TRY(check_pool_member(problem, soln));
    return write_incumbent_as_start(environment, problem, filename);
  });
}

int KLVmstwritesolnpoolall(KLVenv env, KLVprob lp, const char* filename) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_mixed_integer(problem));
    KELVO_TRY(check_file_name(filename));
    return Status::failure(error::kNoSolutionPool);
  });
}

int KLVwritemipstarts(KLVenv env, KLVprob lp, const char* filename, int begin, int end) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_mixed_integer(problem));
    const MipStartSet& set = problem.mip_starts;
    if (set.size() == 0) return Status::failure(error::kNoMipStart);
    KELVO_TRY(check_index_range(environment, "KLVwritemipstarts", begin, end, 0, set.size()));
    KELVO_TRY(check_file_name(filename));
    return write_text_file(filename, environment.messages(), [&](FileStream& stream) {
      write_mip_starts(problem.model(), set, begin, end, write_level(environment), stream);
    });
  });
}

int KLVreadcopysol(KLVenv env, KLVprob lp, const char* filename) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_file_name(filename));
    if (!is_mixed_integer(problem) && problem.num_quadratic_constraints() > 0) {
      return Status::failure(error::kNotForQuadraticConstraints);
    }
    problem.merge_pending();
    MessageSink& sink = environment.messages();
    ReadSolution read;
    KELVO_TRY(read_file(filename, ".sol", sink, [&](FileStream& stream) {
      return read_solution(stream, problem.model(), sink, read);
    }));
    return load_solution(environment, problem, read);
  });
}

int KLVreadcopymipstart(KLVenv env, KLVprob lp, const char* filename) {
  return read_starts_file(env, lp, filename);
}

int KLVreadcopymipstarts(KLVenv env, KLVprob lp, const char* filename) {
  return read_starts_file(env, lp, filename);
}
