#include "io/mps/mps_reader.h"

#include <gtest/gtest.h>

#include <string>

#include "support/recording_sink.h"

namespace kelvo {
namespace {

struct Reading {
  explicit Reading(const std::string& text, const MpsReaderSettings& settings = {}) {
    LineReader lines(text);
    status = read_mps(lines, settings, messages, model);
  }
  const std::string& errors() const { return messages[Channel::error]; }
  const std::string& warnings() const { return messages[Channel::warning]; }
  const std::string& results() const { return messages[Channel::results]; }
  test::RecordingSink messages;
  Model model;
  Status status;
};

/// A small model; the parts can be replaced.
struct Parts {
  std::string before_rows = "NAME tiny\n";
  std::string rows = " N obj\n L c1\n G c2\n E c3\n";
  std::string after_rows;
  std::string columns =
      " x obj 1 c1 2\n x c2 3\n y c1 4 c3 5\n"
      " m 'MARKER' 'INTORG'\n z obj -1 c3 1\n m 'MARKER' 'INTEND'\n";
  std::string rhs = " rhs c1 10 c2 20\n rhs c3 30\n";
  std::string rest;  // headers included
  std::string text() const {
    return before_rows + "ROWS\n" + rows + after_rows + "COLUMNS\n" + columns + "RHS\n" + rhs +
           rest + "ENDATA\n";
  }
};

Reading read_bounds(const std::string& bounds) {
  Parts parts;
  parts.rest = "BOUNDS\n" + bounds;
  return Reading(parts.text());
}

std::string bounds_of(const Model& model, int column) {
  char text[80];
  std::snprintf(text, sizeof(text), "%g %g %c", model.lower[column], model.upper[column],
                model.column_type.empty() ? 'C' : model.column_type[column]);
  return text;
}

std::string row_of(const Model& model, int row) {
  char text[80];
  std::snprintf(text, sizeof(text), "%s %c %g %g", model.row_names[row], model.row_sense[row],
                model.rhs[row], model.range.empty() ? 0.0 : model.range[row]);
  return text;
}

/// "row:value ..." of a column.
std::string column_of(const Model& model, int column) {
  std::string text;
  for (int k = 0; k < model.matrix.count[column]; ++k) {
    const int at = model.matrix.start[column] + k;
    char entry[60];
    std::snprintf(entry, sizeof(entry), "%s%s:%g", k > 0 ? " " : "",
                  model.row_names[model.matrix.index[at]], model.matrix.value[at]);
    text += entry;
  }
  return text;
}

/// "index:value ..." of a line of a compressed matrix.
std::string line_of(const SparseMatrix& matrix, int line) {
  std::string text;
  for (int k = matrix.start[line]; k < matrix.start[line + 1]; ++k) {
    char entry[60];
    std::snprintf(entry, sizeof(entry), "%s%d:%g", k > matrix.start[line] ? " " : "",
                  matrix.index[k], matrix.value[k]);
    text += entry;
  }
  return text;
}

TEST(MpsReader, ReadsAModel) {
  Parts parts;
  parts.before_rows = "* a comment\n\nname          tiny model\n\x01 also a comment\n   \t \r\n";
  parts.rest =
      "RANGES\n rng c1 -4 c2 5\n rng c3 -6\nBOUNDS\n UP bnd x 4\n UP bnd z 1\n LO bnd y 0.5\n";
  const Reading reading(parts.text());
  ASSERT_TRUE(reading.status.ok());
  const Model& model = reading.model;
  EXPECT_EQ(model.name, "tiny");
  EXPECT_EQ(model.objective_name, "obj");
  EXPECT_EQ(model.sense, 1);
  ASSERT_EQ(model.num_rows, 3);
  ASSERT_EQ(model.num_cols, 3);
  EXPECT_EQ(row_of(model, 0), "c1 R 10 -4");
  EXPECT_EQ(row_of(model, 1), "c2 R 20 5");
  EXPECT_EQ(row_of(model, 2), "c3 R 30 -6");
  EXPECT_EQ(column_of(model, 0), "c1:2 c2:3");
  EXPECT_EQ(column_of(model, 1), "c1:4 c3:5");
  EXPECT_EQ(column_of(model, 2), "c3:1");
  EXPECT_EQ(model.objective[0], 1.0);
  EXPECT_EQ(model.objective[2], -1.0);
  EXPECT_EQ(bounds_of(model, 0), "0 4 C");
  EXPECT_EQ(bounds_of(model, 1), "0.5 1e+20 C");
  EXPECT_EQ(bounds_of(model, 2), "0 1 B");
  EXPECT_EQ(model.col_names.view(2), "z");
  EXPECT_EQ(reading.warnings(), "");
  EXPECT_EQ(reading.errors(), "");
  EXPECT_EQ(reading.results(),
            "Selected objective sense:  MINIMIZE\n"
            "Selected objective  name:  obj\n"
            "Selected RHS        name:  rhs\n"
            "Selected RANGES     name:  rng\n"
            "Selected BOUNDS     name:  bnd\n");
}

TEST(MpsReader, ChoicesAreSilentOnRequest) {
  MpsReaderSettings settings;
  settings.show_choices = false;
  EXPECT_EQ(Reading(Parts().text(), settings).results(), "");
}

TEST(MpsReader, ObjectiveSenseAndName) {
  struct Case {
    const char* sections;
    int sense;
    const char* objective;
    int code;
    const char* message;  // part of all that is said
  };
  for (const Case& c : {
           Case{"OBJSENSE\n MAX\n", -1, "obj", 0, "Specified objective sense: MAXIMIZE\n"},
           Case{"objsense\n maximize\n", -1, "obj", 0, "Specified objective sense: MAXIMIZE\n"},
           Case{"OBJSENSE\n  Minimise\n", 1, "obj", 0, "Specified objective sense: MINIMIZE\n"},
           Case{"OBJSENSE MAX\n", -1, "obj", 0, "Specified objective sense: MAXIMIZE\n"},
           Case{"OBJSENSE\n best\n", 1, "", 1487,
                "KELVO Error  1487: Line 3: Unrecognized objective sense 'best'.\n"},
           Case{"OBJNAME\n other\n", 1, "other", 0, "  [1 free row deleted]\n"},
           Case{"OBJNAME\n c1\n", 1, "obj", 0, "Warning:  Specified objective 'c1' not found.\n"},
           Case{"OBJNAME\n other\nOBJSENSE\n MAX\n", 1, "other", 0,
                "Warning, line 4:  OBJSENSE section illegal or out of order.\n"},
           Case{"BOUNDS\n UP b x 1\n", 1, "obj", 0,
                "Warning, line 2:  BOUNDS section illegal or out of order.\n"},
       }) {
    SCOPED_TRACE(c.sections);
    Parts parts;
    parts.before_rows += c.sections;
    parts.rows += " n other\n";
    const Reading reading(parts.text());
    EXPECT_EQ(reading.status.code(), c.code);
    EXPECT_EQ(reading.model.sense, c.sense);
    EXPECT_EQ(reading.model.objective_name, c.objective);
    const std::string said = reading.errors() + reading.warnings() + reading.results();
    EXPECT_NE(said.find(c.message), std::string::npos) << said;
  }
}

TEST(MpsReader, FreeRowsAreDeletedWithTheirEntries) {
  Parts parts;
  parts.rows = " N obj\n N free1\n L c1\n N free2\n G c2\n E c3\n";
  parts.columns += " w free2 7 c2 8\n";
  parts.rest = "RANGES\n rng free1 3 obj 4\n";
  parts.rhs += " rhs free1 5\n rhs obj 6\n";
  const Reading reading(parts.text());
  ASSERT_TRUE(reading.status.ok());
  EXPECT_EQ(reading.model.num_rows, 3);
  EXPECT_EQ(column_of(reading.model, 3), "c2:8");
  EXPECT_NE(reading.results().find("  [2 free rows deleted]\n"), std::string::npos);
  EXPECT_EQ(reading.warnings(),
            "Warning, line 21:  OBJ coefficient in RHS section ignored.\n"
            "Warning:  RANGES 'range' value for free row 'free1' ignored.\n"
            "Warning:  Objective coefficient in RANGES section ignored.\n");
}

TEST(MpsReader, SectionErrors) {
  const std::string rows = "NAME\nROWS\n N obj\n L c1\n";
  const std::string model = rows + "COLUMNS\n x c1 1\nRHS\n";
  for (const auto& [text, code, message] :
       std::initializer_list<std::tuple<std::string, int, const char*>>{
           {"", 1441, "Line 1: No NAME section"},
           {"ROWS\n", 1441, "Line 1: No NAME section"},
           {" NAME\n", 1441, "Line 1: No NAME section"},
           {std::string("\0\1\2\n\x7f\x45\x4c\x46\nELF\n", 13), 1441, "Line 3: No NAME section"},
           {"NAME\n", 1471, "Line 1: No ROWS section"},
           {"NAME\nCOLUMNS\n x c1 1\n", 1471, "Line 3: No ROWS section"},
           {"NAME\nROWS\n L c1\nCOLUMNS\n", 1476, "Line 4: No objective row found"},
           {"NAME\nROWS\n N obj\n c1\n", 1453, "Line 4: No row sense"},
           {"NAME\nROWS\n N obj\n Q c1\n", 1453, "Line 4: No row sense"},
           {"NAME\nROWS\n N\n", 1486, "Line 3: No row name"},
           {rows + "RHS\n", 1472, "Line 5: No COLUMNS section"},
           {rows, 1472, "Line 4: No COLUMNS section"},
           {rows + "USERCUTS\n N cut\n", 1438, "Line 6: Illegal lazy constraint or user cut"},
           {rows + " L c1\nCOLUMNS\n", 1445, "Row 'c1' repeats"},
           {rows + "COLUMNS\n x c1 1\n y c1 1\n x obj 1\nRHS\n", 1446, "Column 'x' repeats"},
           {rows + "COLUMNS\n x c2 1\n", 1448, "Line 6: 'c2' is not a row name"},
           {rows + "COLUMNS\n x\n", 1448, "Line 6: '' is not a row name"},
           {rows + "COLUMNS\n x c1 1 c1 2\n", 1443, "Column 'x' has repeated row 'c1'"},
           {rows + "COLUMNS\n x obj 1\n x obj 2\n", 1443, "Column 'x' has repeated row 'obj'"},
           {rows + "COLUMNS\n x c1 1x\n", 1434, "Line 6: Couldn't convert '1x' to a number"},
           {rows + "COLUMNS\n x c1 1e38\n", 1435, "Line 6: Exponent 'e38' out of range"},
           {rows + "COLUMNS\n x c1 e5\n", 1618, "Line 6: Exponent 'e5' not started with number"},
           {rows + "COLUMNS\n x c1 5e\n", 1618, "Line 6: Exponent 'e' not ended with number"},
           {rows + "COLUMNS\n m 'MARKER' 'INTEND'\n", 1481,
            "Line 6: 'INTEND' found while not reading integers"},
           {rows + "COLUMNS\n m 'MARKER' 'INTORG'\n m 'MARKER' 'INTORG'\n", 1480,
            "Line 7: 'INTORG' found while reading integers"},
           {rows + "COLUMNS\n m 'MARKER' 'SOSEND'\n", 1483,
            "Line 6: 'SOSEND' found while not reading a SOS"},
           {rows + "COLUMNS\n S1 m 'MARKER' 'SOSORG'\n S2 n 'MARKER' 'SOSORG'\n", 1482,
            "Line 7: 'SOSORG' found while reading a SOS"},
           {rows + "COLUMNS\n S3 m 'MARKER' 'SOSORG'\n", 1442, "Line 6: Unrecognized SOS type: S3"},
           {rows + "COLUMNS\n m 'MARKER' 'SOSORG'\n", 3301, "Line 6: Missing SOS type"},
           {model + " rhs c1 1 c1 2\n", 1444, "RHS 'rhs' has repeated row 'c1'"},
           {model + " rhs c9 1\n", 1448, "Line 8: 'c9' is not a row name"},
           {model + " c9 1\n", 1448, "Line 8: 'c9' is not a row name"},
           {model + "RANGES\n r c1 1\n r c1 2\n", 1444, "RANGES 'r' has repeated row 'c1'"},
           {model + "BOUNDS\nRANGES\n", 1474, "Line 9: 'RANGES' section out of order"},
           {model + "ROWS\n", 1473,
            "Line 8: Unrecognized section indicator.\n"
            "      Expecting RANGES, BOUNDS, SOS, QMATRIX, or ENDATA"},
           {model + "QMATRIX\nBOUNDS\n", 1475,
            "Line 9: Unrecognized section indicator.\n      Expecting QMATRIX or ENDATA"},
           {model + "INDICATORS\nQMATRIX\n", 1462,
            "Line 9: Unrecognized section indicator.\n      Expecting ENDATA"},
           {model + "SOS\n x 1\n", 3301, "Line 9: Missing SOS type"},
           {model + "SOS\n S4 s\n", 1442, "Line 9: Unrecognized SOS type: S4"},
           {model + "QMATRIX\n x y 1\n", 1449, "Line 9: 'y' is not a column name"},
           {model + "QCMATRIX c9\n", 1448, "Line 8: 'c9' is not a row name"},
           {model + "RANGES\n r c1 1\nQCMATRIX c1\n", 1437,
            "Line 10: Illegal quadratic constraint sense"},
           {model + "QCMATRIX c1\n x x 1\nINDICATORS\n IF c1 x 1\n", 1605,
            "Line 11: Illegal quadratic term in a constraint"},
           {model + "INDICATORS\n IF c1 x 2\n", 1439, "Line 9: Illegal indicator constraint"},
           {model + "INDICATORS\n XX c1 x 1\n", 1439, "Line 9: Illegal indicator constraint"},
           {model + "INDICATORS\n IF c9 x 1\n", 1448, "Line 9: 'c9' is not a row name"},
           {model + "INDICATORS\n IF c1 y 1\n", 1449, "Line 9: 'y' is not a column name"},
           {model + "INDICATORS\n IF c1 x 1\n IF c1 x 0\n", 1445, "Row 'c1' repeats"},
       }) {
    SCOPED_TRACE(text);
    const Reading reading(text);
    EXPECT_EQ(reading.status.code(), code);
    EXPECT_TRUE(reading.status.is_reported());
    char line[200];
    std::snprintf(line, sizeof(line), "KELVO Error %5d: %s.\n", code, message);
    EXPECT_EQ(reading.errors(), line);
    EXPECT_EQ(reading.model.num_cols, 0);
  }
}

TEST(MpsReader, BoundTypes) {
  struct Case {
    const char* bounds;
    const char* x;  // continuous by its declaration
    const char* z;  // integer
    const char* warnings;
  };
  for (const Case& c : {
           Case{" UP b x 5\n UP b z 5\n", "0 5 C", "0 5 I", ""},
           Case{" LO b x -5\n LO b z -5\n", "-5 1e+20 C", "-5 1e+20 I", ""},
           Case{" FX b x 1.5D1\n FX b z 2\n", "15 15 C", "2 2 I", ""},
           Case{" FR b x\n fr b z\n", "-1e+20 1e+20 C", "-1e+20 1e+20 I", ""},
           Case{" MI b x\n", "-1e+20 1e+20 C", "0 1e+20 I",
                "Warning:  Column 'x' in bound 'b' is Free.\n"},
           Case{" MI b x\n UP b x -3\n", "-1e+20 -3 C", "0 1e+20 I", ""},
           Case{" PL b x\n PL b z\n", "0 1e+20 C", "0 1e+20 I", ""},
           Case{" BV b x\n BV b z\n", "0 1 B", "0 1 B", ""},
           Case{" UI b x 3\n LI b z 1\n", "0 3 I", "1 1e+20 I", ""},
           Case{" UI b x 1\n", "0 1 B", "0 1e+20 I", ""},
           Case{" SC b x 9\n SC b z 9\n", "0 9 S", "0 9 N", ""},
           Case{" SC b x 9\n LI b x 2\n", "2 9 N", "0 1e+20 I", ""},
           Case{" UP b z 1\n", "0 1e+20 C", "0 1 B", ""},
           Case{" UP b x -5\n", "-1e+20 -5 C", "0 1e+20 I",
                "Warning:  Lower bound on column 'x' in bound 'b'\n"
                "          changed to minus infinity.\n"},
           Case{" UP b x -5\n LO b x -9\n", "-9 -5 C", "0 1e+20 I", ""},
           Case{" UP b x 0\n", "0 0 C", "0 1e+20 I",
                "Warning:  Column 'x' in bound 'b' is Fixed.\n"},
           Case{" UP b z 2.5\n", "0 1e+20 C", "0 2.5 I",
                "Warning:  Non-integral bound value 2.5 for integer column 'z'.\n"},
           Case{" UP b z 2.99999999995\n", "0 1e+20 C", "0 3 I", ""},
           Case{" UP b z 2.9999999998\n", "0 1e+20 C", "0 3 I",
                "Warning:  Non-integral bound value 3 for integer column 'z'.\n"},
           Case{" UP b x 5\n UP c x 6\n UP d y 7\n", "0 5 C", "0 1e+20 I",
                "Warning:  More than one bound set specified. Only the first set is used.\n"},
           Case{" UP b x\n", "0 0 C", "0 1e+20 I",
                "Warning:  Column 'x' in bound 'b' is Fixed.\n"
                "Warning:  Empty numeric fields read as zeros.\n"},
           Case{" UP x 5\n FR z\n", "0 5 C", "-1e+20 1e+20 I", ""},
           Case{" UPX b x 5\n", "0 5 C", "0 1e+20 I", "Warning, line 18:  'UP' truncated.\n"},
       }) {
    SCOPED_TRACE(c.bounds);
    const Reading reading = read_bounds(c.bounds);
    ASSERT_TRUE(reading.status.ok()) << reading.errors();
    EXPECT_EQ(bounds_of(reading.model, 0), c.x);
    EXPECT_EQ(bounds_of(reading.model, 2), c.z);
    EXPECT_EQ(reading.warnings(), c.warnings);
  }
}

TEST(MpsReader, BoundErrors) {
  struct Case {
    const char* bounds;
    const char* message;
  };
  for (const Case& c : {
           Case{" UP b x 1\n UP b x 2\n", "1458: Line 19: Repeated upper bound"},
           Case{" SC b x 1\n PL b x\n", "1458: Line 19: Repeated upper bound"},
           Case{" LO b x 1\n MI b x\n", "1459: Line 19: Repeated lower bound"},
           Case{" LO b x 1\n FX b x 1\n",
                "1454: Line 19: 'FX' bound type illegal when prior bound given"},
           Case{" UP b x 1\n FR b x\n",
                "1455: Line 19: 'FR' bound type illegal when prior bound given"},
           Case{" UP b x 1\n BV b x\n",
                "1456: Line 19: 'BV' bound type illegal when prior bound given"},
           Case{" ZZ b x 1\n", "1457: Line 18: Unrecognized bound type 'ZZ'"},
           Case{"    b x 1\n", "1460: Line 18: Bound type missing"},
           Case{" UP b q 1\n", "1449: Line 18: 'q' is not a column name"},
           Case{" FR\n", "1449: Line 18: '' is not a column name"},
       }) {
    SCOPED_TRACE(c.bounds);
    const Reading reading = read_bounds(c.bounds);
    EXPECT_EQ(reading.errors(), std::string("KELVO Error  ") + c.message + ".\n");
  }
}

TEST(MpsReader, SetsWithoutAName) {
  Parts parts;
  parts.rhs = " c1 10 c2 20\n c3 30\n";
  parts.rest = "RANGES\n c1 4\nBOUNDS\n UP x 7\n";
  const Reading reading(parts.text());
  ASSERT_TRUE(reading.status.ok()) << reading.errors();
  EXPECT_EQ(row_of(reading.model, 0), "c1 R 10 -4");
  EXPECT_EQ(row_of(reading.model, 2), "c3 E 30 0");
  EXPECT_EQ(bounds_of(reading.model, 0), "0 7 C");
  EXPECT_EQ(reading.warnings(), "Warning:  Blank RHS name changed to 'rhs'.\n");

  parts.columns += " rhs c1 1\n";
  EXPECT_EQ(Reading(parts.text()).warnings(),
            "Warning:  Blank RHS name unchanged.  Column with name 'rhs' already exists.\n");
}

TEST(MpsReader, OnlyTheFirstSetCounts) {
  Parts parts;
  parts.rhs = " first c1 10\n second c1 11 c2 21\n first c3 30\n second nonsense 5\n";
  const Reading reading(parts.text());
  ASSERT_TRUE(reading.status.ok()) << reading.errors();
  EXPECT_EQ(reading.model.rhs[0], 10.0);
  EXPECT_EQ(reading.model.rhs[1], 0.0);
  EXPECT_EQ(reading.model.rhs[2], 30.0);
}

TEST(MpsReader, NumbersAsNames) {
  const Reading reading(
      "NAME\nROWS\n N 0\n L 1\n L 2\nCOLUMNS\n 1 0 5 1 6\n 2 1 7 2 8\n"
      "RHS\n 3 1 4\n 3 2 9\nBOUNDS\n UP 3 1 4\n UP 3 2 5\nENDATA\n");
  ASSERT_TRUE(reading.status.ok()) << reading.errors();
  EXPECT_EQ(reading.model.rhs[0], 4.0);
  EXPECT_EQ(reading.model.rhs[1], 9.0);
  EXPECT_EQ(column_of(reading.model, 1), "1:7 2:8");
  EXPECT_EQ(reading.model.upper[1], 5.0);
}

TEST(MpsReader, MissingEnds) {
  const Reading reading("NAME\nROWS\n N obj\nCOLUMNS\n x obj 1");
  ASSERT_TRUE(reading.status.ok());
  EXPECT_EQ(reading.model.num_cols, 1);
  EXPECT_EQ(reading.warnings(),
            "Warning, line 5:  RHS section missing or out of order.\n"
            "Warning, line 5:  'ENDATA' missing.\n");
}

TEST(MpsReader, LongLinesAndFields) {
  Parts parts;
  const std::string long_name(300, 'n');
  parts.columns = " " + long_name + " c1 1\n y c2 " + "1.00000000000000000000000000001\n";
  const Reading reading(parts.text());
  ASSERT_TRUE(reading.status.ok()) << reading.errors();
  const std::string cut = long_name.substr(0, 255);
  EXPECT_EQ(reading.model.col_names.view(0), cut);
  EXPECT_EQ(column_of(reading.model, 1), "c2:1");
  EXPECT_EQ(reading.warnings(), "Warning, line 8:  '" + cut +
                                    "' truncated.\n"
                                    "Warning, line 9:  '1.00000000000000000000000' truncated.\n");

  parts.columns = " x c1 1" + std::string(559 - 7, ' ') + "\n";
  EXPECT_TRUE(Reading(parts.text()).status.ok());
  parts.columns = " x c1 1" + std::string(560 - 7, ' ') + "\n";
  EXPECT_EQ(Reading(parts.text()).errors(),
            "KELVO Error  1465: Line 8: Line longer than limit of 559 characters.\n");
  parts.columns = " x c1 1" + std::string(1000000, ' ') + "\n";
  EXPECT_EQ(Reading(parts.text()).status.code(), 1465);
}

TEST(MpsReader, RepeatedWarningsAreCountedAfterTwenty) {
  Parts parts;
  parts.rows += " L c3\n";
  for (int i = 0; i < 22; ++i) parts.rows += " L c1\n";
  const Reading rows(parts.text());
  EXPECT_EQ(rows.status.code(), 1445);
  EXPECT_NE(rows.errors().find("KELVO Error  1477: 3 Row repeats messages not printed"),
            std::string::npos);

  Parts bounded;
  bounded.columns.clear();
  for (int i = 0; i < 25; ++i) {
    const std::string name = "v" + std::to_string(i);
    bounded.columns += " " + name + " c1 1\n";
    bounded.rest += " UP b " + name + " 0\n";
  }
  bounded.rest = "BOUNDS\n" + bounded.rest + "SOS\n S1 s\n";
  for (int i = 0; i < 21; ++i) bounded.rest += "    missing 1\n";
  const Reading reading(bounded.text());
  ASSERT_TRUE(reading.status.ok()) << reading.errors();
  const std::string& warnings = reading.warnings();
  EXPECT_NE(warnings.find("'v19' in bound"), std::string::npos);
  EXPECT_EQ(warnings.find("'v20' in bound"), std::string::npos);
  EXPECT_NE(warnings.find("\n5 Column-fixed warnings not printed.\n"), std::string::npos);
  EXPECT_NE(warnings.find("'missing' is not a variable.\n1 warnings not printed.\n"),
            std::string::npos);
}

TEST(MpsReader, SpecialOrderedSets) {
  Parts parts;
  parts.before_rows += "REFROW\n c1\n";
  parts.columns =
      " S1 set1 'MARKER' 'SOSORG'\n a c1 5 c2 1\n b c2 1\n S1 set1 'MARKER' 'SOSEND'\n"
      " set2 'MARKER' 'SOSORG' S2\n c c1 7\n set2 'MARKER' 'SOSEND'\n d c1 1\n";
  parts.rest = "SOS\n S2\n    a 1\n    nobody 2\n    d 3\n s1 last\n    b 4\n";
  const Reading reading(parts.text());
  ASSERT_TRUE(reading.status.ok()) << reading.errors();
  const SosSets& sos = reading.model.sos;
  ASSERT_EQ(sos.size(), 4);
  EXPECT_EQ(std::string(sos.type.begin(), sos.type.end()), "1221");
  EXPECT_EQ(line_of(sos.members, 0), "0:5 1:0");
  EXPECT_EQ(line_of(sos.members, 1), "2:7");
  EXPECT_EQ(line_of(sos.members, 2), "0:1 3:3");
  EXPECT_EQ(line_of(sos.members, 3), "1:4");
  EXPECT_EQ(sos.names.view(0), "set1");
  EXPECT_EQ(sos.names.view(2), "s3");
  EXPECT_EQ(sos.names.view(3), "last");
  EXPECT_NE(reading.warnings().find("'nobody' is not a variable."), std::string::npos);
}

/// A column whose lines began before the set is not of it, and gives no other member its weight.
TEST(MpsReader, ASetThatBeginsWithinAColumn) {
  Parts parts;
  parts.before_rows += "REFROW\n c1\n";
  parts.columns =
      " S1 one 'MARKER' 'SOSORG'\n a c1 5\n one 'MARKER' 'SOSEND'\n b c2 1\n"
      " S1 two 'MARKER' 'SOSORG'\n b c1 9\n c c1 7\n two 'MARKER' 'SOSEND'\n";
  const Reading reading(parts.text());
  ASSERT_TRUE(reading.status.ok()) << reading.errors();
  EXPECT_EQ(line_of(reading.model.sos.members, 0), "0:5");
  EXPECT_EQ(line_of(reading.model.sos.members, 1), "2:7");
}

TEST(MpsReader, QuadraticData) {
  Parts parts;
  parts.rest = "QUADOBJ\n x x 2\n x y -1\n z z 4\nQCMATRIX c2\n x y 3\n";
  const Reading triangle(parts.text());
  ASSERT_TRUE(triangle.status.ok()) << triangle.errors();
  parts.rest = "QMATRIX\n x x 1\n x x 1\n x y -1\n y x -1\n z z 4\n";
  const Reading full(parts.text());
  ASSERT_TRUE(full.status.ok()) << full.errors();
  for (const Model* model : {&triangle.model, &full.model}) {
    ASSERT_EQ(model->quadratic.num_major, 3);
    EXPECT_EQ(line_of(model->quadratic, 0), "0:2 1:-1");
    EXPECT_EQ(line_of(model->quadratic, 1), "0:-1");
    EXPECT_EQ(line_of(model->quadratic, 2), "2:4");
  }
  const Model& model = triangle.model;
  ASSERT_EQ(model.quadratic_constraints.size(), 1u);
  const QuadraticConstraint& constraint = model.quadratic_constraints[0];
  EXPECT_EQ(model.quadratic_names.view(0), "c2");
  EXPECT_EQ(constraint.sense, 'G');
  EXPECT_EQ(constraint.rhs, 20.0);
  ASSERT_EQ(constraint.linear_index.size(), 1u);
  EXPECT_EQ(constraint.linear_value[0], 3.0);
  ASSERT_EQ(constraint.quad_row.size(), 1u);
  EXPECT_EQ(constraint.quad_col[0], 1);
  ASSERT_EQ(model.num_rows, 2);
  EXPECT_EQ(row_of(model, 1), "c3 E 30 0");
  EXPECT_EQ(column_of(model, 0), "c1:2");

  parts.rest = "QMATRIX\n x y -1\n";
  EXPECT_EQ(Reading(parts.text()).errors(),
            "KELVO Error  5012: Q in objective is not symmetric.\n");

  parts.rest = "QCMATRIX c2\n x y 3\nQCMATRIX c1\n x x 3\n";
  MpsReaderSettings settings;
  settings.quadratic_constraints = false;
  const Reading ignored(parts.text(), settings);
  ASSERT_TRUE(ignored.status.ok());
  EXPECT_EQ(ignored.warnings(), "Warning:  Quadratic constraints ignored.\n");
  EXPECT_EQ(ignored.model.num_rows, 1);
  EXPECT_TRUE(ignored.model.quadratic_constraints.empty());
}

TEST(MpsReader, CutsAndIndicators) {
  Parts parts;
  parts.after_rows = "USERCUTS\n L u1\nLAZYCONS\n G z1\n E z2\n";
  parts.columns = " x c1 1 u1 2\n x z2 3 c3 4\n b u1 5 z1 6\n b c2 7\n";
  parts.rhs = " rhs c1 1 c2 2\n rhs c3 3 u1 4\n rhs z1 5 z2 6\n";
  parts.rest = "RANGES\n rng c3 8\nBOUNDS\n BV b b\nINDICATORS\n FF c2 b 0\n IF c1 b 1\n";
  const Reading reading(parts.text());
  ASSERT_TRUE(reading.status.ok()) << reading.errors();
  const Model& model = reading.model;
  ASSERT_EQ(model.num_rows, 1);
  EXPECT_EQ(row_of(model, 0), "c3 R 3 8");
  EXPECT_EQ(column_of(model, 0), "c3:4");
  ASSERT_EQ(model.user_cuts.size(), 1);
  EXPECT_EQ(line_of(model.user_cuts.rows, 0), "0:2 1:5");
  EXPECT_EQ(model.user_cuts.rhs[0], 4.0);
  ASSERT_EQ(model.lazy_constraints.size(), 2);
  EXPECT_EQ(line_of(model.lazy_constraints.rows, 0), "1:6");
  EXPECT_EQ(line_of(model.lazy_constraints.rows, 1), "0:3");
  EXPECT_EQ(model.lazy_constraints.sense[1], 'E');
  EXPECT_EQ(model.lazy_constraints.names.view(1), "z2");
  const IndicatorConstraints& indicators = model.indicators;
  ASSERT_EQ(indicators.size(), 2);
  EXPECT_EQ(indicators.rows.names.view(0), "c2");
  EXPECT_EQ(line_of(indicators.rows.rows, 0), "1:7");
  EXPECT_EQ(indicators.relation[0], 3);
  EXPECT_EQ(indicators.complemented[0], 1);
  EXPECT_EQ(indicators.complemented[1], 0);
  EXPECT_EQ(indicators.column[1], 1);
  EXPECT_EQ(indicators.rows.rhs[1], 1.0);
}

}  // namespace
}  // namespace kelvo
