#include "env/error_table.h"

#include <array>
#include <cstdarg>
#include <cstdio>

namespace kelvo {
namespace {

struct ErrorRow {
  int code;
  const char* message;
};

// clang-format off
constexpr ErrorRow kErrorTable[] = {
    // General, environment and parameters
    {1001, "Out of memory"},
    {1002, "No environment"},
    {1003, "Bad argument to Callable Library function"},
    {1004, "Null pointer for required data"},
    {1006, "Error during callback"},
    {1009, "No problem exists"},
    {1012, "Problem size limits too large"},
    {1013, "Bad parameter number to KELVO parameter routine"},
    {1014, "Parameter value too small"},
    {1015, "Parameter value too big"},
    {1017, "Not available for mixed-integer programs"},
    {1018, "Not available for quadratic programs"},
    {1019, "Cannot clone a cloned environment"},
    {1020, "Thread limit exceeded"},
    {1021, "Cannot close a child environment"},
    {1022, "Unknown problem type.  Problem not changed"},
    {1023, "Not a single problem"},
    {1024, "Not a MILP or fixed MILP"},
    {1026, "String parameter is too long"},
    {1027, "Decompression of unpresolved problem failed"},
    {1028, "Bad parameter name to KELVO parameter routine"},
    {1029, "Not a MIQP or fixed MIQP"},
    {1030, "Not a MIQCP or fixed MIQCP"},
    {1031, "Not available for quadratically constrained programs"},
    {1051, "No channel pointer supplied to message routine"},
    {1052, "No file pointer found for message routine"},
    {1053, "No function pointer found for message routine"},
    // Presolve
    {1101, "Presolve determines problem is infeasible or unbounded"},
    {1103, "No presolved problem created"},
    {1106, "Aborted during presolve"},
    {1107, "Not enough memory to build basis for original LP"},
    {1108, "Can't copy SOS info from original MIP"},
    {1109, "Can't copy priority order info from original MIP"},
    {1110, "Not enough memory to recover solution for original MIP"},
    {1111, "Not enough memory to compute solution to original QP"},
    {1112, "Not enough memory to build start for original LP"},
    {1114, "Could not load unpresolved basis for original LP"},
    {1115, "Failed to find basis in presolved LP"},
    {1117, "Presolve determines problem is infeasible"},
    {1118, "Presolve determines problem is unbounded"},
    {1119, "The feature is not available for solving dual formulation"},
    {1120, "Can't uncrush solution form"},
    {1121, "Can't crush solution form"},
    {1122, "Bad presolve parameter setting"},
    {1123, "Time limit exceeded during presolve"},
    // Problem data, indices and solutions
    {1200, "Index is outside range of valid values"},
    {1201, "Column index %d out of range"},
    {1203, "Row index %d out of range"},
    {1205, "%s: 'begin' value %d is less than %d"},
    {1206, "%s: 'end' value %d is greater than %d"},
    {1207, "Insufficient array length"},
    {1208, "Array length too long"},
    {1209, "Unable to create default names"},
    {1210, "Name not found"},
    {1211, "'rhs' has no coefficient in 'obj'"},
    {1212, "Constraint type unsupported by KLVfeasopt"},
    {1213, "ill defined piecewise linear function has discontinuity at anchor point"},
    {1215, "Illegal sense entry %d"},
    {1216, "No range values"},
    {1217, "No solution exists"},
    {1219, "No names exist"},
    {1221, "Only fixed variables are pivoted out"},
    {1222, "Duplicate entry"},
    {1223, "No barrier solution exists"},
    {1224, "Null pointer %d in name array"},
    {1225, "Numeric entry %d is not a double precison number (NAN)"},
    {1226, "Array entry %d not ascending"},
    {1227, "Count entry %d negative or larger than allowed"},
    {1228, "Count entry %d indicates overlapping entries"},
    {1229, "Illegal bound change indicator entry %d"},
    {1230, "Node index %d out of range"},
    {1231, "Arc index %d out of range"},
    {1232, "No dual solution exists"},
    {1233, "Numeric entry %d is larger than allowed maximum of %g"},
    {1234, "Failed to create parallel thread"},
    {1251, "Index must correspond to a basic variable"},
    {1252, "Optimal solution required"},
    {1253, "Invalid status entry %d for basis specification"},
    {1254, "Unbounded solution required"},
    {1255, "Incompatible with superbasis"},
    {1256, "Basis singular"},
    {1257, "Incorrect usage of pricing indicator"},
    {1258, "No LU factorization exists"},
    {1260, "Sensitivity analysis not available for current status"},
    {1261, "No basic solution exists"},
    {1262, "No basis exists"},
    {1263, "Strong branching aborted"},
    {1264, "No norms available"},
    {1265, "Dual unbounded solution required"},
    {1266, "Time limit exceeded in strong branching"},
    {1267, "Illegal pivot"},
    {1268, "Time limit exceeded in computing condition number"},
    {1292, "Invalid choice of optimization method"},
    // Reading files: parameter, MPS and general input
    {1421, "File name not specified"},
    {1422, "Could not open file '%s' for writing"},
    {1423, "Could not open file '%s' for reading"},
    {1424, "Invalid filetype"},
    {1425, "XML parsing error at line %d: %s"},
    {1431, "Too many rows"},
    {1432, "Too many columns"},
    {1433, "Too many coefficients"},
    {1434, "Line %d: Couldn't convert '%s' to a number"},
    {1435, "Line %d: Exponent '%s' out of range"},
    {1436, "Max or Min missing"},
    {1437, "Line %d: Illegal quadratic constraint sense"},
    {1438, "Line %d: Illegal lazy constraint or user cut"},
    {1439, "Line %d: Illegal indicator constraint"},
    {1441, "Line %d: No NAME section"},
    {1442, "Line %d: Unrecognized SOS type: %c%c"},
    {1443, "Column '%.255s' has repeated row '%.255s'"},
    {1444, "%s '%.255s' has repeated row '%.255s'"},
    {1445, "Row '%.255s' repeats"},
    {1446, "Column '%.255s' repeats"},
    {1447, "Line %d: %.255s '%.255s' repeats"},
    {1448, "Line %d: '%.255s' is not a row name"},
    {1449, "Line %d: '%.255s' is not a column name"},
    {1453, "Line %d: No row sense"},
    {1454, "Line %d: 'FX' bound type illegal when prior bound given"},
    {1455, "Line %d: 'FR' bound type illegal when prior bound given"},
    {1456, "Line %d: 'BV' bound type illegal when prior bound given"},
    {1457, "Line %d: Unrecognized bound type '%s'"},
    {1458, "Line %d: Repeated upper bound"},
    {1459, "Line %d: Repeated lower bound"},
    {1460, "Line %d: Bound type missing"},
    {1461, "Line %d: No QMATRIX section"},
    {1462, "Line %d: Unrecognized section indicator.\n      Expecting ENDATA"},
    {1463, "Line %d: Magnitude exceeds integer limit %d"},
    {1464, "Line %d: Identifier/name too long to process"},
    {1465, "Line %d: Line longer than limit of %d characters"},
    {1471, "Line %d: No ROWS section"},
    {1472, "Line %d: No COLUMNS section"},
    {1473, "Line %d: Unrecognized section indicator.\n      Expecting RANGES, BOUNDS, SOS, QMATRIX, or ENDATA"},
    {1474, "Line %d: 'RANGES' section out of order"},
    {1475, "Line %d: Unrecognized section indicator.\n      Expecting QMATRIX or ENDATA"},
    {1476, "Line %d: No objective row found"},
    {1477, "%d Row repeats messages not printed"},
    {1478, "%d Column repeats messages not printed"},
    {1479, "Line %d: %.255s %.255s repeats"},
    {1480, "Line %d: 'INTORG' found while reading integers"},
    {1481, "Line %d: 'INTEND' found while not reading integers"},
    {1482, "Line %d: 'SOSORG' found while reading a SOS"},
    {1483, "Line %d: 'SOSEND' found while not reading a SOS"},
    {1484, "Too many rim vectors"},
    {1485, "Too many rim nonzeros"},
    {1486, "Line %d: No row name"},
    {1487, "Line %d: Unrecognized objective sense '%s'"},
    // Reading files: network, basis, SAV and vector files
    {1530, "Inconsistent network file"},
    {1531, "Not a min-cost flow problem"},
    {1532, "Incorrect row identifier"},
    {1537, "Bad character encountered near line %d - aborting read"},
    {1538, "Unexpected end of network file"},
    {1550, "Basis missing some basic values"},
    {1551, "Line %d: Unrecognized basis indicator '%.255s'"},
    {1552, "'ENDATA' missing"},
    {1553, "Line %d: Wrong number of entries"},
    {1554, "Superbases are not allowed"},
    {1555, "%d %.255s basic variable(s)"},
    {1556, "Vector solution does not exist"},
    {1560, "File '%s' is not a SAV file"},
    {1561, "Not enough data in SAV file"},
    {1562, "Unable to write SAV file to disk"},
    {1563, "File '%s' has an incompatible format"},
    // LP format
    {1602, "Lines %d,%d: Adjacent signs"},
    {1603, "Line %d: RHS sense in objective"},
    {1604, "Lines %d,%d: Adjacent sign and sense"},
    {1605, "Line %d: Illegal quadratic term in a constraint"},
    {1606, "Lines %d,%d: Adjacent sign and quadratic character"},
    {1607, "Line %d: Expected '+' or '-', found '%c'"},
    {1608, "Line %d: Expected '+','-' or sense, found '%c'"},
    {1609, "Line %d: Expected identifier first"},
    {1610, "Line %d: Expected RHS coefficient"},
    {1611, "Line %d: Expected number first"},
    {1612, "Line %d: Expected quadratic exponent"},
    {1613, "Line %d: Quadratic exponent must be 2"},
    {1614, "Line %d: Expected '^' or '*'"},
    {1615, "Line %d: Expected number, found '%c'"},
    {1616, "Line %d: Expected identifier, found '%c'"},
    {1617, "Line %d: '%.255s' not valid identifier"},
    {1618, "Line %d: Exponent '%s' not %s with number"},
    {1619, "Line %d: Missing or incorrect divisor for Q terms"},
    {1621, "Line %d: No bound sense"},
    {1622, "Line %d: Invalid bound sense"},
    {1623, "Line %d: Missing bound number"},
    {1627, "Line %d: Expected ':', found '%c'"},
    {1650, "Number not representable in exponential notation"},
    {1660, "Line %d:  Not enough entries"},
    {1661, "Line %d:  Missing or invalid header"},
    // Infeasibility analysis and variability estimation
    {1701, "No IIS information exists"},
    {1702, "No solution exists; infeasibility analysis not available"},
    {1703, "Problem is feasible; no IIS available"},
    {1704, "Problem may be feasible; no IIS available"},
    {1705, "Problem optimal with unscaled infeasibilities.\n      No IIS available"},
    {1706, "Unable to compute an IIS"},
    {1707, "Infeasibility Finder requires a basic solution"},
    {1709, "Failed to load IIS subproblem"},
    {1710, "Objective limit exceeded on IIS subproblem"},
    {1711, "Iteration limit exceeded on IIS subproblem"},
    {1712, "Time limit exceeded on IIS subproblem"},
    {1713, "Unable to optimize IIS subproblem"},
    {1719, "Conflict is not available"},
    {1720, "Conflict detection could not reproduce previously found infeasibility"},
    {1750, "Problem solving test model for performance variability estimator"},
    // Callbacks, temporary files and parameter compatibility
    {1801, "Could not open temporary file"},
    {1802, "Failure on temporary file read"},
    {1803, "Failure on temporary file write"},
    {1804, "Calling routines from info callback"},
    {1805, "MIP dynamic search interferes with control callbacks"},
    {1806, "Problem is not member of this environment"},
    {1807, "Incompatible parameters"},
    // Robust optimization
    {2057, "KLVrobustopt problems contain inconsistent data"},
    // Mixed-integer
    {3003, "Not a mixed-integer problem"},
    {3006, "Negative priority entry %d"},
    {3007, "Illegal direction entry %d"},
    {3009, "Illegal sostype entry %d"},
    {3010, "Set does not have unique weights"},
    {3012, "Line %d: Unrecognized direction '%c%c'"},
    {3015, "No user-defined SOSs exist"},
    {3016, "No priority order exists"},
    {3018, "Magnitude of variable %.255s: %g exceeds\n      integer limit %d"},
    {3019, "Failure to solve MIP subproblem"},
    {3020, "No MIP start exists"},
    {3021, "Illegal ctype entry %d"},
    {3023, "Integer feasible solution values are unavailable"},
    {3024, "No solution pool exists"},
    {3301, "Line %d: Missing SOS type"},
    {3412, "Current problem has no tree"},
    {3413, "Tree memory limit exceeded"},
    {3414, "Diversity filter has non-binary variable"},
    {3504, "No callback info on disk/compressed nodes"},
    {3601, "Could not initialize mutex"},
    {3603, "Could not create thread"},
    // Barrier
    {4005, "Bad permutation vector from external ordering algorithm"},
    // Quadratic
    {5002, "Q in %s is not positive semi-definite"},
    {5004, "Not a quadratic program"},
    {5011, "Duplicate entry in '%.255s' for pair '%.255s' and '%.255s'"},
    {5012, "Q in %s is not symmetric"},
    {5014, "Q in objective is not indefinite"},
    // Network
    {6002, "Sense must be 'L' or 'G'"},

    {0, "End of error table"},
};
// clang-format on

constexpr int kSlots = 479;
constexpr int kStepBase = 477;
constexpr int kHighestCode = 99999;

constexpr int first_slot(int code) {
  return code % kSlots;
}

constexpr int next_slot(int slot, int code) {
  return (slot + kStepBase - code % kStepBase) % kSlots;
}

/// Row of the table in each slot, -1 when empty.
constexpr std::array<short, kSlots> kErrorIndex = [] {
  std::array<short, kSlots> index{};
  index.fill(-1);
  for (short row = 0; kErrorTable[row].code != 0; ++row) {
    const int code = kErrorTable[row].code;
    int slot = first_slot(code);
    while (index[slot] >= 0) slot = next_slot(slot, code);
    index[slot] = row;
  }
  return index;
}();

}  // namespace

const char* error_message(int code) noexcept {
  if (code < 1 || code > kHighestCode) return nullptr;
  for (int slot = first_slot(code); kErrorIndex[slot] >= 0; slot = next_slot(slot, code)) {
    const ErrorRow& row = kErrorTable[kErrorIndex[slot]];
    if (row.code == code) return row.message;
  }
  return nullptr;
}

bool error_line(int code, char* buffer) noexcept {
  if (code < 1 || code > kHighestCode) return false;
  const char* message = error_message(code);
  std::snprintf(buffer, kMessageSize, "KELVO Error %5d: %s.\n", code,
                message != nullptr ? message : "Unknown error code");
  return message != nullptr;
}

Status report_error(MessageSink& sink, int code, ...) {
  char format[kMessageSize];
  char text[kMessageSize];
  if (error_line(code, format)) {
    va_list arguments;
    va_start(arguments, code);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
  } else {
    std::snprintf(text, sizeof text, "Unknown error code %d.\n", code);
  }
  sink.send(Channel::error, text);
  return Status::reported(code);
}

}  // namespace kelvo
