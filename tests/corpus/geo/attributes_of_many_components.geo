PGEOMETRY V5
NPoints 2 NPrims 1
NPointGroups 0 NPrimGroups 0
NPointAttrib 2 NVertexAttrib 0 NPrimAttrib 0 NAttrib 0
PointAttrib
big 9 float 1 2 3 4 5 6 7 8 9
r 1 float 1
0 0 0 1 (1 2 3 4 5 6 7 8 9 10)
0 0 0 1 (1 2)
Poly 2 : 0 1
