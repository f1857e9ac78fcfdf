// Model files, and the dual of a linear problem as a file.
#include <cstdio>

#include "api/frame/basis_frame.h"
#include "api/frame/problem_frame.h"
#include "api/frame/text_file.h"
#include "io/dispatch.h"
#include "lp/form/dual_form.h"
#include "lp/solve/conversion.h"
#include "prob/model/default_names.h"

namespace kelvo {
namespace {

int write_as(KLVenv env, KLVprob lp, const char* filename, FileFormat format) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    return write_model_file(filename, format, environment.settings(), environment.messages(),
                            problem.model());
  });
}

/// The names of a kind, given or by default; the latter with a word on the warning channel.
NameStore names_of(const NameStore& given, NameKind kind, int count, const char* line,
                   MessageSink& sink) {
  if (given.present()) return given;
  if (count > 0) sink.send(Channel::warning, line);
  return default_names(kind, count);
}

/// Rows are named after the columns of the problem, columns after its rows. What a ranged row or a
/// column with two bounds needs beside has the name with an ending; the writer takes care of names
/// that are then given twice.
void name_dual(const Model& model, const DualForm& form, MessageSink& sink, Model& dual) {
  const NameStore columns = names_of(model.col_names, NameKind::column, model.num_cols,
                                     "Default row names x1, x2 ... being created.\n", sink);
  const NameStore rows = names_of(model.row_names, NameKind::row, model.num_rows,
                                  "Default variable names c1, c2 ... being created.\n", sink);
  dual.row_names.create();
  for (const int j : form.row_columns()) dual.row_names.append(columns.view(j));
  dual.col_names.create();
  for (const DualForm::ColumnOrigin& origin : form.columns()) {
    const bool of_row = origin.kind != DualForm::ColumnKind::column_bound;
    String name((of_row ? rows : columns).view(origin.line));
    if (origin.kind == DualForm::ColumnKind::row_upper) name += ".rg";
    if (origin.kind == DualForm::ColumnKind::column_bound) name += ".ub";
    dual.col_names.append(name);
  }
}

/// What stands in the NAME line.
String dual_name(const Model& model, double shift) {
  String name(model.name);
  name += ".dual";
  if (shift != 0.0) {
    char text[40];
    std::snprintf(text, sizeof(text), " (objshift = %18.10e)", shift);
    name += text;
  }
  return name;
}

Status write_dual(Environment& environment, Problem& problem, const char* filename,
                  double* objshift) {
  KELVO_TRY(check_file_name(filename));
  const Model& model = problem.model();
  const DualForm form(with_rows(make_lp(model)));
  Model dual = make_model(form.program(), 1);
  const double shift = form.program().offset;
  name_dual(model, form, environment.messages(), dual);
  dual.name = dual_name(model, shift);
  KELVO_TRY(write_model_file(filename, FileFormat::mps, environment.settings(),
                             environment.messages(), dual));
  if (objshift != nullptr) *objshift = shift;
  return Status();
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVreadcopyprob(KLVenv env, KLVprob lp, const char* filename, const char* filetype) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    if (filename == nullptr) return Status::failure(error::kNullPointer);
    Model model;
    KELVO_TRY(
        read_model_file(filename, filetype, environment.settings(), environment.messages(), model));
    problem.replace_model(std::move(model));
    return {};
  });
}

int KLVwriteprob(KLVenv env, KLVprob lp, const char* filename, const char* filetype) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_file_name(filename));
    FileFormat format = FileFormat::unknown;
    KELVO_TRY(output_format(filename, filetype, format));
    return write_model_file(filename, format, environment.settings(), environment.messages(),
                            problem.model());
  });
}

int KLVmpswrite(KLVenv env, KLVprob lp, const char* filename) {
  return write_as(env, lp, filename, FileFormat::mps);
}

int KLVmpsrewrite(KLVenv env, KLVprob lp, const char* filename) {
  return write_as(env, lp, filename, FileFormat::rewritten_mps);
}

int KLVlpwrite(KLVenv env, KLVprob lp, const char* filename) {
  return write_as(env, lp, filename, FileFormat::lp);
}

// No function of the library makes a conflict yet.
int KLVclpwrite(KLVenv env, KLVprob lp, const char* filename) {
  return api_read(env, lp, [&](Environment&, Problem&) -> Status {
    KELVO_TRY(check_file_name(filename));
    return Status::failure(error::kNoConflict);
  });
}

int KLVlprewrite(KLVenv env, KLVprob lp, const char* filename) {
  return write_as(env, lp, filename, FileFormat::rewritten_lp);
}

int KLVdualwrite(KLVenv env, KLVprob lp, const char* filename, double* objshift_p) {
  return on_linear(env, lp, [&](Environment& environment, Problem& problem) {
    return write_dual(environment, problem, filename, objshift_p);
  });
}
