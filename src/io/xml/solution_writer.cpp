#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "io/writer_names.h"
#include "io/xml/solution_file.h"
#include "io/xml/xml_writer.h"
#include "prob/data/constraint_values.h"
#include "prob/solution_quality.h"
#include "prob/status_table.h"

namespace kelvo {
namespace {

constexpr const char* kVersion = "1.2";
constexpr const char* kIncumbent = "incumbent";

/// Values up to this magnitude are zero for the write level.
constexpr double kZeroValue = std::numeric_limits<double>::epsilon();

const char* kind_text(int kind) {
  switch (kind) {
    case kBasicValues:
      return "basic";
    case kNonbasicValues:
      return "nonbasic";
    case kPrimalValues:
      return "primal";
    default:
      return "unknown";
  }
}

const char* method_text(int method) {
  switch (method) {
    case kMethodPrimal:
      return "primal";
    case kMethodDual:
      return "dual";
    case kMethodBarrier:
      return "barrier";
    case kMethodMip:
      return "mip";
    default:
      return "unknown";
  }
}

const char* status_text(int basis_status) {
  static constexpr const char* kTexts[] = {"LL", "BS", "UL", "SB"};
  return kTexts[basis_status];
}

WriteLevel resolved(WriteLevel level, bool start) {
  if (level != WriteLevel::automatic) return level;
  return start ? WriteLevel::discrete : WriteLevel::all;
}

bool is_written(const Model& model, int column, double value, WriteLevel level) {
  const bool discrete = !model.column_type.empty() && model.column_type[column] != 'C';
  const bool nonzero = std::fabs(value) > kZeroValue;
  switch (level) {
    case WriteLevel::discrete:
      return discrete;
    case WriteLevel::nonzero:
      return nonzero;
    case WriteLevel::nonzero_discrete:
      return discrete && nonzero;
    default:
      return true;
  }
}

/// Name and index by which a reader finds something again. A name that XML cannot carry is left
/// out, so that the index counts.
void put_identity(XmlWriter& xml, const NameStore& names, int index) {
  if (names.present() && is_xml_text(names.view(index))) xml.text("name", names.view(index));
  xml.integer("index", index);
}

void start_list(XmlWriter& xml, const char* element) {
  xml.start(element);
  xml.open();
}

void start_solution(XmlWriter& xml) {
  xml.start("KELVOSolution");
  xml.word("version", kVersion);
  xml.open();
}

void start_solutions(XmlWriter& xml) {
  xml.start("KELVOSolutions");
  xml.word("version", kVersion);
  xml.open();
}

class SolutionWriter {
 public:
  SolutionWriter(const Problem& problem, const WrittenSolution& solution, WriteLevel level,
                 XmlWriter& xml)
      : problem_(problem),
        model_(problem.model()),
        solution_(solution),
        integer_(is_mixed_integer(problem)),
        level_(level),
        xml_(xml) {
    if (integer_) {
      compute_row_activities(model_, solution.x, own_activity_);
      activity_ = own_activity_.data();
    } else {
      activity_ = problem.solution.activity.data();
    }
  }

  void write(const QualityTolerances& tolerances) {
    start_solution(xml_);
    write_header();
    write_quality(tolerances);
    write_rows();
    write_columns();
    write_other_constraints();
    xml_.close("KELVOSolution");
  }

 private:
  void write_header();
  void write_counts();
  void write_quality(const QualityTolerances& tolerances);
  void write_integer_quality(const QualityTolerances& tolerances);
  void write_simplex_quality(const QualityTolerances& tolerances);
  void write_barrier_quality(const QualityTolerances& tolerances);
  void write_rows();
  void write_columns();
  void write_other_constraints();
  /// A list of constraints of which the slacks alone are known.
  template <class Slack>
  void write_slacks(const char* list, const NameStore& names, int count, Slack slack);
  void figure(const char* name, double value) {
    if (!std::isnan(value)) xml_.number(name, value);
  }
  bool has_duals() const {
    return solution_.info.kind == kBasicValues || solution_.info.kind == kNonbasicValues;
  }
  const StoredBasis* basis() const {
    return solution_.info.kind == kBasicValues ? &problem_.basis : nullptr;
  }

