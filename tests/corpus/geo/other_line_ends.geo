PGEOMETRY V5
NPoints 2 NPrims 1
NPointGroups 0 NPrimGroups 0
NPointAttrib 0 NVertexAttrib 0 NPrimAttrib 0 NAttrib 0
0 0 0 1
1 0 0 1
Poly 2 : 0 1
