#include "prob/status_table.h"

namespace kelvo {

namespace {

// Codes below 100 are results of the continuous optimizers and of the conflict refiner, those
// above of the mixed-integer optimizer. The row with code 0 ends the table.
constexpr StatusText kStatusTable[] = {
    {1, "optimal", "optimal"},
    {2, "unbounded", "unbounded"},
    {3, "infeasible", "infeasible"},
    {12, "objective limit exceeded", "obj limit exceeded"},
    {15, "optimal relaxed sum of infeasibilities", "opt sum of infeas"},
    {14, "feasible relaxed sum of infeasibilities", "feas sum of infeas"},
    {17, "optimal relaxed number of infeasibilities", "opt num of infeas"},
    {16, "feasible relaxed number of infeasibilities", "feas num of infeas"},
    {19, "optimal relaxed sum of squared infeasibilities", "opt sum of sqrinf"},
    {18, "feasible relaxed sum of squared infeasibilities", "feas sum of sqrinf"},
    {126, "feasopt aborted", "feasopt aborted"},
    {21, "primal objective limit exceeded", "prim olim exceeded"},
    {22, "dual objective limit exceeded", "dual olim exceeded"},
    {4, "unbounded or infeasible", "unbd or infeasible"},
    {5, "optimal with unscaled infeasibilities", "opt/unscaled inf."},
    {20, "optimal face unbounded", "opt face unbounded"},
    {6, "non-optimal", "non-optimal"},
    {10, "iteration limit exceeded", "iter lim exceeded"},
    {11, "time limit exceeded", "time lim exceeded"},
    {13, "user aborted", "user aborted"},
    {30, "conflict feasible", "conflict feasible"},
    {31, "minimal conflict", "minimal conflict"},
    {32, "non-minimal conflict", "non-min conflict"},
    {33, "conflict time limit exceeded", "conf timelim exc."},
    {34, "conflict iteration limit exceeded", "conf iterlim exc."},
    {35, "conflict node limit exceeded", "conf nodelim exc."},
    {36, "conflict objective limit exceeded", "conf objlim exc."},
    {37, "conflict memory limit exceeded", "conf memlim exc."},
    {38, "conflict user abort", "conf user abort"},
    {23, "feasible solution", "feasible solution"},
    {101, "integer optimal solution", "int optimal sol."},
    {102, "integer optimal, tolerance", "int optimal (tol)"},
    {103, "integer infeasible", "integer infeasible"},
    {104, "solution limit exceeded", "sol limit exceeded"},
    {105, "node limit exceeded", "node lim exc, feas"},
    {106, "node limit exceeded, no integer solution", "node lim, no sol"},
    {107, "time limit exceeded", "time lim exc, feas"},
    {108, "time limit exceeded, no integer solution", "time lim, no sol"},
    {109, "error termination", "error, feasible"},
    {110, "error termination, no integer solution", "error, no solution"},
    {111, "memory limit exceeded", "memory lim, feas"},
    {112, "memory limit exceeded, no integer solution", "memory lim, no sol"},
    {113, "aborted", "aborted, feasible"},
    {114, "aborted, no integer solution", "aborted, no sol"},
    {115, "integer optimal with unscaled infeasibilities", "opt, unscaled inf"},
    {116, "error termination", "error, feas, tree"},
    {117, "error termination, no integer solution, no tree", "error, no sol,tree"},
    {118, "integer unbounded", "integer unbounded"},
    {119, "integer infeasible or unbounded", "int inf or unbound"},
    {121, "optimal relaxed sum of infeasibilities", "opt sum of infeas"},
    {120, "feasible relaxed sum of infeasibilities", "feas sum of infeas"},
    {123, "optimal relaxed number of infeasibilities", "opt num of infeas"},
    {122, "feasible relaxed number of infeasibilities", "feas num of infeas"},
    {125, "optimal relaxed sum of squared infeasibilities", "opt sum of sqrinf"},
    {124, "feasible relaxed sum of squared infeasibilities", "feas sum of sqrinf"},
    {127, "integer feasible solution", "integer feasible"},
    {128, "populate solution limit exceeded", "populate sol limit exceeded"},
    {129, "all reachable solutions enumerated, integer optimal", "enum completed"},
    {130, "all reachable solutions enumerated, pool tolerance", "enum (tol) completed"},
    {131, "iteration limit exceeded", "iter lim exc, feas"},
    {132, "iteration limit exceeded, no integer solution", "iter limit, no sol"},
    {0, "end of statind table", "end of statind tbl"},
};

}  // namespace

const StatusText* find_status_text(int code) {
  const StatusText* row = kStatusTable;
  while (row->code != code && row->code != 0) ++row;
  return row->code == code ? row : nullptr;
}

}  // namespace kelvo
