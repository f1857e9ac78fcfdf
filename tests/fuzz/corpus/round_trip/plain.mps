* every linear section
NAME          plain
OBJSENSE
    MAX
OBJNAME
    profit
ROWS
 N  cost
 N  profit
 L  c1
 G  c2
 E  c3
COLUMNS
    x         profit  1.5   c1  2
    x         c2      3
    MARK0000  'MARKER'                 'INTORG'
    y         c1      -4.D1   c3  5e-2
    MARK0001  'MARKER'                 'INTEND'
    z         cost    1     c3  +
RHS
    rhs       c1      10    c2  20
    rhs       c3      30
RANGES
    rng       c1      4     c2  -5
BOUNDS
 UP bnd       x       4
 MI bnd       y
 UP bnd       z       -1
ENDATA
