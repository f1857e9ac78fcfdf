NAME
REFROW
 c1
ROWS
 N obj
 L c1
 G c2
 E c3
USERCUTS
 L u1
LAZYCONS
 G z1
COLUMNS
 S1 s1 'MARKER' 'SOSORG'
 x c1 1 u1 2
 y c2 3 z1 4
 S1 s1 'MARKER' 'SOSEND'
 b obj 5 c3 6
RHS
 c1 1 c2 2
BOUNDS
 BV b
 SC x 9
 LI x 2
SOS
 S2 s2
    x 1
    y 2
QUADOBJ
 x x 2
 x y -1
QCMATRIX c1
 x y 3
INDICATORS
 IF c2 b 0
ENDATA
