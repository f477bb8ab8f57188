PGEOMETRY V5
NPoints 3 NPrims 2
NPointGroups 0 NPrimGroups 0
NPointAttrib 0 NVertexAttrib 0 NPrimAttrib 0 NAttrib 0
0 0 0 1
1 0 0 1
0 1 0 1
Run 2 Poly
 3 < 0 1 2
 3 < 2 1 0
