// Codes of the error table by name: the one place that knows their numbers. Names and texts are in
// step (env/error_table.cpp), and so are the macros of the C interface: kNoSolution is
// KLV_ERROR_NO_SOLUTION there, as far as some function returns it.
#pragma once

namespace kelvo::error {

// General, environment and parameters
inline constexpr int kOutOfMemory = 1001;
inline constexpr int kNoEnvironment = 1002;
inline constexpr int kBadArgument = 1003;
inline constexpr int kNullPointer = 1004;
inline constexpr int kCallbackFailed = 1006;
inline constexpr int kNoProblem = 1009;
inline constexpr int kProblemSizeLimits = 1012;
inline constexpr int kBadParameterNumber = 1013;
inline constexpr int kParameterTooSmall = 1014;
inline constexpr int kParameterTooBig = 1015;
inline constexpr int kNotForMixedInteger = 1017;
inline constexpr int kNotForQuadratic = 1018;
inline constexpr int kChildOfChild = 1019;
inline constexpr int kThreadLimit = 1020;
inline constexpr int kCloseOfChild = 1021;
inline constexpr int kUnknownProblemType = 1022;
inline constexpr int kNotSingleProblem = 1023;
inline constexpr int kNotMilp = 1024;
inline constexpr int kTextParameterTooLong = 1026;
inline constexpr int kPostsolveFailed = 1027;
inline constexpr int kBadParameterName = 1028;
inline constexpr int kNotMiqp = 1029;
inline constexpr int kNotMiqcp = 1030;
inline constexpr int kNotForQuadraticConstraints = 1031;
inline constexpr int kNoChannel = 1051;
inline constexpr int kNoFileDestination = 1052;
inline constexpr int kNoFunctionDestination = 1053;

// Presolve
inline constexpr int kPresolveInfeasibleOrUnbounded = 1101;
inline constexpr int kNoPresolved = 1103;
inline constexpr int kPresolveAborted = 1106;
inline constexpr int kNoMemoryForBasis = 1107;
inline constexpr int kCannotCopySets = 1108;
inline constexpr int kCannotCopyOrder = 1109;
inline constexpr int kNoMemoryForMipSolution = 1110;
inline constexpr int kNoMemoryForQpSolution = 1111;
inline constexpr int kNoMemoryForStart = 1112;
inline constexpr int kCannotLoadBasis = 1114;
inline constexpr int kNoPresolvedBasis = 1115;
inline constexpr int kPresolveInfeasible = 1117;
inline constexpr int kPresolveUnbounded = 1118;
inline constexpr int kNotForDualForm = 1119;
inline constexpr int kCannotUncrush = 1120;
inline constexpr int kCannotCrush = 1121;
inline constexpr int kBadPresolveSetting = 1122;
inline constexpr int kPresolveTimeLimit = 1123;

// Problem data, indices and solutions
inline constexpr int kIndexRange = 1200;
inline constexpr int kColumnIndex = 1201;
inline constexpr int kRowIndex = 1203;
inline constexpr int kBeginTooSmall = 1205;
inline constexpr int kEndTooBig = 1206;
inline constexpr int kInsufficientLength = 1207;
inline constexpr int kArrayTooLong = 1208;
inline constexpr int kNoDefaultNames = 1209;
inline constexpr int kNameNotFound = 1210;
inline constexpr int kObjectiveHasNoRhs = 1211;
inline constexpr int kNotForFeasopt = 1212;
inline constexpr int kDiscontinuousPiecewise = 1213;
inline constexpr int kSenseEntry = 1215;
inline constexpr int kNoRanges = 1216;
inline constexpr int kNoSolution = 1217;
inline constexpr int kNoNames = 1219;
inline constexpr int kNotFixed = 1221;
inline constexpr int kDuplicateEntry = 1222;
inline constexpr int kNoBarrierSolution = 1223;
inline constexpr int kNullName = 1224;
inline constexpr int kNotANumberEntry = 1225;
inline constexpr int kNotAscending = 1226;
inline constexpr int kCountEntry = 1227;
inline constexpr int kOverlappingEntries = 1228;
inline constexpr int kBoundCodeEntry = 1229;
inline constexpr int kNodeIndex = 1230;
inline constexpr int kArcIndex = 1231;
inline constexpr int kNoDualSolution = 1232;
inline constexpr int kEntryTooLarge = 1233;
inline constexpr int kCannotStartParallelThread = 1234;
inline constexpr int kNotBasic = 1251;
inline constexpr int kOptimalRequired = 1252;
inline constexpr int kBasisStatusEntry = 1253;
inline constexpr int kUnboundedRequired = 1254;
inline constexpr int kNotForSuperbasis = 1255;
inline constexpr int kBasisSingular = 1256;
inline constexpr int kBadPricing = 1257;
inline constexpr int kNoFactor = 1258;
inline constexpr int kNoSensitivity = 1260;
inline constexpr int kNoBasicSolution = 1261;
inline constexpr int kNoBasis = 1262;
inline constexpr int kStrongBranchingAborted = 1263;
inline constexpr int kNoNorms = 1264;
inline constexpr int kDualUnboundedRequired = 1265;
inline constexpr int kStrongBranchingTimeLimit = 1266;
inline constexpr int kIllegalPivot = 1267;
inline constexpr int kConditionTimeLimit = 1268;
inline constexpr int kBadMethodChoice = 1292;

// Reading files: parameter, MPS and general input
inline constexpr int kNoFileName = 1421;
inline constexpr int kCannotWriteFile = 1422;
inline constexpr int kCannotReadFile = 1423;
inline constexpr int kBadFileType = 1424;
inline constexpr int kXmlSyntax = 1425;
inline constexpr int kTooManyRows = 1431;
inline constexpr int kTooManyColumns = 1432;
inline constexpr int kTooManyCoefficients = 1433;
inline constexpr int kNotANumber = 1434;
inline constexpr int kExponentOutOfRange = 1435;
inline constexpr int kNoObjectiveSense = 1436;
inline constexpr int kQuadraticConstraintSense = 1437;
inline constexpr int kIllegalCut = 1438;
inline constexpr int kIllegalIndicator = 1439;
inline constexpr int kNoNameSection = 1441;
inline constexpr int kUnknownSetType = 1442;
inline constexpr int kColumnRepeatsRow = 1443;
inline constexpr int kSetRepeatsRow = 1444;
inline constexpr int kRowRepeats = 1445;
inline constexpr int kColumnRepeats = 1446;
inline constexpr int kNameRepeats = 1447;
inline constexpr int kNotARow = 1448;
inline constexpr int kNotAColumn = 1449;
inline constexpr int kNoRowSense = 1453;
inline constexpr int kFixedAfterBound = 1454;
inline constexpr int kFreeAfterBound = 1455;
inline constexpr int kBinaryAfterBound = 1456;
inline constexpr int kUnknownBoundType = 1457;
inline constexpr int kUpperBoundRepeats = 1458;
inline constexpr int kLowerBoundRepeats = 1459;
inline constexpr int kNoBoundType = 1460;
inline constexpr int kNoQuadraticSection = 1461;
inline constexpr int kExpectingEnd = 1462;
inline constexpr int kBeyondIntegerLimit = 1463;
inline constexpr int kNameTooLong = 1464;
inline constexpr int kLineTooLong = 1465;
inline constexpr int kNoRowsSection = 1471;
inline constexpr int kNoColumnsSection = 1472;
inline constexpr int kExpectingRanges = 1473;
inline constexpr int kRangesOutOfOrder = 1474;
inline constexpr int kExpectingQuadraticSection = 1475;
inline constexpr int kNoObjectiveRow = 1476;
inline constexpr int kRowRepeatsNotPrinted = 1477;
inline constexpr int kColumnRepeatsNotPrinted = 1478;
inline constexpr int kEntryRepeats = 1479;
inline constexpr int kIntegersBeginTwice = 1480;
inline constexpr int kIntegersEndWithoutBegin = 1481;
inline constexpr int kSetBeginsTwice = 1482;
inline constexpr int kSetEndsWithoutBegin = 1483;
inline constexpr int kTooManyRimVectors = 1484;
inline constexpr int kTooManyRimNonzeros = 1485;
inline constexpr int kNoRowName = 1486;
inline constexpr int kUnknownObjectiveSense = 1487;

// Reading files: network, basis, SAV and vector files
inline constexpr int kInconsistentNetwork = 1530;
inline constexpr int kNotANetworkProblem = 1531;
inline constexpr int kBadRowIdentifier = 1532;
inline constexpr int kBadCharacter = 1537;
inline constexpr int kNetworkFileEnds = 1538;
inline constexpr int kTooFewBasicVariables = 1550;
inline constexpr int kUnknownBasisIndicator = 1551;
inline constexpr int kEndMissing = 1552;
inline constexpr int kWrongNumberOfEntries = 1553;
inline constexpr int kSuperbasicNotAllowed = 1554;
inline constexpr int kWrongBasisSize = 1555;
inline constexpr int kNoVectorSolution = 1556;
inline constexpr int kNotABinaryModel = 1560;
inline constexpr int kBinaryModelEnds = 1561;
inline constexpr int kCannotWriteBinaryModel = 1562;
inline constexpr int kIncompatibleBinaryModel = 1563;

// LP format
inline constexpr int kAdjacentSigns = 1602;
inline constexpr int kSenseInObjective = 1603;
inline constexpr int kAdjacentSignAndSense = 1604;
inline constexpr int kQuadraticTermInConstraint = 1605;
inline constexpr int kAdjacentSignAndOperator = 1606;
inline constexpr int kExpectedSign = 1607;
inline constexpr int kExpectedSignOrSense = 1608;
inline constexpr int kExpectedNameFirst = 1609;
inline constexpr int kExpectedRhs = 1610;
inline constexpr int kExpectedNumberFirst = 1611;
inline constexpr int kExpectedExponent = 1612;
inline constexpr int kExponentNotTwo = 1613;
inline constexpr int kExpectedPowerOrProduct = 1614;
inline constexpr int kExpectedNumber = 1615;
inline constexpr int kExpectedName = 1616;
inline constexpr int kNotAName = 1617;
inline constexpr int kExponentIncomplete = 1618;
inline constexpr int kBadQuadraticDivisor = 1619;
inline constexpr int kNoBoundSense = 1621;
inline constexpr int kBadBoundSense = 1622;
inline constexpr int kNoBoundNumber = 1623;
inline constexpr int kExpectedColon = 1627;
inline constexpr int kNotRepresentable = 1650;
inline constexpr int kNotEnoughEntries = 1660;
inline constexpr int kBadHeader = 1661;

// Infeasibility analysis and variability estimation
inline constexpr int kNoIis = 1701;
inline constexpr int kNoSolutionForIis = 1702;
inline constexpr int kFeasibleNoIis = 1703;
inline constexpr int kPerhapsFeasibleNoIis = 1704;
inline constexpr int kUnscaledInfeasibleNoIis = 1705;
inline constexpr int kCannotComputeIis = 1706;
inline constexpr int kIisNeedsBasis = 1707;
inline constexpr int kCannotLoadIisProblem = 1709;
inline constexpr int kIisObjectiveLimit = 1710;
inline constexpr int kIisIterationLimit = 1711;
inline constexpr int kIisTimeLimit = 1712;
inline constexpr int kCannotOptimizeIisProblem = 1713;
inline constexpr int kNoConflict = 1719;
inline constexpr int kConflictNotReproduced = 1720;
inline constexpr int kVariabilityTestFailed = 1750;

// Callbacks, temporary files and parameter compatibility
inline constexpr int kCannotOpenTemporaryFile = 1801;
inline constexpr int kCannotReadTemporaryFile = 1802;
inline constexpr int kCannotWriteTemporaryFile = 1803;
inline constexpr int kCallFromInfoCallback = 1804;
inline constexpr int kDynamicSearchWithControlCallbacks = 1805;
inline constexpr int kForeignProblem = 1806;
inline constexpr int kIncompatibleParameters = 1807;

// Robust optimization
inline constexpr int kInconsistentRobustData = 2057;

// Mixed-integer
inline constexpr int kNotMixedInteger = 3003;
inline constexpr int kNegativePriority = 3006;
inline constexpr int kDirectionEntry = 3007;
inline constexpr int kSetTypeEntry = 3009;
inline constexpr int kEqualWeights = 3010;
inline constexpr int kUnknownDirection = 3012;
inline constexpr int kNoSets = 3015;
inline constexpr int kNoOrder = 3016;
inline constexpr int kValueBeyondIntegerLimit = 3018;
inline constexpr int kSubproblemFailed = 3019;
inline constexpr int kNoMipStart = 3020;
inline constexpr int kColumnTypeEntry = 3021;
inline constexpr int kNoIncumbentValues = 3023;
inline constexpr int kNoSolutionPool = 3024;
inline constexpr int kNoSetType = 3301;
inline constexpr int kNoTree = 3412;
inline constexpr int kTreeMemoryLimit = 3413;
inline constexpr int kFilterColumnNotBinary = 3414;
inline constexpr int kNoCallbackInfo = 3504;
inline constexpr int kCannotMakeMutex = 3601;
inline constexpr int kCannotStartThread = 3603;

// Barrier
inline constexpr int kBadPermutation = 4005;

// Quadratic
inline constexpr int kNotSemidefinite = 5002;
inline constexpr int kNotQuadratic = 5004;
inline constexpr int kDuplicatePair = 5011;
inline constexpr int kNotSymmetric = 5012;
inline constexpr int kNotIndefinite = 5014;

// Network
inline constexpr int kBadNetworkSense = 6002;

}  // namespace kelvo::error
