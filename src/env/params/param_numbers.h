// Numbers of the parameters. The public ones have the name that follows KLV_PARAM_ in the C
// interface. The hidden ones have no public name; those that the library reads have a name of our
// own here.
#pragma once

namespace kelvo::param {

// Hidden parameters

/// Iterations between two periodic services of an optimizer (callbacks, stop check).
inline constexpr int SERVICE_INTERVAL = 1004;
/// Other than 0: an optimum that violates the unscaled model is left as it is.
inline constexpr int NO_RESTART_PASSES = 1017;
/// 1: presolve reports its progress, and its outcomes that reach the API frame are printed like
/// errors.
inline constexpr int PRINT_PRESOLVE_OUTCOMES = 1043;
/// Never written to a settings snapshot.
inline constexpr int NOT_IN_SNAPSHOT = 1053;
/// Storage of a working LP's matrix: 1 compressed, -1 plain, 0 compressed with MEMORYEMPHASIS.
inline constexpr int MATRIX_COMPRESSION = 1066;
/// 1: every successful setting of a parameter is printed.
inline constexpr int ECHO_SETTINGS = 1075;
/// 1: the LP writer writes objective terms with coefficient 0.
inline constexpr int EVERY_OBJECTIVE_TERM = 1086;
/// 0: incumbents are written as MIP starts in the older form, a line for each column.
inline constexpr int XML_MIP_STARTS = 1102;
/// 1: the LP writer changes names that the format cannot hold.
inline constexpr int LEGALIZE_NAMES = 1105;
/// 1: the MPS reader tells which objective and which sets it selected.
inline constexpr int SHOW_READER_CHOICES = 1117;

// Hidden switches of single families of reductions: 1 skips those with SKIP, 0 the others.
inline constexpr int SKIP_SINGLETON_ROWS = 1059;
inline constexpr int SKIP_COST_FIXING = 1060;
inline constexpr int AGGREGATION = 1061;
inline constexpr int SKIP_FREE_SINGLETONS = 1069;
inline constexpr int DUPLICATE_ROWS = 1070;
inline constexpr int DUAL_BOUNDS = 1071;
inline constexpr int DUPLICATE_COLUMNS = 1072;
inline constexpr int SLACK_COLUMNS = 1091;
inline constexpr int SKIP_DOUBLETONS = 1092;
inline constexpr int ACTIVITY_ROWS = 1094;
inline constexpr int SKIP_IMPLIED_ROWS = 1100;
/// No substitution of presolve makes an entry larger than this.
inline constexpr int LARGE_NUMBER = 1095;
/// Largest ratio of an entry to the pivot of a substitution; not positive: automatic.
inline constexpr int COEFFICIENT_RATIO = 2097;

// General
inline constexpr int ADVIND = 1001;
inline constexpr int AGGFILL = 1002;
inline constexpr int AGGIND = 1003;
inline constexpr int CFILEMUL = 1005;
inline constexpr int CLOCKTYPE = 1006;
inline constexpr int CRAIND = 1007;
inline constexpr int DEPIND = 1008;
inline constexpr int DPRIIND = 1009;
inline constexpr int PRICELIM = 1010;
inline constexpr int EPMRK = 1013;
inline constexpr int EPOPT = 1014;
inline constexpr int EPPER = 1015;
inline constexpr int EPRHS = 1016;
inline constexpr int SIMDISPLAY = 1019;
inline constexpr int ITLIM = 1020;
inline constexpr int ROWREADLIM = 1021;
inline constexpr int NETFIND = 1022;
inline constexpr int COLREADLIM = 1023;
inline constexpr int NZREADLIM = 1024;
inline constexpr int OBJLLIM = 1025;
inline constexpr int OBJULIM = 1026;
inline constexpr int PERIND = 1027;
inline constexpr int PERLIM = 1028;
inline constexpr int PPRIIND = 1029;
inline constexpr int PREIND = 1030;
inline constexpr int REINV = 1031;
inline constexpr int RFILEMUL = 1033;
inline constexpr int SCAIND = 1034;
inline constexpr int SCRIND = 1035;
inline constexpr int SINGLIM = 1037;
inline constexpr int SINGTOL = 1038;
inline constexpr int TILIM = 1039;
inline constexpr int PREDUAL = 1044;
inline constexpr int PREPASS = 1052;
inline constexpr int DATACHECK = 1056;
inline constexpr int REDUCE = 1057;
inline constexpr int PRELINEAR = 1058;
inline constexpr int LPMETHOD = 1062;
inline constexpr int QPMETHOD = 1063;
inline constexpr int WORKDIR = 1064;
inline constexpr int WORKMEM = 1065;
inline constexpr int THREADS = 1067;
inline constexpr int CONFLICTDISPLAY = 1074;
inline constexpr int SIFTDISPLAY = 1076;
inline constexpr int SIFTALG = 1077;
inline constexpr int SIFTITLIM = 1078;
inline constexpr int MPSLONGNUM = 1081;
inline constexpr int MEMORYEMPHASIS = 1082;
inline constexpr int NUMERICALEMPHASIS = 1083;
inline constexpr int FEASOPTMODE = 1084;
inline constexpr int PARALLELMODE = 1109;
inline constexpr int TUNINGMEASURE = 1110;
inline constexpr int TUNINGREPEAT = 1111;
inline constexpr int TUNINGTILIM = 1112;
inline constexpr int TUNINGDISPLAY = 1113;
inline constexpr int WRITELEVEL = 1114;
inline constexpr int PERFVAR_RUNS = 1121;
inline constexpr int PERFVAR_DISPLAY = 1122;
inline constexpr int PERFVAR_MEASURE = 1123;

// Mixed integer
inline constexpr int BRDIR = 2001;
inline constexpr int BTTOL = 2002;
inline constexpr int CLIQUES = 2003;
inline constexpr int COEREDIND = 2004;
inline constexpr int COVERS = 2005;
inline constexpr int CUTLO = 2006;
inline constexpr int CUTUP = 2007;
inline constexpr int EPAGAP = 2008;
inline constexpr int EPGAP = 2009;
inline constexpr int EPINT = 2010;
inline constexpr int MIPDISPLAY = 2012;
inline constexpr int MIPINTERVAL = 2013;
inline constexpr int INTSOLLIM = 2015;
inline constexpr int NODEFILEIND = 2016;
inline constexpr int NODELIM = 2017;
inline constexpr int NODESEL = 2018;
inline constexpr int OBJDIF = 2019;
inline constexpr int MIPORDIND = 2020;
inline constexpr int RELOBJDIF = 2022;
inline constexpr int STARTALG = 2025;
inline constexpr int SUBALG = 2026;
inline constexpr int TRELIM = 2027;
inline constexpr int VARSEL = 2028;
inline constexpr int BNDSTRENIND = 2029;
inline constexpr int HEURFREQ = 2031;
inline constexpr int MIPORDTYPE = 2032;
inline constexpr int CUTSFACTOR = 2033;
inline constexpr int RELAXPREIND = 2034;
inline constexpr int PRESLVND = 2037;
inline constexpr int BBINTERVAL = 2039;
inline constexpr int FLOWCOVERS = 2040;
inline constexpr int IMPLBD = 2041;
inline constexpr int PROBE = 2042;
inline constexpr int GUBCOVERS = 2044;
inline constexpr int STRONGCANDLIM = 2045;
inline constexpr int STRONGITLIM = 2046;
inline constexpr int FRACCAND = 2048;
inline constexpr int FRACCUTS = 2049;
inline constexpr int FRACPASS = 2050;
inline constexpr int FLOWPATHS = 2051;
inline constexpr int MIRCUTS = 2052;
inline constexpr int DISJCUTS = 2053;
inline constexpr int AGGCUTLIM = 2054;
inline constexpr int MIPCBREDLP = 2055;
inline constexpr int CUTPASS = 2056;
inline constexpr int MIPEMPHASIS = 2058;
inline constexpr int SYMMETRY = 2059;
inline constexpr int DIVETYPE = 2060;
inline constexpr int RINSHEUR = 2061;
inline constexpr int SUBMIPNODELIM = 2062;
inline constexpr int LBHEUR = 2063;
inline constexpr int REPEATPRESOLVE = 2064;
inline constexpr int PROBETIME = 2065;
inline constexpr int POLISHTIME = 2066;
inline constexpr int REPAIRTRIES = 2067;
inline constexpr int EPRELAX = 2073;
inline constexpr int FPHEUR = 2098;
inline constexpr int EACHCUTLIM = 2102;
inline constexpr int SOLNPOOLCAPACITY = 2103;
inline constexpr int SOLNPOOLREPLACE = 2104;
inline constexpr int SOLNPOOLGAP = 2105;
inline constexpr int SOLNPOOLAGAP = 2106;
inline constexpr int SOLNPOOLINTENSITY = 2107;
inline constexpr int POPULATELIM = 2108;
inline constexpr int MIPSEARCH = 2109;
inline constexpr int MIQCPSTRAT = 2110;
inline constexpr int ZEROHALFCUTS = 2111;
inline constexpr int POLISHAFTEREPAGAP = 2126;
inline constexpr int POLISHAFTEREPGAP = 2127;
inline constexpr int POLISHAFTERNODE = 2128;
inline constexpr int POLISHAFTERINTSOL = 2129;
inline constexpr int POLISHAFTERTIME = 2130;
inline constexpr int MCFCUTS = 2134;

// Barrier
inline constexpr int BAREPCOMP = 3002;
inline constexpr int BARGROWTH = 3003;
inline constexpr int BAROBJRNG = 3004;
inline constexpr int BARALG = 3007;
inline constexpr int BARCOLNZ = 3009;
inline constexpr int BARDISPLAY = 3010;
inline constexpr int BARITLIM = 3012;
inline constexpr int BARMAXCOR = 3013;
inline constexpr int BARORDER = 3014;
inline constexpr int BARSTARTALG = 3017;
inline constexpr int BARCROSSALG = 3018;
inline constexpr int BARQCPEPCOMP = 3020;

// Quadratic
inline constexpr int QPNZREADLIM = 4001;
inline constexpr int QPMAKEPSDIND = 4010;

// Network
inline constexpr int NETITLIM = 5001;
inline constexpr int NETEPOPT = 5002;
inline constexpr int NETEPRHS = 5003;
inline constexpr int NETPPRIIND = 5004;
inline constexpr int NETDISPLAY = 5005;

}  // namespace kelvo::param
