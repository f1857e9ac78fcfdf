* A production plan: two products, four months, stock between them, and overtime.
NAME          PLAN
ROWS
 N  COST
 E  CBAL1
 E  CBAL2
 E  CBAL3
 E  CBAL4
 E  TBAL1
 E  TBAL2
 E  TBAL3
 E  TBAL4
 L  HOURS1
 L  HOURS2
 L  HOURS3
 L  HOURS4
 G  SPACE1
 G  SPACE2
 G  SPACE3
 G  SPACE4
COLUMNS
    CMAKE1    COST                14   CBAL1                1
    CMAKE1    HOURS1             1.5
    CMAKE2    COST                14   CBAL2                1
    CMAKE2    HOURS2             1.5
    CMAKE3    COST                14   CBAL3                1
    CMAKE3    HOURS3             1.5
    CMAKE4    COST                14   CBAL4                1
    CMAKE4    HOURS4             1.5
    CSTOCK1   COST               1.2   CBAL1               -1
    CSTOCK1   CBAL2                1   SPACE1               1
    CSTOCK2   COST               1.2   CBAL2               -1
    CSTOCK2   CBAL3                1   SPACE2               1
    CSTOCK3   COST               1.2   CBAL3               -1
    CSTOCK3   CBAL4                1   SPACE3               1
    CSTOCK4   COST               1.2   CBAL4               -1
    CSTOCK4   SPACE4               1
    TMAKE1    COST              36.5   TBAL1                1
    TMAKE1    HOURS1            3.25
    TMAKE2    COST              36.5   TBAL2                1
    TMAKE2    HOURS2            3.25
    TMAKE3    COST              36.5   TBAL3                1
    TMAKE3    HOURS3            3.25
    TMAKE4    COST              36.5   TBAL4                1
    TMAKE4    HOURS4            3.25
    TSTOCK1   COST              2.75   TBAL1               -1
    TSTOCK1   TBAL2                1   SPACE1             2.5
    TSTOCK2   COST              2.75   TBAL2               -1
    TSTOCK2   TBAL3                1   SPACE2             2.5
    TSTOCK3   COST              2.75   TBAL3               -1
    TSTOCK3   TBAL4                1   SPACE3             2.5
    TSTOCK4   COST              2.75   TBAL4               -1
    TSTOCK4   SPACE4             2.5
    OVER1     COST               9.5   HOURS1              -1
    OVER2     COST               9.5   HOURS2              -1
    OVER3     COST               9.5   HOURS3              -1
    OVER4     COST               9.5   HOURS4              -1
RHS
    NEED      CBAL1               90
    NEED      CBAL2              120
    NEED      CBAL3              160
    NEED      CBAL4              110
    NEED      TBAL1               40
    NEED      TBAL2               35
    NEED      TBAL3               70
    NEED      TBAL4               60
    NEED      HOURS1             340
    NEED      HOURS2             340
    NEED      HOURS3             340
    NEED      HOURS4             340
RANGES
    ROOM      SPACE1             120
    ROOM      SPACE2             120
    ROOM      SPACE3             120
    ROOM      SPACE4             120
BOUNDS
 UP LIMIT     OVER1               60
 UP LIMIT     OVER2               60
 UP LIMIT     OVER3               60
 UP LIMIT     OVER4               60
 FX LIMIT     CSTOCK4             10
 LO LIMIT     TSTOCK4              5
ENDATA
