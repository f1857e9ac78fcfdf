#include "env/params/param_table.h"

#include <array>
#include <cstring>

#include "env/params/param_numbers.h"

namespace kelvo {
namespace {

/// Largest value of the size hints of the readers.
constexpr int kReadLimit = 524999999;

constexpr ParamRow integer(int number, const char* name, int initial, int min, int max,
                           const char* meaning) {
  return {number, name, meaning, true, ParamKind::integer, false, initial, min, max,
          0.0,    0.0,  0.0,     ""};
}

/// A number of threads: 0 (automatic) up to the number of processors.
constexpr ParamRow processors(int number, const char* name, const char* meaning) {
  ParamRow row = integer(number, name, 0, 0, 1, meaning);
  row.up_to_processors = true;
  return row;
}

constexpr ParamRow real(int number, const char* name, double initial, double min, double max,
                        const char* meaning) {
  return {number, name, meaning, true, ParamKind::real, false, 0, 0, 0, initial, min, max, ""};
}

constexpr ParamRow unbounded(int number, const char* name, double initial, const char* meaning) {
  return real(number, name, initial, 0.0, 0.0, meaning);
}

constexpr ParamRow text(int number, const char* name, const char* initial, const char* meaning) {
  return {number, name, meaning, true, ParamKind::text, false, 0, 0, 0, 0.0, 0.0, 0.0, initial};
}

/// What the parameter governs is not in this version. scripts/check_header.py compares with the
/// code.
constexpr ParamRow unused(ParamRow row) {
  row.has_effect = false;
  return row;
}

// Number and name of a public parameter, of a hidden one that the library reads, and of one that
// only keeps its value.
#define NAMED(name) param::name, "KLV_PARAM_" #name
#define HIDDEN(name) param::name, ""
#define RESERVED(number) number, ""

// The default of SINGTOL lies below its minimum on purpose: setting all defaults is the only way
// back to it.
// clang-format off
constexpr std::array<ParamRow, kNumParams> kParamTable = {{
    // General
    integer(NAMED(ADVIND), 1, 0, 2, "start basis: 0 none, 1 as given or crushed, 2 always crushed by presolve"),
    integer(NAMED(AGGFILL), 10, 0, kCountLimit, "nonzeros that a substitution of presolve may add"),
    integer(NAMED(AGGIND), -1, -1, kCountLimit, "rounds of substitution in presolve: -1 automatic, 0 none"),
    integer(HIDDEN(SERVICE_INTERVAL), kCountLimit, 1, kCountLimit, ""),
    real(NAMED(CFILEMUL), 3.0, 1.1, kNoLimit, "room of the column file of a factor, in nonzeros of the basis"),
    integer(NAMED(CLOCKTYPE), 0, 0, 2, "clock of the time limit: 1 processor time, 0 and 2 elapsed time"),
    integer(NAMED(CRAIND), 1, -1, 1, "start basis of a run without one: 1 slacks, 0 crash, -1 crash by the costs"),
    integer(NAMED(DEPIND), -1, -1, 3, "dependent rows in presolve: -1 automatic, 0 kept, 1 to 3 more effort"),
    integer(NAMED(DPRIIND), 0, 0, 5, "dual pricing: 0 automatic, 1 standard, 2-4 steepest edge, 5 devex"),
    integer(NAMED(PRICELIM), 0, 0, kCountLimit, "columns that partial pricing looks at: 0 automatic"),
    real(NAMED(EPMRK), 0.01, 0.0001, 0.99999, "least pivot of a factor, as a share of the largest entry of its column"),
    real(NAMED(EPOPT), 1e-6, 1e-9, 0.1, "optimality tolerance on reduced costs"),
    real(NAMED(EPPER), 1e-6, 1e-8, kNoLimit, "first magnitude of perturbations"),
    real(NAMED(EPRHS), 1e-6, 1e-9, 0.1, "feasibility tolerance on bounds and rows"),
    integer(HIDDEN(NO_RESTART_PASSES), 0, 0, 2, ""),
    integer(RESERVED(1018), 0, 0, 1, ""),
    integer(NAMED(SIMDISPLAY), 1, 0, 2, "log of the simplex methods: 0 none, 1 refactorizations, 2 iterations"),
    integer(NAMED(ITLIM), kCountLimit, 0, kCountLimit, "limit on simplex iterations"),
    integer(NAMED(ROWREADLIM), 30000, 0, kReadLimit, "rows that a reader makes room for at first"),
    unused(integer(NAMED(NETFIND), 2, 1, 3, "extraction of networks: 1 plain rows, 2 reflected too, 3 scaled too")),
    integer(NAMED(COLREADLIM), 60000, 0, kReadLimit, "columns that a reader makes room for at first"),
    integer(NAMED(NZREADLIM), 250000, 0, kReadLimit, "nonzeros that a reader makes room for at first"),
    unbounded(NAMED(OBJLLIM), -kNoLimit, "objective below which the simplex methods stop"),
    unbounded(NAMED(OBJULIM), kNoLimit, "objective above which the simplex methods stop"),
    integer(NAMED(PERIND), 0, 0, 1, "perturbation: 0 when a run stalls, 1 from the start"),
    integer(NAMED(PERLIM), 0, 0, kCountLimit, "stalled iterations before a perturbation: 0 automatic"),
    integer(NAMED(PPRIIND), 0, -1, 4, "primal pricing: -1 reduced cost, 0 automatic, 1 devex, 2-3 steepest, 4 full"),
    integer(NAMED(PREIND), 1, 0, 1, "presolve: 0 off, 1 on"),
    integer(NAMED(REINV), 0, 0, 10000, "iterations between factorizations: 0 automatic"),
    integer(RESERVED(1032), 0, 0, 1, ""),
    real(NAMED(RFILEMUL), 3.0, 1.1, kNoLimit, "room of the row file of a factor, in nonzeros of the basis"),
    integer(NAMED(SCAIND), 0, -1, 1, "scaling: -1 none, 0 equilibration, 1 aggressive"),
    integer(NAMED(SCRIND), 0, 0, 1, "messages on the screen: 0 no, 1 yes"),
    integer(NAMED(SINGLIM), 10, 0, kCountLimit, "repairs of a singular basis in a run"),
    real(NAMED(SINGTOL), 1e-13, 1e-10, 0.9, "pivots of a factor below this count as singular"),
    real(NAMED(TILIM), kNoLimit, 0.0, kNoLimit, "time limit in seconds"),
    integer(RESERVED(1041), 0, 0, 1, ""),
    integer(RESERVED(1042), 0, 0, 2, ""),
    integer(HIDDEN(PRINT_PRESOLVE_OUTCOMES), 1, 0, 1, ""),
    integer(NAMED(PREDUAL), 0, -1, 1, "dual form after presolve: -1 never, 0 automatic, 1 always"),
    real(RESERVED(1045), 0.1, 0.001, 1.0, ""),
    integer(RESERVED(1046), -1, -1, kReadLimit, ""),
    integer(RESERVED(1047), -1, -1, kReadLimit, ""),
    integer(RESERVED(1048), -1, -1, kReadLimit, ""),
    real(RESERVED(1049), 1e-6, 1e-10, 0.1, ""),
    real(RESERVED(1050), 1e-6, 1e-10, 0.1, ""),
    integer(RESERVED(1051), -1, -1, 2, ""),
    integer(NAMED(PREPASS), -1, -1, kCountLimit, "passes of presolve: -1 automatic"),
    integer(HIDDEN(NOT_IN_SNAPSHOT), 0, 0, 1, ""),
    integer(RESERVED(1054), 2, 0, 3, ""),
    real(RESERVED(1055), 0.05, 1e-10, 0.99, ""),
    integer(NAMED(DATACHECK), 0, 0, 1, "checks of the data a caller hands in: 0 few, 1 all"),
    integer(NAMED(REDUCE), 3, 0, 3, "reductions of presolve: 0 none, 1 primal, 2 dual, 3 both"),
    integer(NAMED(PRELINEAR), 1, 0, 1, "reductions that are no linear maps: 0 no, 1 yes"),
    integer(HIDDEN(SKIP_SINGLETON_ROWS), 0, 0, 1, ""),
    integer(HIDDEN(SKIP_COST_FIXING), 0, 0, 1, ""),
    integer(HIDDEN(AGGREGATION), 1, 0, 1, ""),
    integer(NAMED(LPMETHOD), 0, 0, 6, "method for linear programs: 0 automatic, 1 primal, 2 dual simplex"),
    unused(integer(NAMED(QPMETHOD), 0, 0, 6, "method for quadratic programs, numbered as for LPMETHOD")),
    unused(text(NAMED(WORKDIR), ".", "folder of node files and temporary files")),
    unused(real(NAMED(WORKMEM), 128.0, 0.0, kNoLimit, "megabytes of working memory before files are used")),
    integer(HIDDEN(MATRIX_COMPRESSION), 0, -1, 1, ""),
    processors(NAMED(THREADS), "threads that an optimizer may use: 0 automatic"),
    integer(RESERVED(1068), 0, 0, 1, ""),
    integer(HIDDEN(SKIP_FREE_SINGLETONS), 0, 0, 1, ""),
    integer(HIDDEN(DUPLICATE_ROWS), 1, 0, 1, ""),
    integer(HIDDEN(DUAL_BOUNDS), 1, 0, 2, ""),
    integer(HIDDEN(DUPLICATE_COLUMNS), 1, 0, 1, ""),
    integer(RESERVED(1073), 0, 0, 6, ""),
    unused(integer(NAMED(CONFLICTDISPLAY), 1, 0, 2, "log of the conflict refiner: 0 none to 2 detailed")),
    integer(HIDDEN(ECHO_SETTINGS), 0, 0, 1, ""),
    unused(integer(NAMED(SIFTDISPLAY), 1, 0, 2, "log of sifting: 0 none, 1 passes, 2 solves of each pass too")),
    unused(integer(NAMED(SIFTALG), 0, 0, 4, "method inside sifting, numbered as for LPMETHOD up to 4")),
    unused(integer(NAMED(SIFTITLIM), kCountLimit, 0, kCountLimit, "limit on the passes of sifting")),
    integer(RESERVED(1079), 0, 0, 1, ""),
    integer(NAMED(MPSLONGNUM), 1, 0, 1, "numbers in MPS files: 0 12 characters, 1 full precision"),
    integer(NAMED(MEMORYEMPHASIS), 0, 0, 1, "memory emphasis: 0 normal, 1 saves memory at the cost of time"),
    integer(NAMED(NUMERICALEMPHASIS), 0, 0, 1, "care with pivots and substitutions: 0 normal, 1 more"),
    unused(integer(NAMED(FEASOPTMODE), 0, 0, 5, "FeasOpt: 0 sum, 2 number, 4 squares of relaxations, 1, 3, 5 then optimum")),
    integer(RESERVED(1085), 0, 0, 3, ""),
    integer(HIDDEN(EVERY_OBJECTIVE_TERM), 0, 0, 1, ""),
    integer(RESERVED(1087), 1, 0, 1, ""),
    integer(RESERVED(1088), 0, 0, kCountLimit, ""),
    integer(RESERVED(1089), 0, -kCountLimit, kCountLimit, ""),
    real(RESERVED(1090), 0.0, -kNoLimit, kNoLimit, ""),
    integer(HIDDEN(SLACK_COLUMNS), 1, 0, 1, ""),
    integer(HIDDEN(SKIP_DOUBLETONS), 0, 0, 1, ""),
    integer(RESERVED(1093), 0, -1, 1, ""),
    integer(HIDDEN(ACTIVITY_ROWS), -1, -1, 1, ""),
    real(HIDDEN(LARGE_NUMBER), 1e9, 10.0, kNoLimit, ""),
    integer(RESERVED(1096), 0, -1, 1, ""),
    integer(RESERVED(1097), 0, -1, 1, ""),
    integer(HIDDEN(SKIP_IMPLIED_ROWS), 0, 0, 1, ""),
    real(RESERVED(1101), 0.5, 0.0, 1.0, ""),
    integer(HIDDEN(XML_MIP_STARTS), 1, 0, 1, ""),
    integer(RESERVED(1103), 0, 0, 2, ""),
    integer(RESERVED(1104), 1, 0, 1, ""),
    integer(HIDDEN(LEGALIZE_NAMES), 1, 0, 1, ""),
    text(RESERVED(1106), ".lp", ""),
    integer(RESERVED(1107), 1, 0, 3, ""),
    integer(RESERVED(1108), 0, 0, kCountLimit, ""),
    integer(NAMED(PARALLELMODE), 0, -1, 1, "parallel runs: -1 may differ, 0 automatic, 1 repeat exactly"),
    unused(integer(NAMED(TUNINGMEASURE), 1, 1, 2, "tuning by 1 the mean or 2 the longest time")),
    unused(integer(NAMED(TUNINGREPEAT), 1, 1, kCountLimit, "repetitions of each tuning run")),
    unused(real(NAMED(TUNINGTILIM), 10000.0, 1.0, kNoLimit, "seconds for each tuning run")),
    unused(integer(NAMED(TUNINGDISPLAY), 1, 0, 3, "log of tuning: 0 none to 3 detailed")),
    integer(NAMED(WRITELEVEL), 0, 0, 4, "solution files: 0 automatic, 1 all, 2 discrete, 3 non-zero, 4 both"),
    real(RESERVED(1115), 0.0, 0.0, kNoLimit, ""),
    text(RESERVED(1116), ".lp", ""),
    integer(HIDDEN(SHOW_READER_CHOICES), 1, 0, 1, ""),
    integer(RESERVED(1119), 0, 0, 4, ""),
    integer(RESERVED(1120), 0, -1, 1, ""),
    unused(integer(NAMED(PERFVAR_RUNS), 10, 2, kCountLimit, "runs of the variability estimator")),
    unused(integer(NAMED(PERFVAR_DISPLAY), 1, 0, 1, "log of the variability estimator: 0 no, 1 yes")),
    unused(integer(NAMED(PERFVAR_MEASURE), 0, 0, 1, "measure of the variability estimator")),
    // Mixed integer
    integer(NAMED(BRDIR), 0, -1, 1, "branch first: -1 down, 0 automatic, 1 up"),
    real(NAMED(BTTOL), 0.9999, 0.0, 1.0, "share of the gap by which a dive may fall behind before it ends"),
    unused(integer(NAMED(CLIQUES), 0, -1, 3, "clique cuts: -1 off, 0 automatic, 1 moderate to 3 very aggressive")),
    integer(NAMED(COEREDIND), 2, 0, 2, "coefficient reduction: 0 off, 1 moderate, 2 more"),
    unused(integer(NAMED(COVERS), 0, -1, 3, "cover cuts: -1 off, 0 automatic, 1 moderate to 3 very aggressive")),
    unbounded(NAMED(CUTLO), -kNoLimit, "cutoff of a maximization: nodes with a smaller objective are dropped"),
    unbounded(NAMED(CUTUP), kNoLimit, "cutoff of a minimization: nodes with a larger objective are dropped"),
    real(NAMED(EPAGAP), 1e-6, 0.0, 1e20, "absolute gap at which the search stops"),
    real(NAMED(EPGAP), 0.0001, 0.0, 1.0, "relative gap at which the search stops"),
    real(NAMED(EPINT), 1e-5, 0.0, 0.5, "distance from a whole number that still counts as one"),
    integer(NAMED(MIPDISPLAY), 2, 0, 5, "node log: 0 none to 5 with all node solves"),
    integer(NAMED(MIPINTERVAL), 100, 1, kCountLimit, "nodes between two lines of the node log"),
    processors(RESERVED(2014), ""),
    integer(NAMED(INTSOLLIM), kCountLimit, 1, kCountLimit, "limit on integer solutions"),
    unused(integer(NAMED(NODEFILEIND), 1, 0, 3, "nodes: 0 in memory, 1 compressed, 2 on disk, 3 compressed on disk")),
    integer(NAMED(NODELIM), kCountLimit, 0, kCountLimit, "limit on nodes"),
    integer(NAMED(NODESEL), 1, 0, 3, "next node: 0 depth first, 1 best bound, 2 best estimate, 3 another estimate"),
    unbounded(NAMED(OBJDIF), 0.0, "a solution must improve the objective by this"),
    integer(NAMED(MIPORDIND), 1, 0, 1, "priority order: 0 ignored, 1 used"),
    real(NAMED(RELOBJDIF), 0.0, 0.0, 1.0, "a solution must improve the objective by this share"),
    integer(NAMED(STARTALG), 0, 0, 6, "method at the root, numbered as for LPMETHOD"),
    unused(integer(NAMED(SUBALG), 0, 0, 5, "method at the nodes, numbered as for LPMETHOD")),
    real(NAMED(TRELIM), kNoLimit, 0.0, kNoLimit, "megabytes that the tree may take"),
    integer(NAMED(VARSEL), 0, -1, 4, "branch: -1, 1 least, most infeasible, 0 automatic, 2 pseudocost, 3 strong, 4"),
    integer(NAMED(BNDSTRENIND), -1, -1, 1, "bound strengthening of integer models: -1 automatic, 0 off, 1 on"),
    unused(integer(NAMED(HEURFREQ), 0, -1, kCountLimit, "nodes between heuristics: -1 never, 0 automatic")),
    integer(NAMED(MIPORDTYPE), 0, 0, 3, "generated order: 0 none, 1 costs, 2 range of bounds, 3 cost by nonzeros"),
    unused(real(NAMED(CUTSFACTOR), 4.0, 0.0, kNoLimit, "limit on rows and cuts, as a multiple of the rows")),
    unused(integer(NAMED(RELAXPREIND), -1, -1, 1, "LP presolve of the root relaxation: -1 automatic, 0 off, 1 on")),
    unused(integer(NAMED(PRESLVND), 0, -1, 2, "presolve at nodes: -1 off, 0 automatic, 1 forced, 2 with more effort")),
    integer(RESERVED(2038), 1, -1, 1, ""),
    unused(integer(NAMED(BBINTERVAL), 7, 0, kCountLimit, "nodes between choices of the best bound")),
    unused(integer(NAMED(FLOWCOVERS), 0, -1, 2, "flow cover cuts: -1 off, 0 automatic, 1 moderate, 2 aggressive")),
    unused(integer(NAMED(IMPLBD), 0, -1, 2, "implied bound cuts: -1 off, 0 automatic, 1 moderate, 2 aggressive")),
    integer(NAMED(PROBE), 0, -1, 3, "probing: -1 off, 0 automatic, 1 moderate to 3 very aggressive"),
    unused(integer(NAMED(GUBCOVERS), 0, -1, 2, "GUB cover cuts: -1 off, 0 automatic, 1 moderate, 2 aggressive")),
    integer(NAMED(STRONGCANDLIM), 10, 1, kCountLimit, "candidates of strong branching"),
    integer(NAMED(STRONGITLIM), 0, 0, kCountLimit, "iterations for each candidate of strong branching: 0 automatic"),
    processors(RESERVED(2047), ""),
    unused(integer(NAMED(FRACCAND), 200, 1, kCountLimit, "candidates for Gomory cuts")),
    unused(integer(NAMED(FRACCUTS), 0, -1, 2, "Gomory cuts: -1 off, 0 automatic, 1 moderate, 2 aggressive")),
    unused(integer(NAMED(FRACPASS), 0, 0, kCountLimit, "passes of Gomory cuts: 0 automatic")),
    unused(integer(NAMED(FLOWPATHS), 0, -1, 2, "flow path cuts: -1 off, 0 automatic, 1 moderate, 2 aggressive")),
    unused(integer(NAMED(MIRCUTS), 0, -1, 2, "MIR cuts: -1 off, 0 automatic, 1 moderate, 2 aggressive")),
    unused(integer(NAMED(DISJCUTS), 0, -1, 3, "disjunctive cuts: -1 off, 0 automatic, 1 moderate to 3 very aggressive")),
    unused(integer(NAMED(AGGCUTLIM), 3, 0, kCountLimit, "rows that may be aggregated for a cut")),
    unused(integer(NAMED(MIPCBREDLP), 1, 0, 1, "what callbacks see: 0 the model, 1 the presolved model")),
    unused(integer(NAMED(CUTPASS), 0, -1, kCountLimit, "passes of cuts at the root: -1 none, 0 automatic")),
    integer(RESERVED(2057), 0, 0, 1, ""),
    integer(NAMED(MIPEMPHASIS), 0, 0, 4, "search: 0 balance, 1 feasibility, 2 optimality, 3 bound, 4 hidden solutions"),
    integer(NAMED(SYMMETRY), -1, -1, 5, "symmetry: -1 automatic, 0 off, 1 to 5 more and more"),
    integer(NAMED(DIVETYPE), 0, 0, 3, "dives: 0 automatic, 1 plain, 2 probing, 3 guided"),
    unused(integer(NAMED(RINSHEUR), 0, -1, kCountLimit, "nodes between RINS heuristics: -1 never, 0 automatic")),
    unused(integer(NAMED(SUBMIPNODELIM), 500, 1, kCountLimit, "nodes of searches inside heuristics")),
    unused(integer(NAMED(LBHEUR), 0, 0, 1, "local branching after each solution: 0 off, 1 on")),
    unused(integer(NAMED(REPEATPRESOLVE), -1, -1, 3, "presolve again after the root: -1 automatic, 0 off, 1 to 3 more")),
    real(NAMED(PROBETIME), kNoLimit, 0.0, kNoLimit, "seconds for probing"),
    unused(real(NAMED(POLISHTIME), 0.0, 0.0, kNoLimit, "seconds of polishing integer solutions")),
    unused(integer(NAMED(REPAIRTRIES), 0, -1, kCountLimit, "attempts to repair a start: -1 none, 0 automatic")),
    real(RESERVED(2068), 0.001, 0.0, kNoLimit, ""),
    integer(RESERVED(2069), 10, 1, kCountLimit, ""),
    integer(RESERVED(2070), 0, 0, 1, ""),
    real(RESERVED(2071), 1.0, 0.0, kNoLimit, ""),
    real(RESERVED(2072), 20.0, 0.0, kNoLimit, ""),
    unused(real(NAMED(EPRELAX), 1e-6, 0.0, 1e20, "tolerance on the relaxations of FeasOpt")),
    integer(RESERVED(2074), -1, -1, kCountLimit, ""),
    integer(RESERVED(2075), -1, -1, 2, ""),
    integer(RESERVED(2076), 0, 0, 2, ""),
    integer(RESERVED(2077), 1, 0, 1, ""),
    integer(RESERVED(2078), 0, -1, kCountLimit, ""),
    integer(RESERVED(2080), -1, -1, 2, ""),
    integer(RESERVED(2081), -1, -1, 2, ""),
    integer(RESERVED(2082), 0, 0, 1, ""),
    integer(RESERVED(2083), 0, -32, 32, ""),
    integer(RESERVED(2084), 1, 0, 1, ""),
    integer(RESERVED(2085), 1, 0, 1, ""),
    integer(RESERVED(2086), 0, -1, kCountLimit, ""),
    integer(RESERVED(2087), 0, 0, 1, ""),
    integer(RESERVED(2088), 0, 0, 1, ""),
    integer(RESERVED(2089), 0, -1, kCountLimit, ""),
    integer(RESERVED(2090), 0, -1, kCountLimit, ""),
    integer(RESERVED(2091), 1, 0, 2, ""),
    integer(RESERVED(2092), -1, -1, 1, ""),
    integer(RESERVED(2093), 0, 0, 1, ""),
    integer(RESERVED(2095), 1, 0, 1, ""),
    real(RESERVED(2096), kNoLimit, 0.001, kNoLimit, ""),
    real(HIDDEN(COEFFICIENT_RATIO), -1.0, -kNoLimit, kNoLimit, ""),
    unused(integer(NAMED(FPHEUR), 0, -1, 2, "feasibility pump: -1 off, 0 automatic, 1 feasibility, 2 objective too")),
    real(RESERVED(2099), 0.0, 0.0, kNoLimit, ""),
    integer(RESERVED(2100), 1, 0, 1, ""),
    integer(RESERVED(2101), 1, 0, 1, ""),
    unused(integer(NAMED(EACHCUTLIM), kCountLimit, 0, kCountLimit, "limit on the cuts of each family")),
    unused(integer(NAMED(SOLNPOOLCAPACITY), kCountLimit, 0, kCountLimit, "solutions that the pool keeps")),
    unused(integer(NAMED(SOLNPOOLREPLACE), 0, 0, 2, "leaves the pool: 0 the oldest, 1 the worst, 2 the least diverse")),
    unused(real(NAMED(SOLNPOOLGAP), kNoLimit, 0.0, kNoLimit, "relative gap of solutions that the pool keeps")),
    unused(real(NAMED(SOLNPOOLAGAP), kNoLimit, 0.0, kNoLimit, "absolute gap of solutions that the pool keeps")),
    unused(integer(NAMED(SOLNPOOLINTENSITY), 0, 0, 4, "effort of the pool: 0 automatic, 1 mild to 4 all solutions")),
    unused(integer(NAMED(POPULATELIM), 20, 1, kCountLimit, "solutions of one call that fills the pool")),
    integer(NAMED(MIPSEARCH), 0, 0, 2, "search: 0 automatic, 1 traditional, 2 dynamic"),
    unused(integer(NAMED(MIQCPSTRAT), 0, 0, 2, "relaxations of quadratic constraints: 0 automatic, 1 QCP, 2 LP")),
    unused(integer(NAMED(ZEROHALFCUTS), 0, -1, 2, "zero-half cuts: -1 off, 0 automatic, 1 moderate, 2 aggressive")),
    integer(RESERVED(2112), 1, 0, 1, ""),
    integer(RESERVED(2113), 0, 0, 1, ""),
    integer(RESERVED(2114), 0, 0, 3, ""),
    integer(RESERVED(2115), 0, 0, 1, ""),
    integer(RESERVED(2116), 0, -1, kCountLimit, ""),
    integer(RESERVED(2117), -1, -2, kCountLimit, ""),
    integer(RESERVED(2118), 0, -1, 2, ""),
    integer(RESERVED(2119), 0, -1, kCountLimit, ""),
    integer(RESERVED(2120), 1, 0, 1, ""),
    integer(RESERVED(2121), 0, 0, 1, ""),
    integer(RESERVED(2122), 0, 0, 4, ""),
    integer(RESERVED(2123), 0, 0, 1, ""),
    integer(RESERVED(2124), 0, -1, 2, ""),
    integer(RESERVED(2125), 1, 0, 1, ""),
    unused(real(NAMED(POLISHAFTEREPAGAP), 0.0, 0.0, 1e20, "absolute gap at which polishing begins: 0 not by this")),
    unused(real(NAMED(POLISHAFTEREPGAP), 0.0, 0.0, 1.0, "relative gap at which polishing begins: 0 not by this")),
    unused(integer(NAMED(POLISHAFTERNODE), kCountLimit, 0, kCountLimit, "nodes after which polishing begins")),
    unused(integer(NAMED(POLISHAFTERINTSOL), kCountLimit, 1, kCountLimit, "integer solutions after which polishing begins")),
    unused(real(NAMED(POLISHAFTERTIME), kNoLimit, 0.0, kNoLimit, "seconds after which polishing begins")),
    real(RESERVED(2131), 8.0, 0.0, kNoLimit, ""),
    integer(RESERVED(2132), 0, -1, 3, ""),
    real(RESERVED(2133), kNoLimit, 0.0, kNoLimit, ""),
    unused(integer(NAMED(MCFCUTS), 0, -1, 2, "multi-commodity flow cuts: -1 off, 0 automatic, 1 moderate, 2 aggressive")),
    // Barrier
    real(RESERVED(3001), 0.0, 0.0, 1e18, ""),
    unused(real(NAMED(BAREPCOMP), 1e-8, 1e-12, kNoLimit, "barrier: tolerance on complementarity")),
    unused(real(NAMED(BARGROWTH), 1e12, 1.0, kNoLimit, "barrier: growth of values that means an unbounded face")),
    unused(real(NAMED(BAROBJRNG), 1e20, 0.0, kNoLimit, "barrier: largest magnitude of the objective")),
    real(RESERVED(3005), 0.0, 0.0, 1e18, ""),
    unused(integer(NAMED(BARALG), 0, 0, 3, "barrier: 1, 2 homogeneous, 0, 3 standard")),
    unused(integer(NAMED(BARCOLNZ), 0, 0, kCountLimit, "barrier: entries that make a column dense: 0 automatic")),
    unused(integer(NAMED(BARDISPLAY), 1, 0, 2, "barrier log: 0 none, 1 normal, 2 detailed")),
    unused(integer(NAMED(BARITLIM), kCountLimit, 0, kCountLimit, "barrier: limit on iterations")),
    unused(integer(NAMED(BARMAXCOR), -1, -1, kCountLimit, "barrier: limit on corrections: -1 automatic")),
    unused(integer(NAMED(BARORDER), 0, 0, 3, "barrier: ordering: 0 automatic, 1 least degree, 2 least fill, 3 dissection")),
    integer(RESERVED(3015), 0, 0, 2, ""),
    processors(RESERVED(3016), ""),
    unused(integer(NAMED(BARSTARTALG), 1, 1, 4, "barrier: kind of starting point")),
    unused(integer(NAMED(BARCROSSALG), 0, -1, 2, "crossover after the barrier: -1 none, 0 automatic, 1 primal, 2 dual")),
    unused(real(NAMED(BARQCPEPCOMP), 1e-7, 1e-12, kNoLimit, "barrier: tolerance on complementarity with quadratic constraints")),
    real(RESERVED(3021), kNoLimit, 0.0, kNoLimit, ""),
    processors(RESERVED(3022), ""),
    integer(RESERVED(3023), 50, 1, kCountLimit, ""),
    integer(RESERVED(3024), 0, 0, 1, ""),
    real(RESERVED(3025), 0.0, 0.0, 1.0, ""),
    integer(RESERVED(3026), 0, -1, 1, ""),
    integer(RESERVED(3027), 1, 1, 5, ""),
    real(RESERVED(3028), 0.001, 0.0, 1.0, ""),
    integer(RESERVED(3029), 2, 0, 6, ""),
    integer(RESERVED(3030), 0, 0, 2, ""),
    real(RESERVED(3031), 0.0, 0.0, kNoLimit, ""),
    real(RESERVED(3032), 1.0, 1e-6, 1.0, ""),
    // Quadratic
    integer(NAMED(QPNZREADLIM), 5000, 0, kReadLimit, "quadratic nonzeros that a reader makes room for at first"),
    integer(RESERVED(4002), -1, -1, kReadLimit, ""),
    unused(integer(NAMED(QPMAKEPSDIND), 1, 0, 1, "indefinite objectives of binary columns: 0 refused, 1 repaired")),
    // Network
    integer(NAMED(NETITLIM), kCountLimit, 0, kCountLimit, "network simplex: limit on iterations"),
    real(NAMED(NETEPOPT), 1e-6, 1e-11, 0.1, "network simplex: optimality tolerance"),
    real(NAMED(NETEPRHS), 1e-6, 1e-11, 0.1, "network simplex: feasibility tolerance"),
    integer(NAMED(NETPPRIIND), 0, 0, 3, "network simplex: kind of pricing: 1, 2, or 0 and 3"),
    integer(NAMED(NETDISPLAY), 2, 0, 2, "network simplex log: 0 none to 2"),
}};
// clang-format on

#undef NAMED
#undef HIDDEN
#undef RESERVED

struct ParamGroup {
  int lowest, highest;
};

constexpr ParamGroup kGroups[] = {
    {1001, 1123}, {2000, 2134}, {3001, 3032}, {4001, 4010}, {5001, 5005}};

constexpr int kLowestNumber = kGroups[0].lowest;
constexpr int kHighestNumber = kGroups[std::size(kGroups) - 1].highest;

/// Row of each number from kLowestNumber on, -1 for none.
constexpr auto kRowOfNumber = [] {
  std::array<short, kHighestNumber - kLowestNumber + 1> rows{};
  rows.fill(-1);
  for (int row = 0; row < kNumParams; ++row) {
    rows[kParamTable[row].number - kLowestNumber] = static_cast<short>(row);
  }
  return rows;
}();

static_assert(
    [] {
      int count_public = 0, count_text = 0;
      for (int row = 0; row < kNumParams; ++row) {
        if (row > 0 && kParamTable[row - 1].number >= kParamTable[row].number) return false;
        if (kParamTable[row].is_public()) ++count_public;
        if (kParamTable[row].kind == ParamKind::text) ++count_text;
      }
      return count_public == kNumPublicParams && count_text == kNumTextParams;
    }(),
    "the table ascends and the counts in the header are right");

/// Exclusive-or over the characters, character i shifted left by 8 * (i mod 4) bits.
constexpr unsigned name_hash(const char* name) {
  unsigned hash = 0;
  for (int i = 0; name[i] != '\0'; ++i) {
    hash ^= static_cast<unsigned>(static_cast<signed char>(name[i])) << (8 * (i % 4));
  }
  return hash;
}

/// Chained hash table over the public names: first row of each chain and next row of each row.
struct NameIndex {
  std::array<short, kNumPublicParams> first;
  std::array<short, kNumParams> next;
};

constexpr NameIndex kNameIndex = [] {
  NameIndex index{};
  index.first.fill(-1);
  index.next.fill(-1);
  for (int row = 0; row < kNumParams; ++row) {
    if (!kParamTable[row].is_public()) continue;
    short& first = index.first[name_hash(kParamTable[row].name) % kNumPublicParams];
    index.next[row] = first;
    first = static_cast<short>(row);
  }
  return index;
}();

}  // namespace

std::span<const ParamRow, kNumParams> param_table() noexcept {
  return kParamTable;
}

int param_row(int number) noexcept {
  if (number < kLowestNumber || number > kHighestNumber) return -1;
  return kRowOfNumber[number - kLowestNumber];
}

int param_row(int number, ParamKind kind) noexcept {
  const int row = param_row(number);
  return row >= 0 && kParamTable[row].kind == kind ? row : -1;
}

int param_row_by_name(const char* name) noexcept {
  int row = kNameIndex.first[name_hash(name) % kNumPublicParams];
  while (row >= 0 && std::strcmp(kParamTable[row].name, name) != 0) row = kNameIndex.next[row];
  return row;
}

bool in_param_group(int number) noexcept {
  for (const ParamGroup& group : kGroups) {
    if (number >= group.lowest && number <= group.highest) return true;
  }
  return false;
}

}  // namespace kelvo
