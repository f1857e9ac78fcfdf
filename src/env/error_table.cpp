#include "env/error_table.h"

#include <array>
#include <cstdarg>
#include <cstdio>

#include "base/error_code.h"

namespace kelvo {
namespace {

struct ErrorRow {
  int code;
  const char* message;
};

// clang-format off
constexpr ErrorRow kErrorTable[] = {
    // General, environment and parameters
    {error::kOutOfMemory, "Out of memory"},
    {error::kNoEnvironment, "No environment"},
    {error::kBadArgument, "Bad argument to Callable Library function"},
    {error::kNullPointer, "Null pointer for required data"},
    {error::kCallbackFailed, "Error during callback"},
    {error::kNoProblem, "No problem exists"},
    {error::kProblemSizeLimits, "Problem size limits too large"},
    {error::kBadParameterNumber, "Bad parameter number to KELVO parameter routine"},
    {error::kParameterTooSmall, "Parameter value too small"},
    {error::kParameterTooBig, "Parameter value too big"},
    {error::kNotForMixedInteger, "Not available for mixed-integer programs"},
    {error::kNotForQuadratic, "Not available for quadratic programs"},
    {error::kChildOfChild, "Cannot clone a cloned environment"},
    {error::kThreadLimit, "Thread limit exceeded"},
    {error::kCloseOfChild, "Cannot close a child environment"},
    {error::kUnknownProblemType, "Unknown problem type.  Problem not changed"},
    {error::kNotSingleProblem, "Not a single problem"},
    {error::kNotMilp, "Not a MILP or fixed MILP"},
    {error::kTextParameterTooLong, "String parameter is too long"},
    {error::kPostsolveFailed, "Decompression of unpresolved problem failed"},
    {error::kBadParameterName, "Bad parameter name to KELVO parameter routine"},
    {error::kNotMiqp, "Not a MIQP or fixed MIQP"},
    {error::kNotMiqcp, "Not a MIQCP or fixed MIQCP"},
    {error::kNotForQuadraticConstraints, "Not available for quadratically constrained programs"},
    {error::kNoChannel, "No channel pointer supplied to message routine"},
    {error::kNoFileDestination, "No file pointer found for message routine"},
    {error::kNoFunctionDestination, "No function pointer found for message routine"},
    // Presolve
    {error::kPresolveInfeasibleOrUnbounded, "Presolve determines problem is infeasible or unbounded"},
    {error::kNoPresolved, "No presolved problem created"},
    {error::kPresolveAborted, "Aborted during presolve"},
    {error::kNoMemoryForBasis, "Not enough memory to build basis for original LP"},
    {error::kCannotCopySets, "Can't copy SOS info from original MIP"},
    {error::kCannotCopyOrder, "Can't copy priority order info from original MIP"},
    {error::kNoMemoryForMipSolution, "Not enough memory to recover solution for original MIP"},
    {error::kNoMemoryForQpSolution, "Not enough memory to compute solution to original QP"},
    {error::kNoMemoryForStart, "Not enough memory to build start for original LP"},
    {error::kCannotLoadBasis, "Could not load unpresolved basis for original LP"},
    {error::kNoPresolvedBasis, "Failed to find basis in presolved LP"},
    {error::kPresolveInfeasible, "Presolve determines problem is infeasible"},
    {error::kPresolveUnbounded, "Presolve determines problem is unbounded"},
    {error::kNotForDualForm, "The feature is not available for solving dual formulation"},
    {error::kCannotUncrush, "Can't uncrush solution form"},
    {error::kCannotCrush, "Can't crush solution form"},
    {error::kBadPresolveSetting, "Bad presolve parameter setting"},
    {error::kPresolveTimeLimit, "Time limit exceeded during presolve"},
    // Problem data, indices and solutions
    {error::kIndexRange, "Index is outside range of valid values"},
    {error::kColumnIndex, "Column index %d out of range"},
    {error::kRowIndex, "Row index %d out of range"},
    {error::kBeginTooSmall, "%s: 'begin' value %d is less than %d"},
    {error::kEndTooBig, "%s: 'end' value %d is greater than %d"},
    {error::kInsufficientLength, "Insufficient array length"},
    {error::kArrayTooLong, "Array length too long"},
    {error::kNoDefaultNames, "Unable to create default names"},
    {error::kNameNotFound, "Name not found"},
    {error::kObjectiveHasNoRhs, "'rhs' has no coefficient in 'obj'"},
    {error::kNotForFeasopt, "Constraint type unsupported by KLVfeasopt"},
    {error::kDiscontinuousPiecewise, "ill defined piecewise linear function has discontinuity at anchor point"},
    {error::kSenseEntry, "Illegal sense entry %d"},
    {error::kNoRanges, "No range values"},
    {error::kNoSolution, "No solution exists"},
    {error::kNoNames, "No names exist"},
    {error::kNotFixed, "Only fixed variables are pivoted out"},
    {error::kDuplicateEntry, "Duplicate entry"},
    {error::kNoBarrierSolution, "No barrier solution exists"},
    {error::kNullName, "Null pointer %d in name array"},
    {error::kNotANumberEntry, "Numeric entry %d is not a double precison number (NAN)"},
    {error::kNotAscending, "Array entry %d not ascending"},
    {error::kCountEntry, "Count entry %d negative or larger than allowed"},
    {error::kOverlappingEntries, "Count entry %d indicates overlapping entries"},
    {error::kBoundCodeEntry, "Illegal bound change indicator entry %d"},
    {error::kNodeIndex, "Node index %d out of range"},
    {error::kArcIndex, "Arc index %d out of range"},
    {error::kNoDualSolution, "No dual solution exists"},
    {error::kEntryTooLarge, "Numeric entry %d is larger than allowed maximum of %g"},
    {error::kCannotStartParallelThread, "Failed to create parallel thread"},
    {error::kNotBasic, "Index must correspond to a basic variable"},
    {error::kOptimalRequired, "Optimal solution required"},
    {error::kBasisStatusEntry, "Invalid status entry %d for basis specification"},
    {error::kUnboundedRequired, "Unbounded solution required"},
    {error::kNotForSuperbasis, "Incompatible with superbasis"},
    {error::kBasisSingular, "Basis singular"},
    {error::kBadPricing, "Incorrect usage of pricing indicator"},
    {error::kNoFactor, "No LU factorization exists"},
    {error::kNoSensitivity, "Sensitivity analysis not available for current status"},
    {error::kNoBasicSolution, "No basic solution exists"},
    {error::kNoBasis, "No basis exists"},
    {error::kStrongBranchingAborted, "Strong branching aborted"},
    {error::kNoNorms, "No norms available"},
    {error::kDualUnboundedRequired, "Dual unbounded solution required"},
    {error::kStrongBranchingTimeLimit, "Time limit exceeded in strong branching"},
    {error::kIllegalPivot, "Illegal pivot"},
    {error::kConditionTimeLimit, "Time limit exceeded in computing condition number"},
    {error::kBadMethodChoice, "Invalid choice of optimization method"},
    // Reading files: parameter, MPS and general input
    {error::kNoFileName, "File name not specified"},
    {error::kCannotWriteFile, "Could not open file '%s' for writing"},
    {error::kCannotReadFile, "Could not open file '%s' for reading"},
    {error::kBadFileType, "Invalid filetype"},
    {error::kXmlSyntax, "XML parsing error at line %d: %s"},
    {error::kTooManyRows, "Too many rows"},
    {error::kTooManyColumns, "Too many columns"},
    {error::kTooManyCoefficients, "Too many coefficients"},
    {error::kNotANumber, "Line %d: Couldn't convert '%s' to a number"},
    {error::kExponentOutOfRange, "Line %d: Exponent '%s' out of range"},
    {error::kNoObjectiveSense, "Max or Min missing"},
    {error::kQuadraticConstraintSense, "Line %d: Illegal quadratic constraint sense"},
    {error::kIllegalCut, "Line %d: Illegal lazy constraint or user cut"},
    {error::kIllegalIndicator, "Line %d: Illegal indicator constraint"},
    {error::kNoNameSection, "Line %d: No NAME section"},
    {error::kUnknownSetType, "Line %d: Unrecognized SOS type: %c%c"},
    {error::kColumnRepeatsRow, "Column '%.255s' has repeated row '%.255s'"},
    {error::kSetRepeatsRow, "%s '%.255s' has repeated row '%.255s'"},
    {error::kRowRepeats, "Row '%.255s' repeats"},
    {error::kColumnRepeats, "Column '%.255s' repeats"},
    {error::kNameRepeats, "Line %d: %.255s '%.255s' repeats"},
    {error::kNotARow, "Line %d: '%.255s' is not a row name"},
    {error::kNotAColumn, "Line %d: '%.255s' is not a column name"},
    {error::kNoRowSense, "Line %d: No row sense"},
    {error::kFixedAfterBound, "Line %d: 'FX' bound type illegal when prior bound given"},
    {error::kFreeAfterBound, "Line %d: 'FR' bound type illegal when prior bound given"},
    {error::kBinaryAfterBound, "Line %d: 'BV' bound type illegal when prior bound given"},
    {error::kUnknownBoundType, "Line %d: Unrecognized bound type '%s'"},
    {error::kUpperBoundRepeats, "Line %d: Repeated upper bound"},
    {error::kLowerBoundRepeats, "Line %d: Repeated lower bound"},
    {error::kNoBoundType, "Line %d: Bound type missing"},
    {error::kNoQuadraticSection, "Line %d: No QMATRIX section"},
    {error::kExpectingEnd, "Line %d: Unrecognized section indicator.\n      Expecting ENDATA"},
    {error::kBeyondIntegerLimit, "Line %d: Magnitude exceeds integer limit %d"},
    {error::kNameTooLong, "Line %d: Identifier/name too long to process"},
    {error::kLineTooLong, "Line %d: Line longer than limit of %d characters"},
    {error::kNoRowsSection, "Line %d: No ROWS section"},
    {error::kNoColumnsSection, "Line %d: No COLUMNS section"},
    {error::kExpectingRanges, "Line %d: Unrecognized section indicator.\n      Expecting RANGES, BOUNDS, SOS, QMATRIX, or ENDATA"},
    {error::kRangesOutOfOrder, "Line %d: 'RANGES' section out of order"},
    {error::kExpectingQuadraticSection, "Line %d: Unrecognized section indicator.\n      Expecting QMATRIX or ENDATA"},
    {error::kNoObjectiveRow, "Line %d: No objective row found"},
    {error::kRowRepeatsNotPrinted, "%d Row repeats messages not printed"},
    {error::kColumnRepeatsNotPrinted, "%d Column repeats messages not printed"},
    {error::kEntryRepeats, "Line %d: %.255s %.255s repeats"},
    {error::kIntegersBeginTwice, "Line %d: 'INTORG' found while reading integers"},
    {error::kIntegersEndWithoutBegin, "Line %d: 'INTEND' found while not reading integers"},
    {error::kSetBeginsTwice, "Line %d: 'SOSORG' found while reading a SOS"},
    {error::kSetEndsWithoutBegin, "Line %d: 'SOSEND' found while not reading a SOS"},
    {error::kTooManyRimVectors, "Too many rim vectors"},
    {error::kTooManyRimNonzeros, "Too many rim nonzeros"},
    {error::kNoRowName, "Line %d: No row name"},
    {error::kUnknownObjectiveSense, "Line %d: Unrecognized objective sense '%s'"},
    // Reading files: network, basis, SAV and vector files
    {error::kInconsistentNetwork, "Inconsistent network file"},
    {error::kNotANetworkProblem, "Not a min-cost flow problem"},
    {error::kBadRowIdentifier, "Incorrect row identifier"},
    {error::kBadCharacter, "Bad character encountered near line %d - aborting read"},
    {error::kNetworkFileEnds, "Unexpected end of network file"},
    {error::kTooFewBasicVariables, "Basis missing some basic values"},
    {error::kUnknownBasisIndicator, "Line %d: Unrecognized basis indicator '%.255s'"},
    {error::kEndMissing, "'ENDATA' missing"},
    {error::kWrongNumberOfEntries, "Line %d: Wrong number of entries"},
    {error::kSuperbasicNotAllowed, "Superbases are not allowed"},
    {error::kWrongBasisSize, "%d %.255s basic variable(s)"},
    {error::kNoVectorSolution, "Vector solution does not exist"},
    {error::kNotABinaryModel, "File '%s' is not a SAV file"},
    {error::kBinaryModelEnds, "Not enough data in SAV file"},
    {error::kCannotWriteBinaryModel, "Unable to write SAV file to disk"},
    {error::kIncompatibleBinaryModel, "File '%s' has an incompatible format"},
    // LP format
    {error::kAdjacentSigns, "Lines %d,%d: Adjacent signs"},
    {error::kSenseInObjective, "Line %d: RHS sense in objective"},
    {error::kAdjacentSignAndSense, "Lines %d,%d: Adjacent sign and sense"},
    {error::kQuadraticTermInConstraint, "Line %d: Illegal quadratic term in a constraint"},
    {error::kAdjacentSignAndOperator, "Lines %d,%d: Adjacent sign and quadratic character"},
    {error::kExpectedSign, "Line %d: Expected '+' or '-', found '%c'"},
    {error::kExpectedSignOrSense, "Line %d: Expected '+','-' or sense, found '%c'"},
    {error::kExpectedNameFirst, "Line %d: Expected identifier first"},
    {error::kExpectedRhs, "Line %d: Expected RHS coefficient"},
    {error::kExpectedNumberFirst, "Line %d: Expected number first"},
    {error::kExpectedExponent, "Line %d: Expected quadratic exponent"},
    {error::kExponentNotTwo, "Line %d: Quadratic exponent must be 2"},
    {error::kExpectedPowerOrProduct, "Line %d: Expected '^' or '*'"},
    {error::kExpectedNumber, "Line %d: Expected number, found '%c'"},
    {error::kExpectedName, "Line %d: Expected identifier, found '%c'"},
    {error::kNotAName, "Line %d: '%.255s' not valid identifier"},
    {error::kExponentIncomplete, "Line %d: Exponent '%s' not %s with number"},
    {error::kBadQuadraticDivisor, "Line %d: Missing or incorrect divisor for Q terms"},
    {error::kNoBoundSense, "Line %d: No bound sense"},
    {error::kBadBoundSense, "Line %d: Invalid bound sense"},
    {error::kNoBoundNumber, "Line %d: Missing bound number"},
    {error::kExpectedColon, "Line %d: Expected ':', found '%c'"},
    {error::kNotRepresentable, "Number not representable in exponential notation"},
    {error::kNotEnoughEntries, "Line %d:  Not enough entries"},
    {error::kBadHeader, "Line %d:  Missing or invalid header"},
    // Infeasibility analysis and variability estimation
    {error::kNoIis, "No IIS information exists"},
    {error::kNoSolutionForIis, "No solution exists; infeasibility analysis not available"},
    {error::kFeasibleNoIis, "Problem is feasible; no IIS available"},
    {error::kPerhapsFeasibleNoIis, "Problem may be feasible; no IIS available"},
    {error::kUnscaledInfeasibleNoIis, "Problem optimal with unscaled infeasibilities.\n      No IIS available"},
    {error::kCannotComputeIis, "Unable to compute an IIS"},
    {error::kIisNeedsBasis, "Infeasibility Finder requires a basic solution"},
    {error::kCannotLoadIisProblem, "Failed to load IIS subproblem"},
    {error::kIisObjectiveLimit, "Objective limit exceeded on IIS subproblem"},
    {error::kIisIterationLimit, "Iteration limit exceeded on IIS subproblem"},
    {error::kIisTimeLimit, "Time limit exceeded on IIS subproblem"},
    {error::kCannotOptimizeIisProblem, "Unable to optimize IIS subproblem"},
    {error::kNoConflict, "Conflict is not available"},
    {error::kConflictNotReproduced, "Conflict detection could not reproduce previously found infeasibility"},
    {error::kVariabilityTestFailed, "Problem solving test model for performance variability estimator"},
    // Callbacks, temporary files and parameter compatibility
    {error::kCannotOpenTemporaryFile, "Could not open temporary file"},
    {error::kCannotReadTemporaryFile, "Failure on temporary file read"},
    {error::kCannotWriteTemporaryFile, "Failure on temporary file write"},
    {error::kCallFromInfoCallback, "Calling routines from info callback"},
    {error::kDynamicSearchWithControlCallbacks, "MIP dynamic search interferes with control callbacks"},
    {error::kForeignProblem, "Problem is not member of this environment"},
    {error::kIncompatibleParameters, "Incompatible parameters"},
    // Robust optimization
    {error::kInconsistentRobustData, "KLVrobustopt problems contain inconsistent data"},
    // Mixed-integer
    {error::kNotMixedInteger, "Not a mixed-integer problem"},
    {error::kNegativePriority, "Negative priority entry %d"},
    {error::kDirectionEntry, "Illegal direction entry %d"},
    {error::kSetTypeEntry, "Illegal sostype entry %d"},
    {error::kEqualWeights, "Set does not have unique weights"},
    {error::kUnknownDirection, "Line %d: Unrecognized direction '%c%c'"},
    {error::kNoSets, "No user-defined SOSs exist"},
    {error::kNoOrder, "No priority order exists"},
    {error::kValueBeyondIntegerLimit, "Magnitude of variable %.255s: %g exceeds\n      integer limit %d"},
    {error::kSubproblemFailed, "Failure to solve MIP subproblem"},
    {error::kNoMipStart, "No MIP start exists"},
    {error::kColumnTypeEntry, "Illegal ctype entry %d"},
    {error::kNoIncumbentValues, "Integer feasible solution values are unavailable"},
    {error::kNoSolutionPool, "No solution pool exists"},
    {error::kNoSetType, "Line %d: Missing SOS type"},
    {error::kNoTree, "Current problem has no tree"},
    {error::kTreeMemoryLimit, "Tree memory limit exceeded"},
    {error::kFilterColumnNotBinary, "Diversity filter has non-binary variable"},
    {error::kNoCallbackInfo, "No callback info on disk/compressed nodes"},
    {error::kCannotMakeMutex, "Could not initialize mutex"},
    {error::kCannotStartThread, "Could not create thread"},
    // Barrier
    {error::kBadPermutation, "Bad permutation vector from external ordering algorithm"},
    // Quadratic
    {error::kNotSemidefinite, "Q in %s is not positive semi-definite"},
    {error::kNotQuadratic, "Not a quadratic program"},
    {error::kDuplicatePair, "Duplicate entry in '%.255s' for pair '%.255s' and '%.255s'"},
    {error::kNotSymmetric, "Q in %s is not symmetric"},
    {error::kNotIndefinite, "Q in objective is not indefinite"},
    // Network
    {error::kBadNetworkSense, "Sense must be 'L' or 'G'"},

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
