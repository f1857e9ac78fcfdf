// Codes of the error table by name, as far as engines and mutators return them.
#pragma once

namespace kelvo::error {

inline constexpr int kOutOfMemory = 1001;
inline constexpr int kNoEnvironment = 1002;
inline constexpr int kBadArgument = 1003;
inline constexpr int kNullPointer = 1004;
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
inline constexpr int kNotSingleProblem = 1023;
inline constexpr int kTextParameterTooLong = 1026;
inline constexpr int kBadParameterName = 1028;
inline constexpr int kNotForQuadraticConstraints = 1031;
inline constexpr int kNoChannel = 1051;
inline constexpr int kNoFileDestination = 1052;
inline constexpr int kNoFunctionDestination = 1053;
inline constexpr int kPresolveInfeasibleOrUnbounded = 1101;
inline constexpr int kPresolveAborted = 1106;
inline constexpr int kPresolveInfeasible = 1117;
inline constexpr int kPresolveUnbounded = 1118;
inline constexpr int kPresolveTimeLimit = 1123;
inline constexpr int kIndexRange = 1200;
inline constexpr int kColumnIndex = 1201;
inline constexpr int kRowIndex = 1203;
inline constexpr int kBeginTooSmall = 1205;
inline constexpr int kEndTooBig = 1206;
inline constexpr int kInsufficientLength = 1207;
inline constexpr int kNameNotFound = 1210;
inline constexpr int kObjectiveHasNoRhs = 1211;
inline constexpr int kSenseEntry = 1215;
inline constexpr int kNoRanges = 1216;
inline constexpr int kNoSolution = 1217;
inline constexpr int kNoNames = 1219;
inline constexpr int kNullName = 1224;
inline constexpr int kNotANumberEntry = 1225;
inline constexpr int kNotAscending = 1226;
inline constexpr int kCountEntry = 1227;
inline constexpr int kOverlappingEntries = 1228;
inline constexpr int kBoundCodeEntry = 1229;
inline constexpr int kNoDualSolution = 1232;
inline constexpr int kEntryTooLarge = 1233;
inline constexpr int kBasisSingular = 1256;
inline constexpr int kBadMethodChoice = 1292;
inline constexpr int kNoFileName = 1421;
inline constexpr int kCannotWriteFile = 1422;
inline constexpr int kCannotReadFile = 1423;
inline constexpr int kBadFileType = 1424;
inline constexpr int kNotANumber = 1434;
inline constexpr int kLineTooLong = 1465;
inline constexpr int kNotEnoughEntries = 1660;
inline constexpr int kBadHeader = 1661;
inline constexpr int kCallFromInfoCallback = 1804;
inline constexpr int kForeignProblem = 1806;
inline constexpr int kIncompatibleParameters = 1807;
inline constexpr int kNotMixedInteger = 3003;
inline constexpr int kColumnTypeEntry = 3021;
inline constexpr int kNoIncumbentValues = 3023;

}  // namespace kelvo::error
