PGEOMETRY V5
NPoints 4 NPrims 2
NPointGroups 0 NPrimGroups 0
NPointAttrib 2 NVertexAttrib 2 NPrimAttrib 1 NAttrib 0
PointAttrib
occ 1 float 0
Cd 3 float 1 1 1
0 0 0 1 (1 .5 .4 .3)
0 10 0 1 (0.5 .5 .4 .3)
1 20 0 1 (0 .5 .4 .3)
4 14 2 1 (0 .5 .4 .3)
VertexAttrib
radius 1 float 1
Cd 3 float .8 .8 .8
PrimitiveAttrib
mat 1 int 0
Run 2 Poly
 3 : 0 (1 1 1 1) 1 (.5 1 1 1) 2 (.25) [1]
 2 : 1 (.25 1 0 0) 3 (.1 0 1 0) [2]
beginExtra
endExtra