  const Problem& problem_;
  const Model& model_;
  const WrittenSolution& solution_;
  const bool integer_;
  const WriteLevel level_;
  XmlWriter& xml_;
  Vector<double> own_activity_;
  const double* activity_;  // [rows]
};

void SolutionWriter::write_header() {
  xml_.start_with_lines("header");
  xml_.text("problemName", model_.name);
  if (solution_.name != nullptr) {
    xml_.text("solutionName", solution_.name);
    xml_.integer("solutionIndex", solution_.index);
  }
  xml_.number("objectiveValue", solution_.objective);
  const SolutionInfo& info = solution_.info;
  xml_.integer("solutionTypeValue", info.kind);
  xml_.word("solutionTypeString", kind_text(info.kind));
  xml_.integer("solutionStatusValue", solution_.status);
  const StatusText* const status = find_status_text(solution_.status);
  xml_.word("solutionStatusString", status != nullptr ? status->text : "unknown");
  xml_.word("solutionMethodString", method_text(info.method));
  xml_.integer("primalFeasible", info.primal_feasible ? 1 : 0);
  xml_.integer("dualFeasible", info.dual_feasible ? 1 : 0);
  write_counts();
  xml_.integer("writeLevel", static_cast<int>(level_));
  xml_.end_empty();
}

void SolutionWriter::write_counts() {
  const int method = solution_.info.method;
  if (integer_) {
    if (solution_.index >= 0) return;
    xml_.integer("MIPNodes", problem_.incumbent.nodes);
    xml_.integer("MIPIterations", problem_.incumbent.iterations);
    return;
  }
  const SolutionRecord& record = problem_.solution;
  if (method == kMethodPrimal || method == kMethodDual) {
    xml_.integer("simplexIterations", record.iterations);
  }
  if (record.barrier_iterations != 0 || method == kMethodBarrier) {
    xml_.integer("barrierIterations", record.barrier_iterations);
  }
}

void SolutionWriter::write_quality(const QualityTolerances& tolerances) {
  xml_.start_with_lines("quality");
  const int method = solution_.info.method;
  if (integer_) {
    write_integer_quality(tolerances);
  } else if (method == kMethodPrimal || method == kMethodDual) {
    write_simplex_quality(tolerances);
  } else if (method == kMethodBarrier) {
    write_barrier_quality(tolerances);
  }
  xml_.end_empty();
}

void SolutionWriter::write_integer_quality(const QualityTolerances& tolerances) {
  const PrimalQuality primal = primal_quality(model_, solution_.x, activity_);
  figure("epInt", tolerances.integrality);
  figure("epRHS", tolerances.feasibility);
  figure("maxIntInfeas", primal.integer_infeasibility);
  figure("maxPrimalInfeas", primal.infeasibility);
  figure("maxX", primal.x);
  figure("maxSlack", primal.slack);
  if (model_.quadratic_constraints.empty()) return;
  figure("maxQCSlackInfeas", primal.quadratic_infeasibility);
  figure("maxQCSlack", primal.quadratic_slack);
}

void SolutionWriter::write_simplex_quality(const QualityTolerances& tolerances) {
  const SolutionRecord& record = problem_.solution;
  const PrimalQuality primal = primal_quality(model_, solution_.x, activity_);
  figure("epRHS", tolerances.feasibility);
  figure("epOpt", tolerances.optimality);
  figure("maxPrimalInfeas", primal.infeasibility);
  if (!has_duals()) {
    figure("maxPrimalResidual", primal.residual);
    figure("maxX", primal.x);
    figure("maxSlack", primal.slack);
    return;
  }
  const DualQuality dual = dual_quality(model_, record, basis());
  figure("maxDualInfeas", dual.infeasibility);
  figure("maxPrimalResidual", primal.residual);
  figure("maxDualResidual", dual.residual);
  figure("maxX", primal.x);
  figure("maxPi", dual.pi);
  figure("maxSlack", primal.slack);
  figure("maxRedCost", dual.dj);
  if (record.condition > 0.0) figure("kappa", record.condition);
}

void SolutionWriter::write_barrier_quality(const QualityTolerances& tolerances) {
  const PrimalQuality primal = primal_quality(model_, solution_.x, activity_);
  figure("barEpComp", tolerances.complementarity);
  figure("maxPrimalInfeas", primal.infeasibility);
  figure("maxPrimalResidual", primal.residual);
  figure("maxX", primal.x);
  figure("maxSlack", primal.slack);
  if (!model_.quadratic_constraints.empty()) {
    figure("barQCPEpComp", tolerances.quadratic_complementarity);
    figure("maxQCSlackInfeas", primal.quadratic_infeasibility);
    figure("maxQCSlack", primal.quadratic_slack);
    return;
  }
  if (!has_duals()) return;
  const DualQuality dual = dual_quality(model_, problem_.solution, basis());
  figure("maxCompSlack", dual.complementarity);
  figure("objGap", dual.gap);
  figure("maxDualInfeas", dual.infeasibility);
  figure("maxDualResidual", dual.residual);
  figure("maxPi", dual.pi);
  figure("maxRedCost", dual.dj);
}

void SolutionWriter::write_rows() {
  start_list(xml_, "linearConstraints");
  for (int i = 0; i < model_.num_rows; ++i) {
    xml_.start("constraint");
    put_identity(xml_, model_.row_names, i);
    if (basis() != nullptr) xml_.word("status", status_text(basis()->row_status[i]));
    xml_.number("slack", row_slack(model_, i, activity_[i]));
    if (has_duals()) xml_.number("dual", problem_.solution.pi[i]);
    xml_.end_empty();
  }
  xml_.close("linearConstraints");
}

void SolutionWriter::write_columns() {
  start_list(xml_, "variables");
  for (int j = 0; j < model_.num_cols; ++j) {
    const double value = solution_.x[j];
    if (!is_written(model_, j, value, level_)) continue;
    xml_.start("variable");
    put_identity(xml_, model_.col_names, j);
    if (basis() != nullptr) xml_.word("status", status_text(basis()->col_status[j]));
    xml_.number("value", value);
    if (has_duals()) xml_.number("reducedCost", problem_.solution.dj[j]);
    xml_.end_empty();
  }
  xml_.close("variables");
}

template <class Slack>
void SolutionWriter::write_slacks(const char* list, const NameStore& names, int count,
                                  Slack slack) {
  if (count == 0) return;
  start_list(xml_, list);
  for (int k = 0; k < count; ++k) {
    xml_.start("constraint");
    put_identity(xml_, names, k);
    xml_.number("slack", slack(k));
    xml_.end_empty();
  }
  xml_.close(list);
}

void SolutionWriter::write_other_constraints() {
  const double* const x = solution_.x;
  const Vector<QuadraticConstraint>& quadratic = model_.quadratic_constraints;
  write_slacks("quadraticConstraints", model_.quadratic_names, static_cast<int>(quadratic.size()),
               [&](int k) { return quadratic[k].rhs - quadratic_activity(quadratic[k], x); });
  const IndicatorConstraints& indicators = model_.indicators;
  write_slacks("indicatorConstraints", indicators.rows.names, indicators.size(), [&](int k) {
    return indicators.rows.rhs[k] - indicator_activity(indicators, k, x);
  });
}

/// Writes one start; entry(p) gives the column and the value of entry p.
template <class Entry>
void put_start(XmlWriter& xml, const Model& model, std::string_view name, int index, int effort,
               WriteLevel level, int entries, Entry entry) {
  start_solution(xml);
  xml.start_with_lines("header");
  xml.text("problemName", model.name);
  xml.text("solutionName", name);
  xml.integer("solutionIndex", index);
  xml.integer("MIPStartEffortLevel", effort);
  xml.integer("writeLevel", static_cast<int>(level));
  xml.end_empty();
  start_list(xml, "variables");
  for (int p = 0; p < entries; ++p) {
    const auto [column, value] = entry(p);
    if (!is_written(model, column, value, level)) continue;
    xml.start("variable");
    put_identity(xml, model.col_names, column);
    xml.number("value", value);
    xml.end_empty();
  }
  xml.close("variables");
  xml.close("KELVOSolution");
}

}  // namespace

WrittenSolution stored_solution(const Problem& problem) {
  WrittenSolution solution;
  solution.status = problem.solution_status;
  solution.info = solution_info(problem);
  solution.x = primal_values(problem).data();
  if (is_mixed_integer(problem)) {
    solution.name = kIncumbent;
    solution.objective = problem.incumbent.objective;
  } else {
    solution.objective = problem.solution.objective;
  }
  return solution;
}

void write_solution(const Problem& problem, const WrittenSolution& solution, WriteLevel level,
                    const QualityTolerances& tolerances, FileStream& stream) {
  XmlWriter xml(stream);
  SolutionWriter(problem, solution, resolved(level, false), xml).write(tolerances);
  xml.finish();
}

void write_mip_starts(const Model& model, const MipStartSet& set, int first, int last,
                      WriteLevel level, FileStream& stream) {
  XmlWriter xml(stream);
  start_solutions(xml);
  for (int k = first; k <= last; ++k) {
    const MipStart& start = set.start[k];
    put_start(xml, model, start.name, k, start.effort, resolved(level, true), start.size(),
              [&](int p) { return std::pair(start.column[p], start.value[p]); });
  }
  xml.close("KELVOSolutions");
  xml.finish();
}

void write_mip_start(const Model& model, const WrittenSolution& solution, WriteLevel level,
                     FileStream& stream) {
  XmlWriter xml(stream);
  start_solutions(xml);
  put_start(xml, model, solution.name, solution.index, kEffortAutomatic, resolved(level, true),
            model.num_cols, [&](int j) { return std::pair(j, solution.x[j]); });
  xml.close("KELVOSolutions");
  xml.finish();
}

void write_plain_mip_start(const Model& model, const double* x, MessageSink& sink,
                           FileStream& stream) {
  constexpr int kNarrowestName = 18;
  constexpr int kDigits = 10;
  constexpr int kField = 20;
  constexpr double kNegligible = 1e-13;
  constexpr double kInfinite = 1e19;
  const WrittenNames names(model.col_names, model.num_cols, 'x', false);
  if (names.generated()) {
    sink.send(Channel::warning, "Default variable names x1, x2 ... to be created.\n");
  }
  stream.print("NAME          %.255s    MIP Start\n", model.name.c_str());
  for (int j = 0; j < model.num_cols; ++j) {
    char text[kNumberText] = "";
    const double magnitude = std::fabs(x[j]);
    if (magnitude < kInfinite) {
      const double value = magnitude < kNegligible ? 0.0 : x[j];
      *std::to_chars(text, text + sizeof text - 1, value, std::chars_format::general, kDigits).ptr =
          '\0';
    }
    const int width = text[0] != '\0' ? kField : 0;
    stream.print("    %-*.255s %*s\n", kNarrowestName, names[j], width, text);
  }
  stream.write("ENDATA\n");
}

}  // namespace kelvo
