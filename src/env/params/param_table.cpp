#include "env/params/param_table.h"

#include <array>
#include <cstring>

#include "env/params/param_numbers.h"

namespace kelvo {
namespace {

/// Largest value of the size hints of the readers.
constexpr int kReadLimit = 524999999;

constexpr ParamRow integer(int number, const char* name, int initial, int min, int max) {
  return {number, name, ParamKind::integer, false, initial, min, max, 0.0, 0.0, 0.0, ""};
}

/// A number of threads: 0 (automatic) up to the number of processors.
constexpr ParamRow processors(int number, const char* name) {
  return {number, name, ParamKind::integer, true, 0, 0, 1, 0.0, 0.0, 0.0, ""};
}

constexpr ParamRow real(int number, const char* name, double initial, double min, double max) {
  return {number, name, ParamKind::real, false, 0, 0, 0, initial, min, max, ""};
}

constexpr ParamRow unbounded(int number, const char* name, double initial) {
  return real(number, name, initial, 0.0, 0.0);
}

constexpr ParamRow text(int number, const char* name, const char* initial) {
  return {number, name, ParamKind::text, false, 0, 0, 0, 0.0, 0.0, 0.0, initial};
}

// The default of SINGTOL lies below its minimum on purpose: setting all defaults is the only way
// back to it.
// clang-format off
constexpr std::array<ParamRow, kNumParams> kParamTable = {{
    // General
    integer(param::ADVIND, "KLV_PARAM_ADVIND", 1, 0, 2),
    integer(param::AGGFILL, "KLV_PARAM_AGGFILL", 10, 0, kCountLimit),
    integer(param::AGGIND, "KLV_PARAM_AGGIND", -1, -1, kCountLimit),
    integer(1004, "", kCountLimit, 1, kCountLimit),
    real(param::CFILEMUL, "KLV_PARAM_CFILEMUL", 3.0, 1.1, kNoLimit),
    integer(param::CLOCKTYPE, "KLV_PARAM_CLOCKTYPE", 0, 0, 2),
    integer(param::CRAIND, "KLV_PARAM_CRAIND", 1, -1, 1),
    integer(param::DEPIND, "KLV_PARAM_DEPIND", -1, -1, 3),
    integer(param::DPRIIND, "KLV_PARAM_DPRIIND", 0, 0, 5),
    integer(param::PRICELIM, "KLV_PARAM_PRICELIM", 0, 0, kCountLimit),
    real(param::EPMRK, "KLV_PARAM_EPMRK", 0.01, 0.0001, 0.99999),
    real(param::EPOPT, "KLV_PARAM_EPOPT", 1e-6, 1e-9, 0.1),
    real(param::EPPER, "KLV_PARAM_EPPER", 1e-6, 1e-8, kNoLimit),
    real(param::EPRHS, "KLV_PARAM_EPRHS", 1e-6, 1e-9, 0.1),
    integer(1017, "", 0, 0, 2),
    integer(1018, "", 0, 0, 1),
    integer(param::SIMDISPLAY, "KLV_PARAM_SIMDISPLAY", 1, 0, 2),
    integer(param::ITLIM, "KLV_PARAM_ITLIM", kCountLimit, 0, kCountLimit),
    integer(param::ROWREADLIM, "KLV_PARAM_ROWREADLIM", 30000, 0, kReadLimit),
    integer(param::NETFIND, "KLV_PARAM_NETFIND", 2, 1, 3),
    integer(param::COLREADLIM, "KLV_PARAM_COLREADLIM", 60000, 0, kReadLimit),
    integer(param::NZREADLIM, "KLV_PARAM_NZREADLIM", 250000, 0, kReadLimit),
    unbounded(param::OBJLLIM, "KLV_PARAM_OBJLLIM", -kNoLimit),
    unbounded(param::OBJULIM, "KLV_PARAM_OBJULIM", kNoLimit),
    integer(param::PERIND, "KLV_PARAM_PERIND", 0, 0, 1),
    integer(param::PERLIM, "KLV_PARAM_PERLIM", 0, 0, kCountLimit),
    integer(param::PPRIIND, "KLV_PARAM_PPRIIND", 0, -1, 4),
    integer(param::PREIND, "KLV_PARAM_PREIND", 1, 0, 1),
    integer(param::REINV, "KLV_PARAM_REINV", 0, 0, 10000),
    integer(1032, "", 0, 0, 1),
    real(param::RFILEMUL, "KLV_PARAM_RFILEMUL", 3.0, 1.1, kNoLimit),
    integer(param::SCAIND, "KLV_PARAM_SCAIND", 0, -1, 1),
    integer(param::SCRIND, "KLV_PARAM_SCRIND", 0, 0, 1),
    integer(param::SINGLIM, "KLV_PARAM_SINGLIM", 10, 0, kCountLimit),
    real(param::SINGTOL, "KLV_PARAM_SINGTOL", 1e-13, 1e-10, 0.9),
    real(param::TILIM, "KLV_PARAM_TILIM", kNoLimit, 0.0, kNoLimit),
    integer(1041, "", 0, 0, 1),
    integer(1042, "", 0, 0, 2),
    integer(1043, "", 1, 0, 1),
    integer(param::PREDUAL, "KLV_PARAM_PREDUAL", 0, -1, 1),
    real(1045, "", 0.1, 0.001, 1.0),
    integer(1046, "", -1, -1, kReadLimit),
    integer(1047, "", -1, -1, kReadLimit),
    integer(1048, "", -1, -1, kReadLimit),
    real(1049, "", 1e-6, 1e-10, 0.1),
    real(1050, "", 1e-6, 1e-10, 0.1),
    integer(1051, "", -1, -1, 2),
    integer(param::PREPASS, "KLV_PARAM_PREPASS", -1, -1, kCountLimit),
    integer(1053, "", 0, 0, 1),
    integer(1054, "", 2, 0, 3),
    real(1055, "", 0.05, 1e-10, 0.99),
    integer(param::DATACHECK, "KLV_PARAM_DATACHECK", 0, 0, 1),
    integer(param::REDUCE, "KLV_PARAM_REDUCE", 3, 0, 3),
    integer(param::PRELINEAR, "KLV_PARAM_PRELINEAR", 1, 0, 1),
    integer(1059, "", 0, 0, 1),
    integer(1060, "", 0, 0, 1),
    integer(1061, "", 1, 0, 1),
    integer(param::LPMETHOD, "KLV_PARAM_LPMETHOD", 0, 0, 6),
    integer(param::QPMETHOD, "KLV_PARAM_QPMETHOD", 0, 0, 6),
    text(param::WORKDIR, "KLV_PARAM_WORKDIR", "."),
    real(param::WORKMEM, "KLV_PARAM_WORKMEM", 128.0, 0.0, kNoLimit),
    integer(1066, "", 0, -1, 1),
    processors(param::THREADS, "KLV_PARAM_THREADS"),
    integer(1068, "", 0, 0, 1),
    integer(1069, "", 0, 0, 1),
    integer(1070, "", 1, 0, 1),
    integer(1071, "", 1, 0, 2),
    integer(1072, "", 1, 0, 1),
    integer(1073, "", 0, 0, 6),
    integer(param::CONFLICTDISPLAY, "KLV_PARAM_CONFLICTDISPLAY", 1, 0, 2),
    integer(1075, "", 0, 0, 1),
    integer(param::SIFTDISPLAY, "KLV_PARAM_SIFTDISPLAY", 1, 0, 2),
    integer(param::SIFTALG, "KLV_PARAM_SIFTALG", 0, 0, 4),
    integer(param::SIFTITLIM, "KLV_PARAM_SIFTITLIM", kCountLimit, 0, kCountLimit),
    integer(1079, "", 0, 0, 1),
    integer(param::MPSLONGNUM, "KLV_PARAM_MPSLONGNUM", 1, 0, 1),
    integer(param::MEMORYEMPHASIS, "KLV_PARAM_MEMORYEMPHASIS", 0, 0, 1),
    integer(param::NUMERICALEMPHASIS, "KLV_PARAM_NUMERICALEMPHASIS", 0, 0, 1),
    integer(param::FEASOPTMODE, "KLV_PARAM_FEASOPTMODE", 0, 0, 5),
    integer(1085, "", 0, 0, 3),
    integer(1086, "", 0, 0, 1),
    integer(1087, "", 1, 0, 1),
    integer(1088, "", 0, 0, kCountLimit),
    integer(1089, "", 0, -kCountLimit, kCountLimit),
    real(1090, "", 0.0, -kNoLimit, kNoLimit),
    integer(1091, "", 1, 0, 1),
    integer(1092, "", 0, 0, 1),
    integer(1093, "", 0, -1, 1),
    integer(1094, "", -1, -1, 1),
    real(1095, "", 1e9, 10.0, kNoLimit),
    integer(1096, "", 0, -1, 1),
    integer(1097, "", 0, -1, 1),
    integer(1100, "", 0, 0, 1),
    real(1101, "", 0.5, 0.0, 1.0),
    integer(1102, "", 1, 0, 1),
    integer(1103, "", 0, 0, 2),
    integer(1104, "", 1, 0, 1),
    integer(1105, "", 1, 0, 1),
    text(1106, "", ".lp"),
    integer(1107, "", 1, 0, 3),
    integer(1108, "", 0, 0, kCountLimit),
    integer(param::PARALLELMODE, "KLV_PARAM_PARALLELMODE", 0, -1, 1),
    integer(param::TUNINGMEASURE, "KLV_PARAM_TUNINGMEASURE", 1, 1, 2),
    integer(param::TUNINGREPEAT, "KLV_PARAM_TUNINGREPEAT", 1, 1, kCountLimit),
    real(param::TUNINGTILIM, "KLV_PARAM_TUNINGTILIM", 10000.0, 1.0, kNoLimit),
    integer(param::TUNINGDISPLAY, "KLV_PARAM_TUNINGDISPLAY", 1, 0, 3),
    integer(param::WRITELEVEL, "KLV_PARAM_WRITELEVEL", 0, 0, 4),
    real(1115, "", 0.0, 0.0, kNoLimit),
    text(1116, "", ".lp"),
    integer(1117, "", 1, 0, 1),
    integer(1119, "", 0, 0, 4),
    integer(1120, "", 0, -1, 1),
    integer(param::PERFVAR_RUNS, "KLV_PARAM_PERFVAR_RUNS", 10, 2, kCountLimit),
    integer(param::PERFVAR_DISPLAY, "KLV_PARAM_PERFVAR_DISPLAY", 1, 0, 1),
    integer(param::PERFVAR_MEASURE, "KLV_PARAM_PERFVAR_MEASURE", 0, 0, 1),
    // Mixed integer
    integer(param::BRDIR, "KLV_PARAM_BRDIR", 0, -1, 1),
    real(param::BTTOL, "KLV_PARAM_BTTOL", 0.9999, 0.0, 1.0),
    integer(param::CLIQUES, "KLV_PARAM_CLIQUES", 0, -1, 3),
    integer(param::COEREDIND, "KLV_PARAM_COEREDIND", 2, 0, 2),
    integer(param::COVERS, "KLV_PARAM_COVERS", 0, -1, 3),
    unbounded(param::CUTLO, "KLV_PARAM_CUTLO", -kNoLimit),
    unbounded(param::CUTUP, "KLV_PARAM_CUTUP", kNoLimit),
    real(param::EPAGAP, "KLV_PARAM_EPAGAP", 1e-6, 0.0, 1e20),
    real(param::EPGAP, "KLV_PARAM_EPGAP", 0.0001, 0.0, 1.0),
    real(param::EPINT, "KLV_PARAM_EPINT", 1e-5, 0.0, 0.5),
    integer(param::MIPDISPLAY, "KLV_PARAM_MIPDISPLAY", 2, 0, 5),
    integer(param::MIPINTERVAL, "KLV_PARAM_MIPINTERVAL", 100, 1, kCountLimit),
    processors(2014, ""),
    integer(param::INTSOLLIM, "KLV_PARAM_INTSOLLIM", kCountLimit, 1, kCountLimit),
    integer(param::NODEFILEIND, "KLV_PARAM_NODEFILEIND", 1, 0, 3),
    integer(param::NODELIM, "KLV_PARAM_NODELIM", kCountLimit, 0, kCountLimit),
    integer(param::NODESEL, "KLV_PARAM_NODESEL", 1, 0, 3),
    unbounded(param::OBJDIF, "KLV_PARAM_OBJDIF", 0.0),
    integer(param::MIPORDIND, "KLV_PARAM_MIPORDIND", 1, 0, 1),
    real(param::RELOBJDIF, "KLV_PARAM_RELOBJDIF", 0.0, 0.0, 1.0),
    integer(param::STARTALG, "KLV_PARAM_STARTALG", 0, 0, 6),
    integer(param::SUBALG, "KLV_PARAM_SUBALG", 0, 0, 5),
    real(param::TRELIM, "KLV_PARAM_TRELIM", kNoLimit, 0.0, kNoLimit),
    integer(param::VARSEL, "KLV_PARAM_VARSEL", 0, -1, 4),
    integer(param::BNDSTRENIND, "KLV_PARAM_BNDSTRENIND", -1, -1, 1),
    integer(param::HEURFREQ, "KLV_PARAM_HEURFREQ", 0, -1, kCountLimit),
    integer(param::MIPORDTYPE, "KLV_PARAM_MIPORDTYPE", 0, 0, 3),
    real(param::CUTSFACTOR, "KLV_PARAM_CUTSFACTOR", 4.0, 0.0, kNoLimit),
    integer(param::RELAXPREIND, "KLV_PARAM_RELAXPREIND", -1, -1, 1),
    integer(param::PRESLVND, "KLV_PARAM_PRESLVND", 0, -1, 2),
    integer(2038, "", 1, -1, 1),
    integer(param::BBINTERVAL, "KLV_PARAM_BBINTERVAL", 7, 0, kCountLimit),
    integer(param::FLOWCOVERS, "KLV_PARAM_FLOWCOVERS", 0, -1, 2),
    integer(param::IMPLBD, "KLV_PARAM_IMPLBD", 0, -1, 2),
    integer(param::PROBE, "KLV_PARAM_PROBE", 0, -1, 3),
    integer(param::GUBCOVERS, "KLV_PARAM_GUBCOVERS", 0, -1, 2),
    integer(param::STRONGCANDLIM, "KLV_PARAM_STRONGCANDLIM", 10, 1, kCountLimit),
    integer(param::STRONGITLIM, "KLV_PARAM_STRONGITLIM", 0, 0, kCountLimit),
    processors(2047, ""),
    integer(param::FRACCAND, "KLV_PARAM_FRACCAND", 200, 1, kCountLimit),
    integer(param::FRACCUTS, "KLV_PARAM_FRACCUTS", 0, -1, 2),
    integer(param::FRACPASS, "KLV_PARAM_FRACPASS", 0, 0, kCountLimit),
    integer(param::FLOWPATHS, "KLV_PARAM_FLOWPATHS", 0, -1, 2),
    integer(param::MIRCUTS, "KLV_PARAM_MIRCUTS", 0, -1, 2),
    integer(param::DISJCUTS, "KLV_PARAM_DISJCUTS", 0, -1, 3),
    integer(param::AGGCUTLIM, "KLV_PARAM_AGGCUTLIM", 3, 0, kCountLimit),
    integer(param::MIPCBREDLP, "KLV_PARAM_MIPCBREDLP", 1, 0, 1),
    integer(param::CUTPASS, "KLV_PARAM_CUTPASS", 0, -1, kCountLimit),
    integer(2057, "", 0, 0, 1),
    integer(param::MIPEMPHASIS, "KLV_PARAM_MIPEMPHASIS", 0, 0, 4),
    integer(param::SYMMETRY, "KLV_PARAM_SYMMETRY", -1, -1, 5),
    integer(param::DIVETYPE, "KLV_PARAM_DIVETYPE", 0, 0, 3),
    integer(param::RINSHEUR, "KLV_PARAM_RINSHEUR", 0, -1, kCountLimit),
    integer(param::SUBMIPNODELIM, "KLV_PARAM_SUBMIPNODELIM", 500, 1, kCountLimit),
    integer(param::LBHEUR, "KLV_PARAM_LBHEUR", 0, 0, 1),
    integer(param::REPEATPRESOLVE, "KLV_PARAM_REPEATPRESOLVE", -1, -1, 3),
    real(param::PROBETIME, "KLV_PARAM_PROBETIME", kNoLimit, 0.0, kNoLimit),
    real(param::POLISHTIME, "KLV_PARAM_POLISHTIME", 0.0, 0.0, kNoLimit),
    integer(param::REPAIRTRIES, "KLV_PARAM_REPAIRTRIES", 0, -1, kCountLimit),
    real(2068, "", 0.001, 0.0, kNoLimit),
    integer(2069, "", 10, 1, kCountLimit),
    integer(2070, "", 0, 0, 1),
    real(2071, "", 1.0, 0.0, kNoLimit),
    real(2072, "", 20.0, 0.0, kNoLimit),
    real(param::EPRELAX, "KLV_PARAM_EPRELAX", 1e-6, 0.0, 1e20),
    integer(2074, "", -1, -1, kCountLimit),
    integer(2075, "", -1, -1, 2),
    integer(2076, "", 0, 0, 2),
    integer(2077, "", 1, 0, 1),
    integer(2078, "", 0, -1, kCountLimit),
    integer(2080, "", -1, -1, 2),
    integer(2081, "", -1, -1, 2),
    integer(2082, "", 0, 0, 1),
    integer(2083, "", 0, -32, 32),
    integer(2084, "", 1, 0, 1),
    integer(2085, "", 1, 0, 1),
    integer(2086, "", 0, -1, kCountLimit),
    integer(2087, "", 0, 0, 1),
    integer(2088, "", 0, 0, 1),
    integer(2089, "", 0, -1, kCountLimit),
    integer(2090, "", 0, -1, kCountLimit),
    integer(2091, "", 1, 0, 2),
    integer(2092, "", -1, -1, 1),
    integer(2093, "", 0, 0, 1),
    integer(2095, "", 1, 0, 1),
    real(2096, "", kNoLimit, 0.001, kNoLimit),
    real(2097, "", -1.0, -kNoLimit, kNoLimit),
    integer(param::FPHEUR, "KLV_PARAM_FPHEUR", 0, -1, 2),
    real(2099, "", 0.0, 0.0, kNoLimit),
    integer(2100, "", 1, 0, 1),
    integer(2101, "", 1, 0, 1),
    integer(param::EACHCUTLIM, "KLV_PARAM_EACHCUTLIM", kCountLimit, 0, kCountLimit),
    integer(param::SOLNPOOLCAPACITY, "KLV_PARAM_SOLNPOOLCAPACITY", kCountLimit, 0, kCountLimit),
    integer(param::SOLNPOOLREPLACE, "KLV_PARAM_SOLNPOOLREPLACE", 0, 0, 2),
    real(param::SOLNPOOLGAP, "KLV_PARAM_SOLNPOOLGAP", kNoLimit, 0.0, kNoLimit),
    real(param::SOLNPOOLAGAP, "KLV_PARAM_SOLNPOOLAGAP", kNoLimit, 0.0, kNoLimit),
    integer(param::SOLNPOOLINTENSITY, "KLV_PARAM_SOLNPOOLINTENSITY", 0, 0, 4),
    integer(param::POPULATELIM, "KLV_PARAM_POPULATELIM", 20, 1, kCountLimit),
    integer(param::MIPSEARCH, "KLV_PARAM_MIPSEARCH", 0, 0, 2),
    integer(param::MIQCPSTRAT, "KLV_PARAM_MIQCPSTRAT", 0, 0, 2),
    integer(param::ZEROHALFCUTS, "KLV_PARAM_ZEROHALFCUTS", 0, -1, 2),
    integer(2112, "", 1, 0, 1),
    integer(2113, "", 0, 0, 1),
    integer(2114, "", 0, 0, 3),
    integer(2115, "", 0, 0, 1),
    integer(2116, "", 0, -1, kCountLimit),
    integer(2117, "", -1, -2, kCountLimit),
    integer(2118, "", 0, -1, 2),
    integer(2119, "", 0, -1, kCountLimit),
    integer(2120, "", 1, 0, 1),
    integer(2121, "", 0, 0, 1),
    integer(2122, "", 0, 0, 4),
    integer(2123, "", 0, 0, 1),
    integer(2124, "", 0, -1, 2),
    integer(2125, "", 1, 0, 1),
    real(param::POLISHAFTEREPAGAP, "KLV_PARAM_POLISHAFTEREPAGAP", 0.0, 0.0, 1e20),
    real(param::POLISHAFTEREPGAP, "KLV_PARAM_POLISHAFTEREPGAP", 0.0, 0.0, 1.0),
    integer(param::POLISHAFTERNODE, "KLV_PARAM_POLISHAFTERNODE", kCountLimit, 0, kCountLimit),
    integer(param::POLISHAFTERINTSOL, "KLV_PARAM_POLISHAFTERINTSOL", kCountLimit, 1, kCountLimit),
    real(param::POLISHAFTERTIME, "KLV_PARAM_POLISHAFTERTIME", kNoLimit, 0.0, kNoLimit),
    real(2131, "", 8.0, 0.0, kNoLimit),
    integer(2132, "", 0, -1, 3),
    real(2133, "", kNoLimit, 0.0, kNoLimit),
    integer(param::MCFCUTS, "KLV_PARAM_MCFCUTS", 0, -1, 2),
    // Barrier
    real(3001, "", 0.0, 0.0, 1e18),
    real(param::BAREPCOMP, "KLV_PARAM_BAREPCOMP", 1e-8, 1e-12, kNoLimit),
    real(param::BARGROWTH, "KLV_PARAM_BARGROWTH", 1e12, 1.0, kNoLimit),
    real(param::BAROBJRNG, "KLV_PARAM_BAROBJRNG", 1e20, 0.0, kNoLimit),
    real(3005, "", 0.0, 0.0, 1e18),
    integer(param::BARALG, "KLV_PARAM_BARALG", 0, 0, 3),
    integer(param::BARCOLNZ, "KLV_PARAM_BARCOLNZ", 0, 0, kCountLimit),
    integer(param::BARDISPLAY, "KLV_PARAM_BARDISPLAY", 1, 0, 2),
    integer(param::BARITLIM, "KLV_PARAM_BARITLIM", kCountLimit, 0, kCountLimit),
    integer(param::BARMAXCOR, "KLV_PARAM_BARMAXCOR", -1, -1, kCountLimit),
    integer(param::BARORDER, "KLV_PARAM_BARORDER", 0, 0, 3),
    integer(3015, "", 0, 0, 2),
    processors(3016, ""),
    integer(param::BARSTARTALG, "KLV_PARAM_BARSTARTALG", 1, 1, 4),
    integer(param::BARCROSSALG, "KLV_PARAM_BARCROSSALG", 0, -1, 2),
    real(param::BARQCPEPCOMP, "KLV_PARAM_BARQCPEPCOMP", 1e-7, 1e-12, kNoLimit),
    real(3021, "", kNoLimit, 0.0, kNoLimit),
    processors(3022, ""),
    integer(3023, "", 50, 1, kCountLimit),
    integer(3024, "", 0, 0, 1),
    real(3025, "", 0.0, 0.0, 1.0),
    integer(3026, "", 0, -1, 1),
    integer(3027, "", 1, 1, 5),
    real(3028, "", 0.001, 0.0, 1.0),
    integer(3029, "", 2, 0, 6),
    integer(3030, "", 0, 0, 2),
    real(3031, "", 0.0, 0.0, kNoLimit),
    real(3032, "", 1.0, 1e-6, 1.0),
    // Quadratic
    integer(param::QPNZREADLIM, "KLV_PARAM_QPNZREADLIM", 5000, 0, kReadLimit),
    integer(4002, "", -1, -1, kReadLimit),
    integer(param::QPMAKEPSDIND, "KLV_PARAM_QPMAKEPSDIND", 1, 0, 1),
    // Network
    integer(param::NETITLIM, "KLV_PARAM_NETITLIM", kCountLimit, 0, kCountLimit),
    real(param::NETEPOPT, "KLV_PARAM_NETEPOPT", 1e-6, 1e-11, 0.1),
    real(param::NETEPRHS, "KLV_PARAM_NETEPRHS", 1e-6, 1e-11, 0.1),
    integer(param::NETPPRIIND, "KLV_PARAM_NETPPRIIND", 0, 0, 3),
    integer(param::NETDISPLAY, "KLV_PARAM_NETDISPLAY", 2, 0, 2),
}};
// clang-format on

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
